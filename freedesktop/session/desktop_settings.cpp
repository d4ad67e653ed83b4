#include "freedesktop/session/desktop_settings.h"

#include <utility>

#include <gio/gio.h>

#include "freedesktop/glib/handles.h"
#include "freedesktop/glib/session_bus_address.h"

namespace quorvel::freedesktop {

namespace {

struct SchemaUnref {
    void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};
using SchemaHandle = std::unique_ptr<GSettingsSchema, SchemaUnref>;

// Null if the system does not know the setting, because opening it would end the process then.
// Without a session bus no desktop can have written settings, so it saves the millisecond that
// opening them takes.
ObjectHandle<GSettings> openSettings(const char* name, const char* key) {
    GSettingsSchemaSource* const source =
        mayHaveSessionBus() ? g_settings_schema_source_get_default() : nullptr;
    const SchemaHandle schema(
        source != nullptr ? g_settings_schema_source_lookup(source, name, TRUE) : nullptr);
    if (!schema || g_settings_schema_has_key(schema.get(), key) == 0) {
        return nullptr;
    }
    return ObjectHandle<GSettings>(g_settings_new_full(schema.get(), nullptr, nullptr));
}

std::optional<std::string> textOf(const VariantHandle& value) {
    if (!value || g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING) == 0) {
        return std::nullopt;
    }
    return g_variant_get_string(value.get(), nullptr);
}

} // namespace

class DesktopSetting::Store {
public:
    Store(ObjectHandle<GSettings> settings, const char* key)
        : m_settings(std::move(settings))
        , m_key(key) {}
    ~Store() {
        if (m_handler != 0) {
            g_signal_handler_disconnect(m_settings.get(), m_handler);
        }
    }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    VariantHandle value() const {
        return VariantHandle(g_settings_get_value(m_settings.get(), m_key.c_str()));
    }
    std::optional<std::string> userValue() const {
        return textOf(VariantHandle(g_settings_get_user_value(m_settings.get(), m_key.c_str())));
    }

    void setOnChange(std::function<void()> onChange) {
        using Handler = void (*)(GSettings*, const char*, gpointer);
        const Handler notify = [](GSettings*, const char*, gpointer data) {
            static_cast<Store*>(data)->m_onChange();
        };
        m_onChange = std::move(onChange);
        m_handler = g_signal_connect(m_settings.get(), ("changed::" + m_key).c_str(),
                                     G_CALLBACK(notify), this);
        value(); // GSettings reports changes only of values that were read
    }

private:
    ObjectHandle<GSettings> m_settings;
    std::string m_key;
    std::function<void()> m_onChange;
    gulong m_handler = 0;
};

DesktopSetting::DesktopSetting(const char* schema, const char* key) {
    if (auto settings = openSettings(schema, key)) {
        m_store = std::make_unique<Store>(std::move(settings), key);
    }
}

DesktopSetting::~DesktopSetting() = default;

std::optional<std::string> DesktopSetting::value() const {
    return m_store ? textOf(m_store->value()) : std::nullopt;
}

std::optional<double> DesktopSetting::numberValue() const {
    const VariantHandle value = m_store ? m_store->value() : nullptr;
    if (!value || g_variant_is_of_type(value.get(), G_VARIANT_TYPE_DOUBLE) == 0) {
        return std::nullopt;
    }
    return g_variant_get_double(value.get());
}

std::optional<bool> DesktopSetting::flagValue() const {
    const VariantHandle value = m_store ? m_store->value() : nullptr;
    if (!value || g_variant_is_of_type(value.get(), G_VARIANT_TYPE_BOOLEAN) == 0) {
        return std::nullopt;
    }
    return g_variant_get_boolean(value.get()) != FALSE;
}

std::optional<std::string> DesktopSetting::userValue() const {
    return m_store ? m_store->userValue() : std::nullopt;
}

void DesktopSetting::setOnChange(std::function<void()> onChange) {
    if (m_store) {
        m_store->setOnChange(std::move(onChange));
    }
}

ClockFormatSetting::ClockFormatSetting()
    : DesktopSetting("org.gnome.desktop.interface", "clock-format") {}

ClockFormat ClockFormatSetting::clockFormat() const {
    const auto set = userValue();
    if (set == "12h") {
        return ClockFormat::twelveHours;
    }
    return set == "24h" ? ClockFormat::twentyFourHours : ClockFormat::ofLocale;
}

RegionSetting::RegionSetting()
    : DesktopSetting("org.gnome.system.locale", "region") {}

std::optional<std::string> RegionSetting::region() const {
    auto set = userValue();
    return set && !set->empty() ? std::move(set) : std::nullopt;
}

TextScaleSetting::TextScaleSetting()
    : DesktopSetting("org.gnome.desktop.interface", "text-scaling-factor") {}

double TextScaleSetting::textScale() const {
    return numberValue().value_or(1);
}

double desktopTextScale() {
    return TextScaleSetting().textScale();
}

ClockFormat desktopClockFormat() {
    return ClockFormatSetting().clockFormat();
}

} // namespace quorvel::freedesktop
