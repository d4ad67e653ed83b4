// The widgets of the programs of a session, as a screen reader finds and drives them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <atspi/atspi.h>

#include "freedesktop/glib/handles.h"
#include "tests/freedesktop/session/session_testing.h"
#include "tests/window/virtual_display.h"

namespace quorvel::window {

using Accessible = freedesktop::ObjectHandle<AtspiAccessible>;

Accessible childAt(AtspiAccessible* parent, int index);
int childCount(AtspiAccessible* parent);
// The first object with that role below another one; null where there is none.
Accessible findRole(AtspiAccessible* below, AtspiRole role);
// Likewise, with that name too.
Accessible findNamed(AtspiAccessible* below, AtspiRole role, const std::string& name);

std::string nameOf(AtspiAccessible* object);
bool hasState(AtspiAccessible* object, AtspiStateType state); // now, not as it was stored
std::vector<std::string> namesIn(AtspiAccessible* list);

// The accessibility bus of a test, whose programs must not have NO_AT_BRIDGE in their environment.
// The session bus starts it, which writes files and needs a display: both belong to the session.
class AccessibilitySession {
public:
    AccessibilitySession();
    ~AccessibilitySession();
    AccessibilitySession(const AccessibilitySession&) = delete;
    AccessibilitySession& operator=(const AccessibilitySession&) = delete;

    const testing_session::TemporaryFolder& folder() const { return m_folder; }
    static std::string busAddress();

private:
    testing_session::TemporaryFolder m_folder;
    VirtualDisplay m_display;
};

} // namespace quorvel::window
