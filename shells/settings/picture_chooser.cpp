#include "shells/settings/picture_chooser.h"

#include <utility>

#include "freedesktop/language/messages.h"
#include "shells/settings/settings_text.h"

namespace quorvel::settings_pages {

using freedesktop::ObjectHandle;
using freedesktop::translated;

// Its successor exists only in later versions of the toolkit.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

namespace {

void acceptPictures(GtkFileChooser* chooser) {
    const ObjectHandle<GtkFileFilter> filter(gtk_file_filter_new());
    gtk_file_filter_set_name(filter.get(), translated(text::pictures));
    gtk_file_filter_add_pixbuf_formats(filter.get());
    gtk_file_chooser_add_filter(chooser, filter.get());
}

} // namespace

PictureChooser::PictureChooser(GtkWidget* widget, const std::string& file,
                               std::function<void(const std::string& file)> onChosen)
    : m_dialog(gtk_file_chooser_native_new(
          translated(text::choosePicture), GTK_WINDOW(gtk_widget_get_root(widget)),
          GTK_FILE_CHOOSER_ACTION_OPEN, translated(text::open), translated(text::cancel)))
    , m_onChosen(std::move(onChosen)) {
    auto* const chooser = GTK_FILE_CHOOSER(m_dialog.get());
    acceptPictures(chooser);
    if (!file.empty()) {
        const ObjectHandle<GFile> first(g_file_new_for_path(file.c_str()));
        gtk_file_chooser_set_file(chooser, first.get(), nullptr);
    }
    using Handler = void (*)(GtkNativeDialog*, int, PictureChooser*);
    const Handler answered = [](GtkNativeDialog*, int response, PictureChooser* self) {
        self->m_onChosen(response == GTK_RESPONSE_ACCEPT ? self->chosenFile() : std::string());
    };
    g_signal_connect(m_dialog.get(), "response", G_CALLBACK(answered), this);
    gtk_native_dialog_set_modal(GTK_NATIVE_DIALOG(m_dialog.get()), TRUE);
    gtk_native_dialog_show(GTK_NATIVE_DIALOG(m_dialog.get()));
}

PictureChooser::~PictureChooser() {
    g_signal_handlers_disconnect_by_data(m_dialog.get(), this);
    gtk_native_dialog_destroy(GTK_NATIVE_DIALOG(m_dialog.get()));
}

std::string PictureChooser::chosenFile() const {
    const ObjectHandle<GFile> file(gtk_file_chooser_get_file(GTK_FILE_CHOOSER(m_dialog.get())));
    const freedesktop::TextHandle path(file ? g_file_get_path(file.get()) : nullptr);
    return path ? path.get() : "";
}

G_GNUC_END_IGNORE_DEPRECATIONS

} // namespace quorvel::settings_pages
