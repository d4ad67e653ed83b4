// Lists the calendar files below a folder, and which version each of them has now.
#pragma once

#include <string>

#include "freedesktop/calendars/files/calendar_folder.h"

namespace quorvel::freedesktop::calendars {

// Updates the tree to what is on the disk, and opens no file. A file or folder that was known by
// its name keeps what was read of it. The folder's path, real path and name are set before. At most
// some thousand folders are entered, down to deepestCalendarFolder, and none twice by way of links.
void scanFolder(CalendarFolder& folder);

// Finds the version of a single file; its name is its path.
void scanFile(CalendarFile& file);

// The path with all links resolved; the path itself where that fails.
std::string realPath(const std::string& path);

} // namespace quorvel::freedesktop::calendars
