#include "shells/window/single_instance.h"

#include <utility>

#include "freedesktop/glib/session_bus.h"
#include "freedesktop/glib/session_bus_address.h"
#include "shells/window/toolkit.h"

namespace quorvel::window {

using freedesktop::BusHandle;
using freedesktop::ObjectHandle;
using freedesktop::VariantHandle;

namespace {

constexpr const char* optionsAction = "options";

void addOptions(GtkApplication* application, std::uint64_t options) {
    const ObjectHandle<GSimpleAction> action(
        g_simple_action_new_stateful(optionsAction, nullptr, g_variant_new_uint64(options)));
    g_simple_action_set_enabled(action.get(), FALSE); // it is there for its state alone
    g_action_map_add_action(G_ACTION_MAP(application), G_ACTION(action.get()));
}

// The desktop shows the actions of the desktop entry in its own menu for the program, and activates
// them over the bus. Each is the window's own of the same name.
void addWindowAction(GtkApplication* application, const char* name) {
    using Handler = void (*)(GSimpleAction*, GVariant*, GtkApplication*);
    const Handler activated = [](GSimpleAction* action, GVariant*, GtkApplication* owner) {
        for (const GList* window = gtk_application_get_windows(owner); window != nullptr;
             window = window->next) {
            GActionGroup* const actions =
                gtk_widget_get_action_group(GTK_WIDGET(window->data), "win");
            if (actions != nullptr) {
                g_action_group_activate_action(actions, g_action_get_name(G_ACTION(action)),
                                               nullptr);
            }
        }
    };
    const ObjectHandle<GSimpleAction> action(g_simple_action_new(name, nullptr));
    g_signal_connect(action.get(), "activate", G_CALLBACK(activated), application);
    g_action_map_add_action(G_ACTION_MAP(application), G_ACTION(action.get()));
}

bool hasOptions(GApplication* first, std::uint64_t options) {
    const VariantHandle state(
        g_action_group_get_action_state(G_ACTION_GROUP(first), optionsAction));
    return state && g_variant_is_of_type(state.get(), G_VARIANT_TYPE_UINT64) != FALSE &&
           g_variant_get_uint64(state.get()) == options;
}

} // namespace

SingleInstance::SingleInstance(std::uint64_t options) {
    // The library waits for a bus that does not answer for as long as that takes.
    const BusHandle bus =
        freedesktop::mayHaveSessionBus() ? freedesktop::waitForSessionBus() : nullptr;
    if (bus) {
        joinBus(options);
    }
}

void SingleInstance::joinBus(std::uint64_t options) {
    m_application.reset(gtk_application_new(applicationId, G_APPLICATION_DEFAULT_FLAGS));
    GApplication* const application = G_APPLICATION(m_application.get());
    using Handler = void (*)(GApplication*, SingleInstance*);
    const Handler activated = [](GApplication*, SingleInstance* instance) {
        if (instance->m_onActivate) {
            instance->m_onActivate();
        }
    };
    g_signal_connect(application, "activate", G_CALLBACK(activated), this);
    addOptions(m_application.get(), options);
    addWindowAction(m_application.get(), "settings");
    if (g_application_register(application, nullptr, nullptr) == FALSE) {
        m_application.reset();
        return;
    }
    if (g_application_get_is_remote(application) != FALSE) {
        m_role = hasOptions(application, options) ? InstanceRole::second
                                                  : InstanceRole::secondWithOptions;
    }
}

SingleInstance::~SingleInstance() {
    m_onActivate = nullptr;
    if (m_application) {
        // Without a window, this only takes leave of the bus; a second instance activates the
        // first.
        g_application_run(G_APPLICATION(m_application.get()), 0, nullptr);
        g_signal_handlers_disconnect_by_data(m_application.get(), this);
    }
}

void SingleInstance::setWindow(GtkWindow* window, std::function<void()> onActivate) {
    m_onActivate = std::move(onActivate);
    if (m_application && window != nullptr) {
        gtk_application_add_window(m_application.get(), window);
    }
}

} // namespace quorvel::window
