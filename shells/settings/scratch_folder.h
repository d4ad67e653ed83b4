// A folder for what exists only as long as a page does.
#pragma once

#include <string>

namespace quorvel::settings_pages {

class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder(); // removes the folder with its files
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    // Empty: none could be made.
    const std::string& path() const { return m_path; }
    // The folder itself if it exists, else an empty one: commands that only read refuse a folder
    // that is not there, and a user without settings has none before the first change.
    std::string existingOrEmpty(const std::string& folder) const;

private:
    std::string m_path;
};

} // namespace quorvel::settings_pages
