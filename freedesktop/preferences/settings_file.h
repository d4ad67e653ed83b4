// The file of the user's settings.
#pragma once

#include <string>
#include <string_view>

#include "base/result.h"
#include "freedesktop/preferences/list_edit.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

inline constexpr std::string_view settingsFileName = "org.quorvel.quorvelprefs.plist";

// An absent value removes the key.
using SettingChanges = DictionaryChanges;

// Holds no content: each call reads the file anew. For any thread.
class SettingsFile {
public:
    // The folder need not exist.
    explicit SettingsFile(const std::string& preferencesFolder);

    const std::string& path() const { return m_path; }

    // Empty without a file. In the old text format, which has only texts, those of known keys
    // become values of the key's kind if the widget converts them to the same values. An error
    // names the file, with line and column if they are known.
    Result<platform::PropertyListDictionary> read() const;

    // Where a key stands: "PATH:LINE:COLUMN" if that is known, else "PATH".
    std::string placeOf(const std::string& key) const;

    // All of the changes or none, see changePropertyListFile(). Other keys, comments, form and
    // encoding of the file stay; a file that cannot be read is not changed. Without a difference
    // nothing is written. Values are booleans, numbers and texts.
    Result<void> change(const SettingChanges& changes) const;

private:
    std::string m_path;
};

} // namespace quorvel::freedesktop
