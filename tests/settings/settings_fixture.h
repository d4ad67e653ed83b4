// Runs `quorvel-settings` on a private display, with calendars and settings of the test, and drives
// its controls.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/window/accessible_tree.h"
#include "tests/window/window_fixture.h"

namespace quorvel::window {

class SettingsTest : public WindowTest {
protected:
    static void SetUpTestSuite() { s_session.emplace(); }
    static void TearDownTestSuite() { s_session.reset(); }

    // The calendars of the test are those that the user's programs find by themselves.
    SettingsTest();
    ~SettingsTest() override;

    // Returns when the window has the keyboard focus and has listed the calendars.
    void openSettings();
    // Does what opens a dialog, and gives it the keyboard focus, as nothing else does here.
    void openDialog(const std::function<void()>& open) const;
    void openSettingsBy(const std::vector<std::string>& command); // the program and its arguments
    void openSettingsOnAFullDisk();                               // none of its files can grow
    void endSettings();

    // Waits for the control; it is not null unless the test has failed.
    Accessible control(AtspiRole role, const std::string& name) const;
    bool appears(AtspiRole role, const std::string& name) const;
    bool isThere(AtspiRole role, const std::string& name) const; // now
    // The toolkit reports the state of each widget alone, without those around it.
    bool becomesSensitive(AtspiRole role, const std::string& name, bool isSensitive) const;

    // What a user does with the controls.
    void toggle(const std::string& label) const;
    void setNumber(const std::string& label, double number) const;
    bool numberBecomes(const std::string& label, double number) const;
    void choose(const std::string& label, int itemsDown) const;     // from the list of choices
    void press(const std::string& label) const;                     // a button
    void activate(AtspiRole role, const std::string& label) const;  // with the keyboard
    void focus(AtspiRole role, const std::string& label) const;     // with the tabulator
    bool tryAction(AtspiRole role, const std::string& label) const; // false: it is not sensitive
    using WindowTest::press;

    std::string settingsContent() const;                // of the file of the settings
    bool contentBecomes(const std::string& part) const; // contains it
    bool contentLoses(const std::string& part) const;

    // The visible window that is none of those; 0 where none appears.
    unsigned long newWindow(const std::vector<unsigned long>& before) const;

    std::unique_ptr<ChildProcess> m_settings;
    std::string m_settingsWindow;

private:
    static inline std::optional<AccessibilitySession> s_session;
};

} // namespace quorvel::window
