#include "freedesktop/calendars/subscriptions/subscription_cache.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "freedesktop/glib/text_hash.h"
#include "freedesktop/io/file_replacement.h"
#include "freedesktop/io/regular_file.h"
#include "freedesktop/io/user_folder.h"
#include "freedesktop/language/messages.h"

namespace quorvel::freedesktop {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t digitsOfName = 32;
constexpr std::size_t largestState = 64 << 10U; // bytes
constexpr std::size_t longestValue = 8192;
constexpr std::size_t mostValues = 9;

// One line, as the file has a line for each value.
std::string lineOf(std::string_view key, std::string_view value) {
    std::string line(key);
    line += ' ';
    for (const char c : value.substr(0, longestValue)) {
        line += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return line + '\n';
}

template <class Number>
void readNumber(std::string_view text, Number& number) {
    Number parsed = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (error == std::errc() && end == text.data() + text.size()) {
        number = parsed;
    }
}

// A text is followed by its values, which are the same in all languages.
std::string linesOf(const std::string& key, const TranslatableText& text) {
    std::string lines = lineOf(key, text.text());
    for (const TranslatableText& value : text.values()) {
        lines += lineOf(key + "-value", value.english());
    }
    return lines;
}

void addTo(TranslatableText& text, bool isBeginning, std::string_view line) {
    if (isBeginning) {
        text = TranslatableText(std::string(line));
        return;
    }
    std::vector<TranslatableText> values = text.values();
    if (values.size() < mostValues) {
        values.push_back(TranslatableText::verbatim(std::string(line)));
        text = TranslatableText(text.text(), std::move(values));
    }
}

void readLine(std::string_view key, std::string_view value, CopyState& state) {
    if (key == "confirmed") {
        readNumber(value, state.confirmedAt);
    } else if (key == "tried") {
        readNumber(value, state.triedAt);
    } else if (key == "error" || key == "error-value") {
        addTo(state.error, key == "error", value);
    } else if (key == "to-do" || key == "to-do-value") {
        addTo(state.toDo, key == "to-do", value);
    } else if (key == "may-pass") {
        state.mayPass = value == "yes";
    } else if (key == "name") {
        state.calendarName = value;
    } else if (key == "etag") {
        state.entityTag = value;
    } else if (key == "last-modified") {
        state.lastModified = value;
    } else if (key == "size") {
        readNumber(value, state.size);
    }
}

} // namespace

std::string textOfState(const CopyState& state) {
    return lineOf("confirmed", std::to_string(state.confirmedAt)) +
           lineOf("tried", std::to_string(state.triedAt)) + linesOf("error", state.error) +
           linesOf("to-do", state.toDo) + lineOf("may-pass", state.mayPass ? "yes" : "no") +
           lineOf("name", state.calendarName) + lineOf("etag", state.entityTag) +
           lineOf("last-modified", state.lastModified) + lineOf("size", std::to_string(state.size));
}

CopyState stateOfText(std::string_view text) {
    CopyState state;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        const std::size_t space = line.find(' ');
        if (space != std::string_view::npos) {
            readLine(line.substr(0, space), line.substr(space + 1), state);
        }
    }
    return state;
}

std::string userSubscriptionFolder() {
    const fs::path folder = userFolder("XDG_CACHE_HOME", ".cache") / "subscriptions";
    return folder.is_absolute() ? folder.string() : std::string();
}

std::string SubscriptionCache::folderOf(const std::string& url) const {
    return m_folder + '/' + secureHash(url).substr(0, digitsOfName);
}

std::string SubscriptionCache::calendarFile(const std::string& url) const {
    return folderOf(url) + "/calendar.ics";
}

std::string SubscriptionCache::stateFile(const std::string& url) const {
    return folderOf(url) + "/state";
}

bool SubscriptionCache::hasCopy(const std::string& url) const {
    return !m_folder.empty() && access(calendarFile(url).c_str(), R_OK) == 0;
}

CopyState SubscriptionCache::readState(const std::string& url) const {
    if (m_folder.empty()) {
        return {};
    }
    const auto bytes = readRegularFile(stateFile(url), largestState);
    if (!bytes || !*bytes) {
        return {};
    }
    return stateOfText({reinterpret_cast<const char*>((*bytes)->data()), (*bytes)->size()});
}

Result<void> SubscriptionCache::writeState(const std::string& url, const CopyState& state) const {
    return replaceFile(stateFile(url), textOfState(state));
}

Result<void> SubscriptionCache::makeFolder(const std::string& url) const {
    if (m_folder.empty()) {
        return Error{translated("there is no folder for caches"),
                     {},
                     translated("set HOME or XDG_CACHE_HOME")};
    }
    std::error_code error;
    fs::create_directories(m_folder, error);
    if (!error) {
        fs::permissions(m_folder, fs::perms::owner_all, error);
        fs::create_directory(folderOf(url), error);
    }
    if (!error) {
        fs::permissions(folderOf(url), fs::perms::owner_all, error);
    }
    if (error) {
        return Error{filled(translated("the folder '{1}' cannot be written ({2})"),
                            {m_folder, error.message()}),
                     {},
                     {}};
    }
    return {};
}

void SubscriptionCache::remove(const std::string& url) const {
    std::error_code error;
    if (!m_folder.empty()) {
        fs::remove_all(folderOf(url), error);
    }
}

} // namespace quorvel::freedesktop
