// The dialog that chooses one of the installed applications.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <adwaita.h>

#include "freedesktop/glib/handles.h"
#include "shells/settings/application_list.h"
#include "shells/settings/signal_connections.h"

namespace quorvel::settings_pages {

// Opens the dialog in front of the window of a widget.
class ApplicationChooser {
public:
    // `onChosen` gets the identifier when the user chooses; it must not destroy the chooser.
    ApplicationChooser(GtkWidget* widget, std::function<void(const std::string&)> onChosen);
    ~ApplicationChooser(); // closes the dialog
    ApplicationChooser(const ApplicationChooser&) = delete;
    ApplicationChooser& operator=(const ApplicationChooser&) = delete;

private:
    GtkWidget* makeList();
    void addApplication(std::size_t index);
    void filter();

    std::function<void(const std::string&)> m_onChosen;
    std::vector<ListedApplication> m_applications;
    std::vector<GtkWidget*> m_rows; // of the applications; GTK owns them
    GtkWidget* m_search;
    GtkWidget* m_list;
    freedesktop::ObjectHandle<AdwWindow> m_window;
    SignalConnections m_signals;
};

} // namespace quorvel::settings_pages
