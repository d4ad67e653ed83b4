#include "tests/settings/settings_fixture.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace quorvel::window {

using freedesktop::ObjectHandle;

namespace {

constexpr double patience = 20; // seconds; sanitizers make programs slow
constexpr const char* systemData = "/usr/local/share:/usr/share";

} // namespace

SettingsTest::SettingsTest() {
    m_environment.erase("NO_AT_BRIDGE");
    m_environment["XDG_DATA_HOME"] = path("").parent_path().string(); // with the folder "calendars"
    m_environment["XDG_DATA_DIRS"] = path("data").string() + ':' + systemData;
    m_environment["GDK_DEBUG"] = "gl-disable"; // the drivers of OpenGL lose memory
    m_environment["GSK_RENDERER"] = "cairo";
    m_environment["ADW_DISABLE_PORTAL"] = "1";
}

SettingsTest::~SettingsTest() {
    endSettings();
}

void SettingsTest::endSettings() {
    m_settings.reset();
}

void SettingsTest::openSettings() {
    openSettingsBy({QUORVEL_SETTINGS, "--preferences", path("preferences").string()});
}

void SettingsTest::openSettingsOnAFullDisk() {
    openSettingsBy({"/bin/sh", "-c", "trap '' XFSZ; ulimit -f 0; exec \"$@\"", "sh",
                    QUORVEL_SETTINGS, "--preferences", path("preferences").string()});
}

void SettingsTest::openSettingsBy(const std::vector<std::string>& command) {
    const std::vector<unsigned long> before = m_display->windows();
    m_settings =
        std::make_unique<ChildProcess>(command, m_environment, path("settings.log").string());
    m_settingsWindow = std::to_string(newWindow(before));
    constexpr const char* besideTheAgenda = "500";
    input({"windowmove", m_settingsWindow, besideTheAgenda, "0"});
    input({"windowfocus", m_settingsWindow});
    // Without calendars the welcome comes first, and newer toolkits show only that.
    ASSERT_TRUE(becomesTrue(patience, [this] {
        return isThere(ATSPI_ROLE_CHECK_BOX, "Follow the calendar application") ||
               isThere(ATSPI_ROLE_PUSH_BUTTON, "Go to the Settings");
    }));
}

unsigned long SettingsTest::newWindow(const std::vector<unsigned long>& before) const {
    unsigned long found = 0;
    EXPECT_TRUE(becomesTrue(patience, [&] {
        for (const unsigned long window : m_display->windows()) {
            if (std::ranges::find(before, window) == before.end()) {
                found = window;
            }
        }
        return found != 0;
    }));
    return found;
}

void SettingsTest::openDialog(const std::function<void()>& open) const {
    const std::vector<unsigned long> before = m_display->windows();
    open();
    input({"windowfocus", std::to_string(newWindow(before))});
}

Accessible SettingsTest::control(AtspiRole role, const std::string& name) const {
    Accessible found;
    EXPECT_TRUE(becomesTrue(patience, [&] {
        const Accessible desktop(atspi_get_desktop(0));
        found = findNamed(desktop.get(), role, name);
        return found != nullptr;
    })) << name;
    return found;
}

bool SettingsTest::isThere(AtspiRole role, const std::string& name) const {
    const Accessible desktop(atspi_get_desktop(0));
    return findNamed(desktop.get(), role, name) != nullptr;
}

bool SettingsTest::appears(AtspiRole role, const std::string& name) const {
    return becomesTrue(patience, [&] { return isThere(role, name); });
}

bool SettingsTest::becomesSensitive(AtspiRole role, const std::string& name,
                                    bool isSensitive) const {
    const Accessible found = control(role, name);
    return found && becomesTrue(patience, [&] {
               return hasState(found.get(), ATSPI_STATE_SENSITIVE) == isSensitive;
           });
}

bool SettingsTest::tryAction(AtspiRole role, const std::string& label) const {
    const Accessible found = control(role, label);
    const ObjectHandle<AtspiAction> action(found ? atspi_accessible_get_action_iface(found.get())
                                                 : nullptr);
    return action && atspi_action_do_action(action.get(), 0, nullptr) != 0;
}

void SettingsTest::toggle(const std::string& label) const {
    EXPECT_TRUE(tryAction(ATSPI_ROLE_CHECK_BOX, label)) << label;
}

void SettingsTest::press(const std::string& label) const {
    EXPECT_TRUE(tryAction(ATSPI_ROLE_PUSH_BUTTON, label)) << label;
}

void SettingsTest::setNumber(const std::string& label, double number) const {
    const Accessible found = control(ATSPI_ROLE_SPIN_BUTTON, label);
    const ObjectHandle<AtspiValue> value(found ? atspi_accessible_get_value_iface(found.get())
                                               : nullptr);
    ASSERT_TRUE(value) << label;
    EXPECT_TRUE(atspi_value_set_current_value(value.get(), number, nullptr)) << label;
}

bool SettingsTest::numberBecomes(const std::string& label, double number) const {
    const Accessible found = control(ATSPI_ROLE_SPIN_BUTTON, label);
    const ObjectHandle<AtspiValue> value(found ? atspi_accessible_get_value_iface(found.get())
                                               : nullptr);
    return value && becomesTrue(patience, [&] {
               return atspi_value_get_current_value(value.get(), nullptr) == number;
           });
}

void SettingsTest::focus(AtspiRole role, const std::string& label) const {
    constexpr int mostSteps = 120; // more than there are controls
    const Accessible found = control(role, label);
    ASSERT_TRUE(found);
    // A slow program may move on before the focus is seen: then it comes around again, more slowly.
    for (const double wait : {0.03, 0.15}) {
        for (int i = 0; i < mostSteps; ++i) {
            if (hasState(found.get(), ATSPI_STATE_FOCUSED)) {
                return;
            }
            key("Tab");
            rest(wait);
        }
    }
    FAIL() << "the keyboard does not reach " << label;
}

void SettingsTest::activate(AtspiRole role, const std::string& label) const {
    focus(role, label);
    key("space");
}

void SettingsTest::choose(const std::string& label, int itemsDown) const {
    const std::size_t before = m_display->windows().size();
    activate(ATSPI_ROLE_COMBO_BOX, label);
    EXPECT_TRUE(becomesTrue(patience, [&] { return m_display->windows().size() > before; }));
    for (int i = 0; i < itemsDown; ++i) {
        key("Down");
    }
    key("Return");
    EXPECT_TRUE(becomesTrue(patience, [&] { return m_display->windows().size() == before; }));
}

std::string SettingsTest::settingsContent() const {
    std::ifstream file(path("preferences/org.quorvel.quorvelprefs.plist"), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool SettingsTest::contentBecomes(const std::string& part) const {
    return becomesTrue(patience, [&] { return settingsContent().find(part) != std::string::npos; });
}

bool SettingsTest::contentLoses(const std::string& part) const {
    return becomesTrue(patience, [&] { return settingsContent().find(part) == std::string::npos; });
}

} // namespace quorvel::window
