#include "shells/window/window_actions.h"

#include <utility>

namespace quorvel::window {

WindowActions::WindowActions(GtkWidget* widget, const char* prefix,
                             std::function<void(std::exception_ptr)> onFailure)
    : m_group(g_simple_action_group_new())
    , m_onFailure(std::move(onFailure)) {
    gtk_widget_insert_action_group(widget, prefix, G_ACTION_GROUP(m_group.get()));
}

WindowActions::~WindowActions() {
    for (const auto& [name, action] : m_actions) {
        g_action_map_remove_action(G_ACTION_MAP(m_group.get()), name.c_str());
    }
}

void WindowActions::run(const std::function<void()>& function) const noexcept {
    try {
        function();
    } catch (...) {
        m_onFailure(std::current_exception());
    }
}

void WindowActions::add(const char* name, std::function<void()> function) {
    Action& added = m_actions[name];
    added = {this, std::move(function)};
    using Handler = void (*)(GSimpleAction*, GVariant*, const Action*);
    const Handler activated = [](GSimpleAction*, GVariant*, const Action* action) {
        action->owner->run(action->function);
    };
    const freedesktop::ObjectHandle<GSimpleAction> action(g_simple_action_new(name, nullptr));
    g_signal_connect(action.get(), "activate", G_CALLBACK(activated), &added);
    g_action_map_add_action(G_ACTION_MAP(m_group.get()), G_ACTION(action.get()));
}

void WindowActions::setEnabled(const char* name, bool isEnabled) {
    GAction* const action = g_action_map_lookup_action(G_ACTION_MAP(m_group.get()), name);
    g_simple_action_set_enabled(G_SIMPLE_ACTION(action), isEnabled ? TRUE : FALSE);
}

} // namespace quorvel::window
