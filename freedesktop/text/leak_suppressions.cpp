// Suppresses leak reports for memory that the font libraries never free, and that the calendar
// server's library loses if its service dies or hangs. Part of every sanitized program that shows
// text.

extern "C" const char* __lsan_default_suppressions(); // NOLINT: the sanitizer's own name

extern "C" const char* __lsan_default_suppressions() { // NOLINT: the sanitizer's own name
    return "leak:libfontconfig.so\n"
           "leak:libpango\n"
           "leak:libcairo.so\n"
           "leak:libedataserver-1.2.so\n";
}
