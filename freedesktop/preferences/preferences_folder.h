// Settings as property lists in one folder of the user's.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/preferences.h"
#include "platform/system_log.h"

namespace quorvel::freedesktop {

// The last version whose settings are read from the file itself.
inline constexpr double defaultFoundationVersionNumber = 1047.25;

// Whether a file of that name may be read as settings.
bool mayHoldPropertyList(std::string_view name);

// The platform's preferences directories stand for the folder; no path through them leaves it.
// Other paths are read as they are. What is there but cannot be read is said in the log, once until
// it changes.
class PreferencesFolder final : public platform::Preferences {
public:
    // The log must outlive this. The folder need not exist.
    PreferencesFolder(std::string folder, double foundationVersionNumber, platform::SystemLog& log);

    const std::string& folder() const { return m_folder; }
    void setFolder(std::string folder) { m_folder = std::move(folder); }

    // The identifiers of the calendars that the desktop's calendar application has switched off;
    // asked each time. Null: none are.
    void setDeselectedCalendars(std::function<std::vector<std::string>()> deselected) {
        m_deselectedCalendars = std::move(deselected);
    }

    double foundationVersionNumber() const override { return m_foundationVersionNumber; }
    // The stock calendar application's file, where the user has none, is what the desktop's
    // calendar application has switched off.
    std::optional<platform::PropertyListDictionary>
    dictionaryWithContentsOfFile(std::string_view path) override;
    std::optional<platform::PropertyListArray>
    arrayWithContentsOfFile(std::string_view path) override;
    std::optional<std::vector<std::string>> copyKeyList(std::string_view domain) override;
    std::optional<platform::PropertyListDictionary>
    copyMultiple(const std::vector<std::string>& keys, std::string_view domain) override;

private:
    template <class Kind>
    std::optional<Kind> readAs(const std::string& path, const char* kind, bool& missing);
    std::optional<platform::PropertyListDictionary> domainDictionary(std::string_view domain);
    std::optional<std::string> localPath(std::string_view path) const;
    std::optional<std::string> pathInFolder(std::string_view name) const;
    platform::PropertyListDictionary stockCalendarPreferences() const;
    void report(const std::string& path, const std::string& problem);

    std::string m_folder;
    double m_foundationVersionNumber;
    platform::SystemLog& m_log;
    std::function<std::vector<std::string>()> m_deselectedCalendars;
    std::map<std::string, std::string> m_reported; // problem by path
};

} // namespace quorvel::freedesktop
