#include "shells/settings/preview.h"

#include <utility>

#include "freedesktop/language/messages.h"
#include "freedesktop/session/desktop_settings.h"
#include "shells/settings/preview_command.h"
#include "shells/settings/settings_text.h"
#include "shells/settings/widget_tools.h"

namespace quorvel::settings_pages {

using freedesktop::ErrorHandle;
using freedesktop::ObjectHandle;
using freedesktop::translated;

namespace {

constexpr double delay = 0.1;     // seconds
constexpr double longestRun = 20; // seconds
constexpr int width = 320;        // points
constexpr int mostHeight = 190;   // points, before the picture scrolls
constexpr int leastHeight = 60;
constexpr int spacing = 6;
constexpr int margin = 12;

// A picture of that many pixels a point. Null for a file that is no picture.
ObjectHandle<GdkPaintable> paintableOf(const std::string& file, int scale) {
    const ObjectHandle<GdkTexture> texture(gdk_texture_new_from_filename(file.c_str(), nullptr));
    if (!texture) {
        return nullptr;
    }
    const graphene_size_t size{
        static_cast<float>(gdk_texture_get_width(texture.get())) / static_cast<float>(scale),
        static_cast<float>(gdk_texture_get_height(texture.get())) / static_cast<float>(scale)};
    const graphene_rect_t frame{{0, 0}, size};
    GtkSnapshot* const snapshot = gtk_snapshot_new();
    gtk_snapshot_append_texture(snapshot, texture.get(), &frame);
    return ObjectHandle<GdkPaintable>(gtk_snapshot_free_to_paintable(snapshot, &size));
}

GtkWidget* scrolled(GtkWidget* child) {
    GtkWidget* const scrolled = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scrolled), GTK_POLICY_NEVER,
                                   GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_propagate_natural_height(GTK_SCROLLED_WINDOW(scrolled), TRUE);
    gtk_scrolled_window_set_min_content_height(GTK_SCROLLED_WINDOW(scrolled), leastHeight);
    gtk_scrolled_window_set_max_content_height(GTK_SCROLLED_WINDOW(scrolled), mostHeight);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scrolled), child);
    gtk_widget_set_size_request(scrolled, width, -1);
    gtk_widget_set_halign(scrolled, GTK_ALIGN_CENTER);
    gtk_widget_set_overflow(scrolled, GTK_OVERFLOW_HIDDEN); // its corners are round
    gtk_widget_add_css_class(scrolled, "card");
    return scrolled;
}

} // namespace

Preview::Preview(std::string program, std::string preferencesFolder, const ScratchFolder& scratch)
    : m_program(std::move(program))
    , m_preferencesFolder(std::move(preferencesFolder))
    , m_scratch(scratch)
    , m_widget(static_cast<GtkWidget*>(
          g_object_ref_sink(gtk_box_new(GTK_ORIENTATION_VERTICAL, spacing))))
    , m_picture(gtk_picture_new())
    , m_scrolled(scrolled(m_picture))
    , m_failure(gtk_label_new(nullptr))
    , m_mine(gtk_toggle_button_new_with_mnemonic(translated(text::previewMine)))
    , m_sample(gtk_toggle_button_new_with_mnemonic(translated(text::previewSample)))
    , m_soon([this] { draw(); }) {
    gtk_picture_set_alternative_text(GTK_PICTURE(m_picture), translated(text::preview));
    gtk_picture_set_can_shrink(GTK_PICTURE(m_picture), FALSE);
    setAccessibleName(m_picture, translated(text::preview));
    gtk_widget_set_valign(m_picture, GTK_ALIGN_START);
    gtk_label_set_ellipsize(GTK_LABEL(m_failure), PANGO_ELLIPSIZE_END);
    gtk_widget_set_visible(m_failure, FALSE);
    auto* const box = GTK_BOX(widget());
    gtk_widget_set_margin_top(widget(), margin);
    gtk_widget_set_margin_bottom(widget(), margin);
    gtk_box_append(box, m_scrolled);
    gtk_box_append(box, m_failure);
    gtk_box_append(box, makeChoice());
    m_signals.connect(adw_style_manager_get_default(), "notify::dark", [this] { refresh(); });
    m_signals.connect(widget(), "notify::scale-factor", [this] { refresh(); });
    refresh();
}

GtkWidget* Preview::makeChoice() {
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
    gtk_widget_add_css_class(box, "linked");
    gtk_widget_set_halign(box, GTK_ALIGN_CENTER);
    nameByMnemonic(m_mine, translated(text::previewMine));
    nameByMnemonic(m_sample, translated(text::previewSample));
    gtk_toggle_button_set_group(GTK_TOGGLE_BUTTON(m_sample), GTK_TOGGLE_BUTTON(m_mine));
    gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(m_mine), TRUE);
    gtk_box_append(GTK_BOX(box), m_mine);
    gtk_box_append(GTK_BOX(box), m_sample);
    m_signals.connect(m_sample, "toggled", [this] { refresh(); });
    return box;
}

std::string Preview::pictureFile() const {
    return m_scratch.path() + "/preview.png";
}

bool Preview::isSample() const {
    return gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(m_sample)) != FALSE;
}

void Preview::setHasCalendars(bool hasCalendars) {
    gtk_widget_set_sensitive(m_mine, hasCalendars ? TRUE : FALSE);
    if (!hasCalendars) {
        gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(m_sample), TRUE);
    }
}

void Preview::setLeastHeight(int points) {
    gtk_scrolled_window_set_min_content_height(GTK_SCROLLED_WINDOW(m_scrolled), points);
}

void Preview::refresh() {
    m_soon.start(delay);
}

void Preview::draw() {
    PreviewCommand command;
    command.program = m_program;
    command.preferencesFolder = m_scratch.existingOrEmpty(m_preferencesFolder);
    command.isSample = isSample();
    command.isDark = adw_style_manager_get_dark(adw_style_manager_get_default()) != FALSE;
    command.scale = gtk_widget_get_scale_factor(widget());
    command.textScale = freedesktop::desktopTextScale();
    command.width = width;
    command.picture = pictureFile();
    m_scale = command.scale;
    m_run.reset(); // an older picture is no longer wanted
    m_run = std::make_unique<ProgramRun>(argumentsOf(command), longestRun,
                                         [this](const ProgramResult& result) { show(result); });
}

void Preview::show(const ProgramResult& result) {
    if (result.hasSucceeded) {
        showPicture();
    } else {
        showFailure(failureReason(result.errors));
    }
}

void Preview::showPicture() {
    const ObjectHandle<GdkPaintable> picture = paintableOf(pictureFile(), m_scale);
    if (!picture) {
        showFailure(translated(text::noReason));
        return;
    }
    gtk_picture_set_paintable(GTK_PICTURE(m_picture), picture.get());
    gtk_widget_set_visible(m_failure, FALSE);
}

void Preview::showFailure(const std::string& reason) {
    const std::string line = filled(translated(text::previewFailed), {reason});
    gtk_label_set_text(GTK_LABEL(m_failure), line.c_str());
    gtk_widget_set_tooltip_text(m_failure, line.c_str());
    gtk_widget_set_visible(m_failure, TRUE);
}

} // namespace quorvel::settings_pages
