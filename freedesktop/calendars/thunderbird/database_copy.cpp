#include "freedesktop/calendars/thunderbird/database_copy.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "freedesktop/io/file_descriptor.h"
#include "freedesktop/io/regular_file.h"
#include "freedesktop/io/system_error_text.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

namespace fs = std::filesystem;

constexpr std::array<const char*, 3> suffixes{"", "-wal", "-journal"};
constexpr int mostAttempts = 3;
constexpr std::size_t pieceSize = std::size_t{256} << 10U; // bytes

TranslatableText unreadable(const std::error_code& error) {
    return {translatable("it cannot be read: {1}"), {systemErrorText(error.value())}};
}

TranslatableText unwritable(int error) {
    return {translatable("its copy in the folder for temporary files cannot be written: {1}"),
            {systemErrorText(error)}};
}

Result<void, TranslatableText> writeAll(const FileDescriptor& file, const char* bytes,
                                        std::size_t size) {
    while (size > 0) {
        const ssize_t count = ::write(file.get(), bytes, size);
        if (count < 0 && errno != EINTR) {
            return unwritable(errno);
        }
        const auto written = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
        bytes += written;
        size -= written;
    }
    return {};
}

// As many bytes as the file has at the beginning.
Result<void, TranslatableText> copyBytes(const RegularFile& from, const FileDescriptor& to) {
    std::vector<char> piece(pieceSize);
    for (std::uint64_t left = from.size(); left > 0;) {
        const auto next = static_cast<std::size_t>(std::min<std::uint64_t>(left, pieceSize));
        const auto count = from.read(piece.data(), next);
        if (!count) {
            return unreadable(count.error());
        }
        if (*count == 0) {
            break;
        }
        if (const auto written = writeAll(to, piece.data(), *count); !written) {
            return written;
        }
        left -= *count;
    }
    return {};
}

// A file that does not exist is not copied.
Result<void, TranslatableText> copyFile(const std::string& from, const std::string& to) {
    const auto original = RegularFile::open(from);
    if (!original) {
        const std::error_code error = original.error();
        if (error == std::errc::no_such_file_or_directory) {
            return {};
        }
        return error == std::errc::invalid_argument
                   ? TranslatableText(translatable("it is not a regular file"))
                   : unreadable(error);
    }
    const FileDescriptor copy(
        ::open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!copy.isOpen()) {
        return unwritable(errno);
    }
    return copyBytes(*original, copy);
}

std::int64_t sizeOf(const DatabaseVersion& version) {
    std::int64_t size = 0;
    for (const FileVersion& file : version) {
        size += std::max<std::int64_t>(file.size, 0);
    }
    return size;
}

} // namespace

DatabaseVersion databaseVersion(const std::string& path) {
    DatabaseVersion version;
    for (std::size_t i = 0; i < suffixes.size(); ++i) {
        struct stat status {};
        if (stat((path + suffixes[i]).c_str(), &status) == 0) {
            version[i] = versionOf(status);
        }
    }
    return version;
}

bool isSettled(const DatabaseVersion& version, std::int64_t readAt) {
    return std::ranges::all_of(version, [&](const FileVersion& file) {
        return file == FileVersion() || freedesktop::isSettled(file, readAt);
    });
}

Result<DatabaseCopy, TranslatableText> DatabaseCopy::of(const std::string& path) {
    std::error_code error;
    std::string folder = (fs::temp_directory_path(error) / "quorvel-XXXXXX").string();
    if (error || mkdtemp(folder.data()) == nullptr) {
        return unwritable(error ? error.value() : errno);
    }
    DatabaseCopy copy(folder);
    for (int attempt = 0; attempt < mostAttempts && !copy.m_isWhole; ++attempt) {
        if (const auto copied = copy.copy(path); !copied) {
            return copied.error();
        }
    }
    return copy;
}

Result<void, TranslatableText> DatabaseCopy::copy(const std::string& path) {
    m_version = databaseVersion(path);
    if (sizeOf(m_version) > mostBytes) {
        return TranslatableText(translatable("it is larger than {1} MB"),
                                {TranslatableText::verbatim(std::to_string(mostBytes >> 20U))});
    }
    for (const char* const suffix : suffixes) {
        const std::string target = this->path() + suffix;
        ::unlink(target.c_str()); // of the attempt before
        if (const auto copied = copyFile(path + suffix, target); !copied) {
            return copied;
        }
    }
    m_isWhole = databaseVersion(path) == m_version;
    return {};
}

DatabaseCopy::DatabaseCopy(DatabaseCopy&& other) noexcept
    : m_folder(std::exchange(other.m_folder, {}))
    , m_version(other.m_version)
    , m_isWhole(other.m_isWhole) {}

DatabaseCopy::~DatabaseCopy() {
    if (!m_folder.empty()) {
        std::error_code error;
        fs::remove_all(m_folder, error);
    }
}

std::string DatabaseCopy::path() const {
    return m_folder + "/copy.sqlite";
}

} // namespace quorvel::freedesktop::thunderbird
