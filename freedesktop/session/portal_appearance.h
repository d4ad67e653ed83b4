// The appearance that the user prefers, from the settings of the desktop's portal.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "freedesktop/session/color_scheme.h"

namespace quorvel::freedesktop {

// Absent: the portal has not answered, or does not know the setting.
struct PortalPreferences {
    std::optional<ColorScheme> colorScheme;
    std::optional<bool> highContrast;
    bool operator==(const PortalPreferences&) const = default;
};

// Never blocks: a portal that is missing or hangs leaves everything absent. Calls on the default
// main context of the thread that constructs it. The call must not destroy the object.
class PortalAppearance {
public:
    explicit PortalAppearance(std::function<void()> onChange);
    ~PortalAppearance(); // the function is not called afterwards
    PortalAppearance(const PortalAppearance&) = delete;
    PortalAppearance& operator=(const PortalAppearance&) = delete;

    const PortalPreferences& preferences() const;

private:
    class Connection;
    std::shared_ptr<Connection> m_connection;
};

} // namespace quorvel::freedesktop
