// Writes the desktop's settings as its control centre does, into the test program's memory; what it
// has written goes with it.
#pragma once

#include <cstdlib>
#include <set>
#include <string>

#include <gio/gio.h>

namespace quorvel::testing_session {

class SettingsWriter {
public:
    explicit SettingsWriter(const char* schema) {
        setenv("GSETTINGS_BACKEND", "memory", 1); // never those of the machine
        m_settings = g_settings_new(schema);
    }
    ~SettingsWriter() {
        for (const std::string& key : m_written) {
            g_settings_reset(m_settings, key.c_str());
        }
        g_object_unref(m_settings);
    }
    SettingsWriter(const SettingsWriter&) = delete;
    SettingsWriter& operator=(const SettingsWriter&) = delete;

    void set(const char* key, const char* value) {
        m_written.insert(key);
        g_settings_set_string(m_settings, key, value);
    }
    void set(const char* key, double value) {
        m_written.insert(key);
        g_settings_set_double(m_settings, key, value);
    }
    void set(const char* key, bool value) {
        m_written.insert(key);
        g_settings_set_boolean(m_settings, key, value ? TRUE : FALSE);
    }
    void reset(const char* key) { g_settings_reset(m_settings, key); }

private:
    GSettings* m_settings = nullptr;
    std::set<std::string> m_written;
};

} // namespace quorvel::testing_session
