#include "tests/window/accessible_tree.h"

#include <cstdlib>
#include <functional>

#include <gio/gio.h>
#include <gtest/gtest.h>

// The library that reads the tree loses memory when a program that it read ends. The programs under
// test are still checked for leaks: this is about the test's own process.
extern "C" int __lsan_is_turned_off();
int __lsan_is_turned_off() {
    return 1;
}

namespace quorvel::window {

using freedesktop::ObjectHandle;

namespace {

Accessible findWhere(AtspiAccessible* below,
                     const std::function<bool(AtspiAccessible*)>& isWanted) {
    for (int i = 0; below != nullptr && i < childCount(below); ++i) {
        Accessible child = childAt(below, i);
        if (!child) {
            continue;
        }
        if (isWanted(child.get())) {
            return child;
        }
        if (Accessible found = findWhere(child.get(), isWanted)) {
            return found;
        }
    }
    return nullptr;
}

AtspiRole roleOf(AtspiAccessible* object) {
    return atspi_accessible_get_role(object, nullptr);
}

// The first text of the reply; empty without one.
std::string callBus(const char* name, const char* path, const char* method, GVariant* parameters) {
    const ObjectHandle<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    const freedesktop::VariantHandle reply(
        bus ? g_dbus_connection_call_sync(bus.get(), name, path, name, method, parameters, nullptr,
                                          G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr)
            : nullptr);
    EXPECT_TRUE(reply) << method;
    const char* text = "";
    if (reply && g_variant_n_children(reply.get()) > 0) {
        g_variant_get_child(reply.get(), 0, "&s", &text);
    }
    return text;
}

} // namespace

Accessible childAt(AtspiAccessible* parent, int index) {
    return Accessible(atspi_accessible_get_child_at_index(parent, index, nullptr));
}

int childCount(AtspiAccessible* parent) {
    return atspi_accessible_get_child_count(parent, nullptr);
}

Accessible findRole(AtspiAccessible* below, AtspiRole role) {
    return findWhere(below, [role](AtspiAccessible* object) { return roleOf(object) == role; });
}

Accessible findNamed(AtspiAccessible* below, AtspiRole role, const std::string& name) {
    return findWhere(below, [&](AtspiAccessible* object) {
        return roleOf(object) == role && nameOf(object) == name;
    });
}

std::string nameOf(AtspiAccessible* object) {
    const freedesktop::TextHandle name(atspi_accessible_get_name(object, nullptr));
    return name ? name.get() : "";
}

bool hasState(AtspiAccessible* object, AtspiStateType state) {
    atspi_accessible_clear_cache(object);
    const ObjectHandle<AtspiStateSet> states(atspi_accessible_get_state_set(object));
    return states && atspi_state_set_contains(states.get(), state) != 0;
}

std::vector<std::string> namesIn(AtspiAccessible* list) {
    std::vector<std::string> names;
    for (int i = 0; i < childCount(list); ++i) {
        const Accessible row = childAt(list, i);
        names.push_back(row ? nameOf(row.get()) : "(none)");
    }
    return names;
}

AccessibilitySession::AccessibilitySession()
    : m_display(m_folder / "display.log") {
    GVariantBuilder environment;
    g_variant_builder_init(&environment, G_VARIANT_TYPE("a{ss}"));
    for (const char* name :
         {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"}) {
        g_variant_builder_add(&environment, "{ss}", name, m_folder.path().c_str());
    }
    g_variant_builder_add(&environment, "{ss}", "DISPLAY", m_display.name().c_str());
    callBus("org.freedesktop.DBus", "/org/freedesktop/DBus", "UpdateActivationEnvironment",
            g_variant_new("(a{ss})", &environment));
    unsetenv("DISPLAY"); // its properties might contain the address of another bus
    atspi_init();
}

AccessibilitySession::~AccessibilitySession() {
    atspi_exit();
}

std::string AccessibilitySession::busAddress() {
    return callBus("org.a11y.Bus", "/org/a11y/bus", "GetAddress", nullptr);
}

} // namespace quorvel::window
