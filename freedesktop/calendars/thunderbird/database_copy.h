// A private copy of a database that another program may be writing to.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "base/result.h"
#include "base/translatable_text.h"
#include "freedesktop/io/file_version.h"

namespace quorvel::freedesktop::thunderbird {

// The versions of the database and of the two files in which SQLite stores what has not been
// written into it yet. Of a file that does not exist FileVersion().
using DatabaseVersion = std::array<FileVersion, 3>;

DatabaseVersion databaseVersion(const std::string& path);
bool isSettled(const DatabaseVersion& version, std::int64_t readAt);

// Removes its files with itself. The original's folder is only read.
class DatabaseCopy {
public:
    static constexpr std::int64_t mostBytes = std::int64_t{256} << 20U; // of the three files

    // Copies into a folder of its own, which nobody else can read.
    static Result<DatabaseCopy, TranslatableText> of(const std::string& path);
    ~DatabaseCopy();
    DatabaseCopy(DatabaseCopy&& other) noexcept;
    DatabaseCopy& operator=(DatabaseCopy&&) = delete;

    std::string path() const;
    const DatabaseVersion& version() const { return m_version; }
    // The original did not change while it was copied.
    bool isWhole() const { return m_isWhole; }

private:
    explicit DatabaseCopy(std::string folder)
        : m_folder(std::move(folder)) {}
    Result<void, TranslatableText> copy(const std::string& path);

    std::string m_folder; // empty: it belongs to another copy
    DatabaseVersion m_version;
    bool m_isWhole = false;
};

} // namespace quorvel::freedesktop::thunderbird
