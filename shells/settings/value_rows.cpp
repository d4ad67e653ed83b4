#include "shells/settings/value_rows.h"

#include <cmath>
#include <string>

#include "base/number_text.h"
#include "shells/settings/choice_row.h"
#include "shells/settings/setting_texts.h"
#include "shells/settings/settings_model.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::ObjectHandle;
using freedesktop::SettingDescription;
using freedesktop::SettingKind;

namespace {

// Whatever the language of the process.
double numberOf(const std::string& text) {
    const auto number = leadingNumber(text);
    return number ? number->value : 0;
}

AdwActionRow* newActionRow() {
    return ADW_ACTION_ROW(adw_action_row_new());
}

// A wheel over the page scrolls the page, and changes no number on the way.
void removeScrolling(GtkWidget* spin) {
    const ObjectHandle<GListModel> controllers(gtk_widget_observe_controllers(spin));
    for (guint i = g_list_model_get_n_items(controllers.get()); i > 0; --i) {
        const ObjectHandle<GtkEventController> controller(
            GTK_EVENT_CONTROLLER(g_list_model_get_item(controllers.get(), i - 1)));
        if (GTK_IS_EVENT_CONTROLLER_SCROLL(controller.get())) {
            gtk_widget_remove_controller(spin, controller.get());
        }
    }
}

class SwitchRow final : public SettingRow {
public:
    SwitchRow(const SettingDescription& setting, SettingsModel& model)
        : SettingRow(newActionRow(), setting, model)
        , m_switch(gtk_switch_new()) {
        addControl(row(), m_switch, labelOf(setting));
        signals().connect(m_switch, "notify::active", [this] {
            if (!isShowing()) {
                const bool isOn = gtk_switch_get_active(GTK_SWITCH(m_switch)) != FALSE;
                this->model().set(this->setting(), isOn ? "true" : "false");
            }
        });
    }

private:
    void showValue() override { setSwitch(m_switch, model().textOf(setting()) == "true"); }

    GtkWidget* m_switch;
};

class NumberRow final : public SettingRow {
public:
    NumberRow(const SettingDescription& setting, SettingsModel& model)
        : SettingRow(newActionRow(), setting, model)
        , m_spin(makeSpin(setting)) {
        addControl(row(), m_spin, labelOf(setting));
        signals().connect(m_spin, "value-changed", [this] {
            if (!isShowing()) {
                const double value = gtk_spin_button_get_value(GTK_SPIN_BUTTON(m_spin));
                this->model().set(this->setting(), std::to_string(std::llround(value)));
            }
        });
    }

private:
    static GtkWidget* makeSpin(const SettingDescription& setting) {
        constexpr double largest = 1e6; // where the table has no limit
        constexpr double wideRange = 5000;
        const double least = setting.least.value_or(-largest);
        const double most = setting.most.value_or(largest);
        const double step =
            setting.kind == SettingKind::number && most - least > wideRange ? 10 : 1;
        GtkWidget* const spin = gtk_spin_button_new_with_range(least, most, step);
        gtk_spin_button_set_numeric(GTK_SPIN_BUTTON(spin), TRUE);
        removeScrolling(spin);
        // The text's own undo would take the keys of ours.
        gtk_editable_set_enable_undo(GTK_EDITABLE(spin), FALSE);
        return spin;
    }

    void showValue() override {
        gtk_spin_button_set_value(GTK_SPIN_BUTTON(m_spin), numberOf(model().textOf(setting())));
    }

    GtkWidget* m_spin;
};

} // namespace

std::unique_ptr<SettingRow> makeValueRow(const SettingDescription& setting, SettingsModel& model) {
    if (setting.kind == SettingKind::boolean) {
        return std::make_unique<SwitchRow>(setting, model);
    }
    if (!setting.choices.empty() || setting.kind == SettingKind::colour) {
        return std::make_unique<ChoiceRow>(setting, model);
    }
    return std::make_unique<NumberRow>(setting, model);
}

} // namespace quorvel::settings_pages
