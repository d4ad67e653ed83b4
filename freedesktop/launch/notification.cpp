#include "freedesktop/launch/notification.h"

#include "freedesktop/glib/session_bus.h"

namespace quorvel::freedesktop {

void notifyUser(const std::string& summary, const std::string& body) {
    const BusHandle bus = waitForSessionBus();
    if (!bus) {
        return;
    }
    GVariantBuilder actions;
    GVariantBuilder hints;
    g_variant_builder_init(&actions, G_VARIANT_TYPE("as"));
    g_variant_builder_init(&hints, G_VARIANT_TYPE_VARDICT);
    constexpr int standardTime = -1;
    callAndWait(bus.get(),
                {"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                 "org.freedesktop.Notifications", "Notify"},
                g_variant_new("(susssasa{sv}i)", "Quorvel", 0U, "x-office-calendar",
                              summary.c_str(), body.c_str(), &actions, &hints, standardTime),
                "(u)", longestAnswer);
}

std::string asSentence(const std::string& problem) {
    std::string sentence = problem;
    if (!sentence.empty() && sentence.front() >= 'a' && sentence.front() <= 'z') {
        sentence.front() = static_cast<char>(sentence.front() - 'a' + 'A');
    }
    return sentence + '.';
}

} // namespace quorvel::freedesktop
