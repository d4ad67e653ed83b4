#include "freedesktop/session/feedback_device.h"

#include <utility>

#include "freedesktop/glib/session_bus_address.h"

namespace quorvel::freedesktop {

namespace {

constexpr const char* applicationId = "org.quorvel.Quorvel";

// Nobody waits for the reply, so it is not asked for.
void reportPress(GDBusConnection* bus) {
    constexpr int onceEach = -1; // each kind of feedback of the event
    GVariantBuilder hints;
    g_variant_builder_init(&hints, G_VARIANT_TYPE_VARDICT);
    g_dbus_connection_call(
        bus, "org.sigxcpu.Feedback", "/org/sigxcpu/Feedback", "org.sigxcpu.Feedback",
        "TriggerFeedback",
        g_variant_new("(ssa{sv}i)", applicationId, "button-pressed", &hints, onceEach), nullptr,
        G_DBUS_CALL_FLAGS_NONE, standardAnswer, nullptr, nullptr, nullptr);
}

} // namespace

void FeedbackDevice::press() {
    if (m_request || !mayHaveSessionBus()) {
        return;
    }
    if (m_bus && g_dbus_connection_is_closed(m_bus.get()) == FALSE) {
        reportPress(m_bus.get());
        return;
    }
    m_request.emplace([this](BusHandle bus) {
        m_request.reset();
        m_bus = std::move(bus);
        if (m_bus) {
            reportPress(m_bus.get());
        }
    });
}

} // namespace quorvel::freedesktop
