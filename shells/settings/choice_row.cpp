#include "shells/settings/choice_row.h"

#include <algorithm>
#include <array>
#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/choice_list.h"
#include "shells/settings/colour_list.h"
#include "shells/settings/setting_texts.h"
#include "shells/settings/settings_model.h"
#include "shells/settings/settings_text.h"

namespace quorvel::settings_pages {

using freedesktop::ObjectHandle;
using freedesktop::SettingChoice;
using freedesktop::SettingDescription;
using freedesktop::SettingKind;
using freedesktop::translated;

namespace {

// "grey" becomes "Grey".
std::string withCapital(const std::string& text) {
    const gunichar first = g_unichar_totitle(g_utf8_get_char(text.c_str()));
    std::array<char, 6> bytes{};
    const auto length = static_cast<std::size_t>(g_unichar_to_utf8(first, bytes.data()));
    return std::string(bytes.data(), length) + g_utf8_next_char(text.c_str());
}

GListStore* listOf(AdwActionRow* row) {
    return G_LIST_STORE(adw_combo_row_get_model(ADW_COMBO_ROW(row)));
}

} // namespace

ChoiceRow::ChoiceRow(const SettingDescription& setting, SettingsModel& model)
    : SettingRow(ADW_ACTION_ROW(adw_combo_row_new()), setting, model) {
    auto* const combo = ADW_COMBO_ROW(row());
    const ObjectHandle<GListStore> list(g_list_store_new(GTK_TYPE_STRING_OBJECT));
    const ObjectHandle<GtkListItemFactory> factory =
        setting.kind == SettingKind::colour ? colourFactory() : textFactory();
    adw_combo_row_set_factory(combo, factory.get());
    adw_combo_row_set_model(combo, G_LIST_MODEL(list.get()));
    if (setting.kind == SettingKind::colour) {
        addChoice("", translated(text::colourOfHost));
    }
    for (const SettingChoice& choice : setting.choices) {
        addChoice(std::string(choice.value), withCapital(labelOf(choice)));
    }
    signals().connect(combo, "notify::selected", [this] { choose(); });
}

void ChoiceRow::addChoice(std::string value, const std::string& label) {
    g_list_store_append(listOf(row()), newColourItem(value, label.c_str()).get());
    m_values.push_back(std::move(value));
}

void ChoiceRow::showValue() {
    const bool isOfHost = setting().kind == SettingKind::colour && !model().isSet(setting().key);
    const std::string value = isOfHost ? std::string() : model().textOf(setting());
    const auto found = std::ranges::find(m_values, value);
    const auto position = found != m_values.end() ? static_cast<guint>(found - m_values.begin())
                                                  : GTK_INVALID_LIST_POSITION;
    adw_combo_row_set_selected(ADW_COMBO_ROW(row()), position);
}

void ChoiceRow::choose() {
    const guint position = adw_combo_row_get_selected(ADW_COMBO_ROW(row()));
    if (isShowing() || position >= m_values.size()) {
        return;
    }
    if (m_values[position].empty()) {
        model().reset(setting());
    } else {
        model().set(setting(), m_values[position]);
    }
}

} // namespace quorvel::settings_pages
