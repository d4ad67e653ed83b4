// The preview: the widget as the command draws it, with the settings as they are.
#pragma once

#include <memory>
#include <string>

#include <adwaita.h>

#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/glib/handles.h"
#include "shells/settings/program_run.h"
#include "shells/settings/scratch_folder.h"
#include "shells/settings/signal_connections.h"

namespace quorvel::settings_pages {

// The picture that was asked for last is shown, once the command has drawn it. Logs nothing: a
// failure is shown in place of the picture.
class Preview {
public:
    // `program`: the path of `quorvel`. The scratch folder outlives the preview.
    Preview(std::string program, std::string preferencesFolder, const ScratchFolder& scratch);
    Preview(const Preview&) = delete;
    Preview& operator=(const Preview&) = delete;

    GtkWidget* widget() const { return m_widget.get(); }
    // For a page that scrolls, which would otherwise give the picture no more than a line.
    void setLeastHeight(int points);
    void refresh(); // soon; calls that follow each other quickly draw one picture
    // Without calendars of the user the sample is drawn, and nothing else can be chosen.
    void setHasCalendars(bool hasCalendars);

private:
    GtkWidget* makeChoice();
    void draw();
    void show(const ProgramResult& result);
    void showPicture();
    void showFailure(const std::string& reason);
    bool isSample() const;
    std::string pictureFile() const;

    std::string m_program;
    std::string m_preferencesFolder;
    const ScratchFolder& m_scratch;
    int m_scale = 1; // of the picture that is being drawn
    freedesktop::ObjectHandle<GtkWidget> m_widget;
    GtkWidget* m_picture; // GTK owns these
    GtkWidget* m_scrolled;
    GtkWidget* m_failure;
    GtkWidget* m_mine;
    GtkWidget* m_sample;
    freedesktop::DelayedCall m_soon;
    std::unique_ptr<ProgramRun> m_run; // null: nothing is being drawn
    SignalConnections m_signals;
};

} // namespace quorvel::settings_pages
