// The dialog that chooses a picture file.
#pragma once

#include <functional>
#include <string>

#include <gtk/gtk.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::settings_pages {

// Opens the dialog in front of the window of a widget. The desktop's own dialog is used where there
// is one.
class PictureChooser {
public:
    // `onChosen` gets the path once; it is empty if the user has chosen none. It must not destroy
    // the chooser. `file` is shown first; empty: none.
    PictureChooser(GtkWidget* widget, const std::string& file,
                   std::function<void(const std::string& file)> onChosen);
    ~PictureChooser(); // closes the dialog
    PictureChooser(const PictureChooser&) = delete;
    PictureChooser& operator=(const PictureChooser&) = delete;

private:
    std::string chosenFile() const;

    freedesktop::ObjectHandle<GtkFileChooserNative> m_dialog;
    std::function<void(const std::string&)> m_onChosen;
};

} // namespace quorvel::settings_pages
