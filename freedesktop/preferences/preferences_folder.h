// Reads settings from property lists in the user's preferences folder.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "platform/preferences.h"
#include "platform/system_log.h"

namespace quorvel::freedesktop {

// The last version whose settings are read from the file itself.
inline constexpr double defaultFoundationVersionNumber = 1047.25;

// Whether a file of that name can hold settings.
bool mayHoldPropertyList(std::string_view name);

// Maps the preferences directories of the platform to the folder; such a path cannot leave it.
// Other paths are used unchanged. Logs and reports a file that exists but cannot be read, once
// until it changes.
class PreferencesFolder final : public platform::Preferences {
public:
    // The log must outlive this. The folder need not exist.
    PreferencesFolder(std::string folder, double foundationVersionNumber, platform::SystemLog& log);

    const std::string& folder() const { return m_folder; }
    void setFolder(std::string folder) { m_folder = std::move(folder); }

    // `deselected` returns the identifiers of the calendars that are hidden in the desktop's
    // calendar application. It is called on each use. Null: no calendar is hidden.
    void setDeselectedCalendars(std::function<std::vector<std::string>()> deselected) {
        m_deselectedCalendars = std::move(deselected);
    }

    // The `where` of the error is "PATH" or "PATH:LINE:COLUMN", its `toDo` is empty. Null: none.
    void setProblemHandler(std::function<void(const Error&)> onProblem) {
        m_onProblem = std::move(onProblem);
    }

    double foundationVersionNumber() const override { return m_foundationVersionNumber; }
    // If the user has no file of the stock calendar application, its content is derived from the
    // calendars that are hidden in the desktop's calendar application.
    std::optional<platform::PropertyListDictionary>
    dictionaryWithContentsOfFile(std::string_view path) override;
    std::optional<platform::PropertyListArray>
    arrayWithContentsOfFile(std::string_view path) override;
    std::optional<std::vector<std::string>> copyKeyList(std::string_view domain) override;
    std::optional<platform::PropertyListDictionary>
    copyMultiple(const std::vector<std::string>& keys, std::string_view domain) override;

private:
    // Absent if there is no such file. Logs an error.
    template <class Kind>
    Result<std::optional<Kind>> readAs(const std::string& path, const char* wrongKind);
    template <class Kind>
    Result<std::optional<Kind>> failure(const std::string& path, Error error);
    std::optional<platform::PropertyListDictionary> domainDictionary(std::string_view domain);
    std::optional<std::string> localPath(std::string_view path) const;
    std::optional<std::string> pathInFolder(std::string_view name) const;
    platform::PropertyListDictionary stockCalendarPreferences() const;

    std::string m_folder;
    double m_foundationVersionNumber;
    platform::SystemLog& m_log;
    std::function<std::vector<std::string>()> m_deselectedCalendars;
    std::function<void(const Error&)> m_onProblem; // may be null
    std::map<std::string, std::string> m_logged;   // the last error by path
};

} // namespace quorvel::freedesktop
