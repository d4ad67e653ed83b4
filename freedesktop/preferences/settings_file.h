// The file of the user's settings.
#pragma once

#include <string>
#include <string_view>

#include "base/result.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

inline constexpr std::string_view settingsFileName = "org.quorvel.quorvelprefs.plist";

// Holds no content: each call reads the file anew. For any thread.
class SettingsFile {
public:
    // The folder need not exist.
    explicit SettingsFile(const std::string& preferencesFolder);

    const std::string& path() const { return m_path; }

    // Empty without a file. An error names the file, with line and column if they are known.
    Result<platform::PropertyListDictionary> read() const;

private:
    std::string m_path;
};

} // namespace quorvel::freedesktop
