// The rows as a screen reader finds them, over the accessibility bus of a private session.
#include <memory>

#include <atspi/atspi.h>
#include <gmock/gmock.h>

#include "tests/window/window_fixture.h"

namespace quorvel::window {
namespace {

using testing::ElementsAre;
using testing::EndsWith;

struct ObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using Accessible = std::unique_ptr<AtspiAccessible, ObjectUnref>;

Accessible childAt(AtspiAccessible* parent, int index) {
    return Accessible(atspi_accessible_get_child_at_index(parent, index, nullptr));
}

int childCount(AtspiAccessible* parent) {
    return atspi_accessible_get_child_count(parent, nullptr);
}

// The first object of that role at or below one; null where there is none.
Accessible findRole(AtspiAccessible* below, AtspiRole role) {
    for (int i = 0; below != nullptr && i < childCount(below); ++i) {
        Accessible child = childAt(below, i);
        if (!child) {
            continue;
        }
        if (atspi_accessible_get_role(child.get(), nullptr) == role) {
            return child;
        }
        if (Accessible found = findRole(child.get(), role)) {
            return found;
        }
    }
    return nullptr;
}

std::string nameOf(AtspiAccessible* object) {
    char* name = atspi_accessible_get_name(object, nullptr);
    std::string text = name != nullptr ? name : "";
    g_free(name);
    return text;
}

class AccessibilityTest : public WindowTest {
protected:
    AccessibilityTest() {
        m_environment.erase("NO_AT_BRIDGE");
        setenv("DISPLAY", m_display->name().c_str(), 1);
        setenv("XDG_RUNTIME_DIR", path("runtime").c_str(), 1);
        atspi_init();
    }
    Accessible list() const {
        const Accessible desktop(atspi_get_desktop(0));
        return findRole(desktop.get(), ATSPI_ROLE_LIST);
    }
};

TEST_F(AccessibilityTest, ReadsTheRowsAndRunsTheirAction) {
    writeThreeEvents();
    show();
    Accessible rows;
    ASSERT_TRUE(becomesTrue(20, [&] {
        rows = list();
        return rows && childCount(rows.get()) == 3;
    }));
    std::vector<std::string> names;
    for (int i = 0; i < 3; ++i) {
        const Accessible row = childAt(rows.get(), i);
        ASSERT_TRUE(row);
        EXPECT_EQ(atspi_accessible_get_role(row.get(), nullptr), ATSPI_ROLE_LIST_ITEM);
        names.push_back(nameOf(row.get()));
    }
    EXPECT_THAT(names, ElementsAre("Breakfast, 11:00 AM", "Lunch, 12:00 PM", "Tea, 2:00 PM"));
    const Accessible second = childAt(rows.get(), 1);
    AtspiAction* action = atspi_accessible_get_action_iface(second.get());
    ASSERT_NE(action, nullptr);
    EXPECT_EQ(atspi_action_get_n_actions(action, nullptr), 1);
    EXPECT_TRUE(atspi_action_do_action(action, 0, nullptr));
    g_object_unref(action);
    ASSERT_TRUE(opensLinks(1));
    EXPECT_THAT(opened(), ElementsAre(EndsWith("/second?o=794836800.0")));

    writeCalendar(event("a", "Alone", "20260310T110000Z", "20260310T120000Z"));
    EXPECT_TRUE(becomesTrue(10, [&] {
        atspi_accessible_clear_cache(rows.get());
        const Accessible first = childCount(rows.get()) == 1 ? childAt(rows.get(), 0) : nullptr;
        return first && nameOf(first.get()) == "Alone, 11:00 AM";
    }));
}

} // namespace
} // namespace quorvel::window
