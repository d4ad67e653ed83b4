#include "freedesktop/calendars/files/calendar_folder.h"

#include <algorithm>

#include "freedesktop/calendars/files/calendar_file_names.h"
#include "icalendar/text/property_values.h"

namespace quorvel::freedesktop::calendars {
namespace {

// A folder with more single events than this is a calendar, whatever its files are called.
constexpr std::size_t mostUnnamedCalendars = 24;
constexpr std::uint64_t withoutVersion = 0; // of a problem that belongs to no file's version

std::string withoutTrailingBlanks(std::string text) {
    text.erase(text.find_last_not_of("\n\r \t") + 1);
    return text;
}

} // namespace

bool hasCalendarFiles(const CalendarFolder& folder) {
    return !folder.files.empty() || !folder.metadata.empty();
}

bool looksLikeOneCalendar(const CalendarFolder& folder) {
    if (!folder.metadata.empty()) {
        return true;
    }
    std::size_t singleEvents = 0;
    std::size_t named = 0; // after their event
    for (const CalendarFile& file : folder.files) {
        const auto calendar = file.calendar();
        if (calendar && calendar->ics.looksLikeOneEvent()) {
            const icalendar::IcsFile& ics = calendar->ics;
            ++singleEvents;
            named += nameMatchesUid(stemOf(file.name), ics.slice(ics.events.front().uid)) ? 1 : 0;
        }
    }
    const std::size_t half = folder.files.size() / 2;
    return named > half || (singleEvents > half && folder.files.size() > mostUnnamedCalendars);
}

std::optional<std::string> metadataNamed(const CalendarFolder& folder, std::string_view name) {
    for (const CalendarFile& file : folder.metadata) {
        const bool hasContent = file.parsed && file.parsed->content;
        if (file.name == name && hasContent && file.parsed->content->metadata) {
            return icalendar::validUtf8(withoutTrailingBlanks(*file.parsed->content->metadata));
        }
    }
    return std::nullopt;
}

bool isSettled(const CalendarFolder& folder) {
    const auto isFileSettled = [](const CalendarFile& file) { return file.isSettled(); };
    return (!folder.error || folder.error->systemError() == EACCES) &&
           std::all_of(folder.files.begin(), folder.files.end(), isFileSettled) &&
           std::all_of(folder.metadata.begin(), folder.metadata.end(), isFileSettled) &&
           std::all_of(folder.subFolders.begin(), folder.subFolders.end(),
                       [](const auto& subFolder) { return isSettled(*subFolder); });
}

void addToSignature(const CalendarFile& file, SignatureHash& signature) {
    signature.add(std::string_view(file.name));
    signature.add(file.listed ? 0 : file.listed.error().systemError());
    addToSignature(file.listed ? *file.listed : FileVersion(), signature);
}

void addToSignature(const FileVersion& version, SignatureHash& signature) {
    signature.add(version.device);
    signature.add(version.inode);
    signature.add(version.size);
    signature.add(version.modified);
    signature.add(version.changed);
}

void addToSignature(const CalendarFolder& folder, SignatureHash& signature) {
    signature.add(std::string_view(folder.path));
    signature.add(std::string_view(folder.realPath));
    signature.add(folder.error ? folder.error->systemError() : 0);
    for (const auto* const list : {&folder.files, &folder.metadata}) {
        signature.add(list->size());
        for (const CalendarFile& file : *list) {
            addToSignature(file, signature);
        }
    }
    signature.add(folder.subFolders.size());
    for (const auto& subFolder : folder.subFolders) {
        addToSignature(*subFolder, signature);
    }
}

void addProblems(const CalendarFile& file, const std::string& path,
                 std::vector<VersionedProblem>& problems) {
    if (file.parsed && !file.parsed->content) {
        problems.push_back(
            {{path, 0, file.parsed->content.error().message()}, withoutVersion, true});
    } else if (const auto calendar = file.calendar()) {
        for (const icalendar::FileProblem& problem : calendar->ics.problems) {
            problems.push_back(
                {{path, problem.line, problem.what}, calendar->version, !calendar->ics.isCalendar});
        }
    }
}

void addProblems(const CalendarFolder& folder, std::vector<VersionedProblem>& problems) {
    if (folder.error) {
        problems.push_back({{folder.path, 0, folder.error->message()}, withoutVersion, true});
    }
    if (folder.hasTooMany) {
        problems.push_back(
            {{folder.path,
              0,
              {translatable("there are more files than can be read: only the first {1} are"),
               {TranslatableText::verbatim(std::to_string(mostFilesInAFolder))}}},
             withoutVersion});
    }
    for (const auto* const list : {&folder.files, &folder.metadata}) {
        for (const CalendarFile& file : *list) {
            addProblems(file, folder.path + "/" + file.name, problems);
        }
    }
    for (const auto& subFolder : folder.subFolders) {
        addProblems(*subFolder, problems);
    }
}

void addUnreadFiles(CalendarFolder& folder, std::vector<UnreadFile>& unread) {
    const auto add = [&](std::vector<CalendarFile>& list, FileKind kind) {
        for (CalendarFile& file : list) {
            if (!file.isCurrent()) {
                unread.push_back({&file, kind, folder.path + "/" + file.name,
                                  folder.realPath + "/" + file.name});
            }
        }
    };
    add(folder.files, FileKind::calendar);
    add(folder.metadata, FileKind::metadata);
    for (const auto& subFolder : folder.subFolders) {
        addUnreadFiles(*subFolder, unread);
    }
}

void addParsedFiles(const CalendarFolder& folder, std::vector<const CalendarFile*>& parsed) {
    for (const CalendarFile& file : folder.files) {
        if (file.calendar()) {
            parsed.push_back(&file);
        }
    }
    for (const auto& subFolder : folder.subFolders) {
        addParsedFiles(*subFolder, parsed);
    }
}

} // namespace quorvel::freedesktop::calendars
