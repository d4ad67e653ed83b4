// Starts a private display for a test program that uses the toolkit. All tests share it, as a
// process opens a display once.
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <unistd.h>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "tests/window/virtual_display.h"

namespace quorvel::gtk {
namespace {

class ToolkitDisplay : public testing::Environment {
public:
    void SetUp() override {
        m_errors = (std::filesystem::temp_directory_path() / "quorvel-toolkit-XXXXXX").string();
        close(mkstemp(m_errors.data()));
        m_display = std::make_unique<window::VirtualDisplay>(m_errors);
        gdk_set_allowed_backends("x11");
        setenv("DISPLAY", m_display->name().c_str(), 1);
        setenv("NO_AT_BRIDGE", "1", 1);
        setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
        setenv("GSETTINGS_BACKEND", "memory", 1);
        ASSERT_TRUE(gtk_init_check(nullptr, nullptr));
    }
    void TearDown() override {
        m_display.reset();
        std::filesystem::remove(m_errors);
    }

private:
    std::string m_errors;
    std::unique_ptr<window::VirtualDisplay> m_display;
};

const testing::Environment* const display = testing::AddGlobalTestEnvironment(new ToolkitDisplay);

} // namespace
} // namespace quorvel::gtk
