// Suppresses what the sanitizers report about other libraries: memory that those of fonts, of
// OpenGL and GTK never free, and that the calendar server's library loses if its service dies or
// hangs; and that cairo 1.18 reads behind a string's end when it finishes a PDF. Part of every
// sanitized program that shows text.

extern "C" const char* __lsan_default_suppressions(); // NOLINT: the sanitizer's own name
extern "C" const char* __asan_default_suppressions(); // NOLINT: likewise

extern "C" const char* __lsan_default_suppressions() { // NOLINT: the sanitizer's own name
    return "leak:libfontconfig.so\n"
           "leak:libpango\n"
           "leak:libcairo.so\n"
           "leak:libGLX_mesa.so\n"
           "leak:libgallium\n"
           "leak:gtk_widget_register_window\n"
           "leak:gtk_widget_list_mnemonic_labels\n"
           "leak:libedataserver-1.2.so\n"
           "leak:e_dbus_calendar_call_close\n";
}

extern "C" const char* __asan_default_suppressions() { // NOLINT: the sanitizer's own name
    return "interceptor_via_lib:libcairo.so\n";
}
