// Starts a private display for a test program that uses the toolkit of the phone's settings. All
// tests share it, as a process opens a display once.
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <unistd.h>

#include <adwaita.h>
#include <gtest/gtest.h>

#include "tests/window/virtual_display.h"

// GTK 4.18 loses the lists of its labels' mnemonics, and the sanitizer cannot follow its calls far
// enough to suppress just that. With the version of Debian 12, 4.8, leaks are reported.
extern "C" int __lsan_is_turned_off();
int __lsan_is_turned_off() {
    return gtk_get_minor_version() > 8 ? 1 : 0;
}

namespace quorvel::phosh {
namespace {

class PreferencesDisplay : public testing::Environment {
public:
    void SetUp() override {
        m_errors = (std::filesystem::temp_directory_path() / "quorvel-toolkit-XXXXXX").string();
        close(mkstemp(m_errors.data()));
        m_display = std::make_unique<window::VirtualDisplay>(m_errors);
        gdk_set_allowed_backends("x11");
        setenv("DISPLAY", m_display->name().c_str(), 1);
        setenv("GDK_DEBUG", "gl-disable", 1); // the drivers of OpenGL lose memory
        setenv("GSK_RENDERER", "cairo", 1);
        setenv("GTK_A11Y", "none", 1);
        setenv("ADW_DISABLE_PORTAL", "1", 1);
        setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
        setenv("GSETTINGS_BACKEND", "memory", 1);
        setenv("LC_ALL", "C.UTF-8", 1); // the tests find widgets by their English titles
        unsetenv("LANGUAGE");
        ASSERT_TRUE(gtk_init_check());
        adw_init();
    }
    void TearDown() override {
        gdk_display_close(gdk_display_get_default());
        m_display.reset();
        std::filesystem::remove(m_errors);
    }

private:
    std::string m_errors;
    std::unique_ptr<window::VirtualDisplay> m_display;
};

const testing::Environment* const display =
    testing::AddGlobalTestEnvironment(new PreferencesDisplay);

} // namespace
} // namespace quorvel::phosh
