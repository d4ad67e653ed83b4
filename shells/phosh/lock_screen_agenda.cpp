#include "shells/phosh/lock_screen_agenda.h"

#include <exception>
#include <utility>

#include "shells/phosh/lock_screen_content.h"

namespace quorvel::phosh {

namespace {

struct LockScreenAgenda {
    GtkBox parent;
    LockScreenContent* content; // null: disposed of, or the system lacks threads or memory
};

struct LockScreenAgendaClass {
    GtkBoxClass parent;
};

gpointer parentClass = nullptr;

LockScreenAgenda* agendaOf(gpointer object) {
    return static_cast<LockScreenAgenda*>(object);
}

// No exception may leave a function that GTK calls.
void initialize(GTypeInstance* instance, gpointer) {
    LockScreenAgenda* const agenda = agendaOf(instance);
    try {
        agenda->content = new LockScreenContent(GTK_CONTAINER(instance));
    } catch (const std::exception& error) {
        g_warning("the agenda cannot be shown: %s", error.what());
        agenda->content = nullptr;
    }
}

// GTK may call this more than once.
void dispose(GObject* object) {
    delete std::exchange(agendaOf(object)->content, nullptr);
    G_OBJECT_CLASS(parentClass)->dispose(object);
}

void initializeClass(gpointer agendaClass, gpointer) {
    parentClass = g_type_class_peek_parent(agendaClass);
    G_OBJECT_CLASS(agendaClass)->dispose = dispose;
    gtk_widget_class_set_css_name(GTK_WIDGET_CLASS(agendaClass), "quorvel-agenda");
}

} // namespace

GType lockScreenAgendaType() {
    static const GType type = g_type_register_static_simple(
        GTK_TYPE_BOX, "QuorvelLockScreenAgenda", sizeof(LockScreenAgendaClass), initializeClass,
        sizeof(LockScreenAgenda), initialize, GTypeFlags{});
    return type;
}

} // namespace quorvel::phosh
