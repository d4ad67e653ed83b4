#include "shells/settings/scratch_folder.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace quorvel::settings_pages {

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
    std::error_code error;
    std::string name = (fs::temp_directory_path(error) / "quorvel-settings-XXXXXX").string();
    if (!error && mkdtemp(name.data()) != nullptr) {
        m_path = name;
    }
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    if (!m_path.empty()) {
        fs::remove_all(m_path, ignored);
    }
}

std::string ScratchFolder::existingOrEmpty(const std::string& folder) const {
    std::error_code error;
    if (fs::exists(folder, error) || m_path.empty()) {
        return folder;
    }
    const fs::path empty = fs::path(m_path) / "no-preferences";
    fs::create_directory(empty, error);
    return empty.string();
}

} // namespace quorvel::settings_pages
