// What the phone's settings show: a window until libadwaita 1.4, a dialog of theirs since.
#pragma once

#include <adwaita.h>

namespace quorvel::phosh {

#if ADW_CHECK_VERSION(1, 5, 0)
using PreferencesHost = AdwPreferencesDialog;
using PreferencesHostClass = AdwPreferencesDialogClass;
inline GType preferencesHostType() {
    return ADW_TYPE_PREFERENCES_DIALOG;
}
inline void addPage(PreferencesHost* host, AdwPreferencesPage* page) {
    adw_preferences_dialog_add(host, page);
}
inline void addToast(PreferencesHost* host, AdwToast* toast) {
    adw_preferences_dialog_add_toast(host, toast);
}
#else
using PreferencesHost = AdwPreferencesWindow;
using PreferencesHostClass = AdwPreferencesWindowClass;
inline GType preferencesHostType() {
    return ADW_TYPE_PREFERENCES_WINDOW;
}
inline void addPage(PreferencesHost* host, AdwPreferencesPage* page) {
    adw_preferences_window_add(host, page);
}
inline void addToast(PreferencesHost* host, AdwToast* toast) {
    adw_preferences_window_add_toast(host, toast);
}
#endif

} // namespace quorvel::phosh
