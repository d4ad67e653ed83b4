// Tells the leak sanitizer what the font libraries keep for as long as the process lives, and what
// the calendar server's library loses where its service dies or stands still. Part of every
// sanitized program that shows text.

extern "C" const char* __lsan_default_suppressions(); // NOLINT: the sanitizer's own name

extern "C" const char* __lsan_default_suppressions() { // NOLINT: the sanitizer's own name
    return "leak:libfontconfig.so\n"
           "leak:libpango\n"
           "leak:libcairo.so\n"
           "leak:libedataserver-1.2.so\n";
}
