#include "app/settings/settings_application.h"

#include <array>
#include <utility>

#include "freedesktop/bundle/program_folders.h"

namespace quorvel::app {

using freedesktop::ObjectHandle;
using settings_pages::SettingsWindow;
using settings_pages::SettingsWindowOptions;

namespace {

constexpr const char* applicationId = "org.quorvel.Settings";
constexpr const char* programName = "quorvel-settings";

SettingsWindowOptions optionsFor(const std::string& preferencesFolder) {
    const freedesktop::ProgramFolders& folders = freedesktop::programFolders();
    return {preferencesFolder, folders.command, folders.data, QUORVEL_VERSION};
}

} // namespace

SettingsApplication::SettingsApplication()
    : m_application(adw_application_new(applicationId, G_APPLICATION_HANDLES_COMMAND_LINE))
    , m_destroyClosed([this] { m_closed.clear(); }) {
    using Handler = int (*)(GApplication*, GApplicationCommandLine*, SettingsApplication*);
    const Handler opened = [](GApplication*, GApplicationCommandLine* line,
                              SettingsApplication* self) {
        int count = 0;
        const freedesktop::TextsHandle words(
            g_application_command_line_get_arguments(line, &count));
        if (count == 2) {
            self->open(words.get()[1]);
        }
        return EXIT_SUCCESS;
    };
    g_signal_connect(m_application.get(), "command-line", G_CALLBACK(opened), this);
    addQuitKeys();
}

SettingsApplication::~SettingsApplication() {
    g_signal_handlers_disconnect_by_data(m_application.get(), this);
}

void SettingsApplication::addQuitKeys() {
    const ObjectHandle<GSimpleAction> quit(g_simple_action_new("quit", nullptr));
    g_signal_connect_swapped(quit.get(), "activate", G_CALLBACK(g_application_quit),
                             m_application.get());
    g_action_map_add_action(G_ACTION_MAP(m_application.get()), G_ACTION(quit.get()));
    const auto setKey = [this](const char* action, const char* key) {
        const std::array<const char*, 2> keys{key, nullptr};
        gtk_application_set_accels_for_action(GTK_APPLICATION(m_application.get()), action,
                                              keys.data());
    };
    setKey("app.quit", "<Control>q");
    setKey("window.close", "<Control>w");
    setKey("win.shortcuts", "<Control>question");
}

int SettingsApplication::run(const std::string& preferencesFolder) {
    std::string program = programName;
    std::string folder = preferencesFolder;
    std::array<char*, 3> words{program.data(), folder.data(), nullptr};
    const int status = g_application_run(G_APPLICATION(m_application.get()), 2, words.data());
    m_windows.clear();
    return status;
}

void SettingsApplication::open(const std::string& preferencesFolder) {
    auto& window = m_windows[preferencesFolder];
    if (!window) {
        window = std::make_unique<SettingsWindow>(
            m_application.get(), optionsFor(preferencesFolder), m_log,
            [this, preferencesFolder] { close(preferencesFolder); });
    }
    window->present();
}

// It is called by the window itself, which is therefore destroyed later.
void SettingsApplication::close(const std::string& preferencesFolder) {
    if (auto node = m_windows.extract(preferencesFolder)) {
        m_closed.push_back(std::move(node.mapped()));
        m_destroyClosed.start(0);
    }
}

} // namespace quorvel::app
