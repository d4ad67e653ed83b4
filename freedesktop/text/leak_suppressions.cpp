// Tells the leak sanitizer what the font libraries keep for as long as the process lives. Part of
// every sanitized program that shows text.

extern "C" const char* __lsan_default_suppressions(); // NOLINT: the sanitizer's own name

extern "C" const char* __lsan_default_suppressions() { // NOLINT: the sanitizer's own name
    return "leak:libfontconfig.so\n"
           "leak:libpango\n"
           "leak:libcairo.so\n";
}
