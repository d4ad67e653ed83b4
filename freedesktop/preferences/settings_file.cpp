#include "freedesktop/preferences/settings_file.h"

#include "freedesktop/preferences/reported_property_list.h"

namespace quorvel::freedesktop {

SettingsFile::SettingsFile(const std::string& preferencesFolder)
    : m_path(preferencesFolder + '/' + std::string(settingsFileName)) {}

Result<platform::PropertyListDictionary> SettingsFile::read() const {
    return readDictionaryFile(m_path);
}

} // namespace quorvel::freedesktop
