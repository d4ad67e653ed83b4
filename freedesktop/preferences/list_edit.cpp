#include "freedesktop/preferences/list_edit.h"

#include <algorithm>
#include <vector>

#include "base/ascii_text.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListArray;
using platform::PropertyListValue;

constexpr std::string_view usualIndentation = "    ";

struct Edit {
    std::size_t start = 0;
    std::size_t end = 0; // equals start: an insertion
    std::string text;
};

std::string applied(std::string_view text, std::vector<Edit> edits) {
    std::ranges::sort(edits, std::greater<>(), &Edit::start);
    std::string result(text);
    for (const Edit& edit : edits) {
        result.replace(edit.start, edit.end - edit.start, edit.text);
    }
    return result;
}

std::string_view lineEndOf(std::string_view text) {
    if (text.find("\r\n") != text.npos) {
        return "\r\n";
    }
    return text.find('\n') == text.npos && text.find('\r') != text.npos ? "\r" : "\n";
}

// Where the blanks in front of an entry begin, with the end of the line before them.
std::size_t startOfLead(std::string_view text, std::size_t entry) {
    std::size_t start = text.substr(0, entry).find_last_not_of(" \t") + 1;
    if (start > 0 && text[start - 1] == '\n') {
        --start;
    }
    return start > 0 && text[start - 1] == '\r' ? start - 1 : start;
}

// The blanks at the beginning of the line in which that byte stands.
std::string indentationAt(std::string_view text, std::size_t at) {
    const std::size_t line = text.substr(0, at).find_last_of("\r\n") + 1;
    const std::size_t end = text.find_first_not_of(" \t", line);
    return std::string(text.substr(line, std::min(end, at) - line));
}

Edit removal(std::string_view text, const EntryPlace& entry) {
    return {startOfLead(text, entry.start), entry.end, {}};
}

// As in front of the last entry. A comment that might run to the end of the line separates them
// from it by a line end, and so does the start of the text.
std::string leadOfNewEntries(std::string_view text, const EntryPlace& last, std::size_t at,
                             const std::string& lineEnd) {
    const std::size_t start = startOfLead(text, last.start);
    std::string lead(text.substr(start, last.start - start));
    const bool hasLineEnd = lead.find_first_of("\r\n") != std::string::npos;
    const bool needsLineEnd = at > last.end || last.start == 0;
    return needsLineEnd && !hasLineEnd ? lineEnd + lead : lead;
}

// Of new entries: what precedes each, and what follows the last one.
struct Surroundings {
    std::string lead;
    std::string tail;
};

Surroundings surroundingsOfNewEntries(std::string_view text, const ListPlaces& places,
                                      std::size_t at) {
    const std::string lineEnd(lineEndOf(text));
    if (!places.entries.empty()) {
        return {leadOfNewEntries(text, places.entries.back(), at, lineEnd), {}};
    }
    if (at == 0) {
        return {{}, lineEnd}; // an old list without braces
    }
    const std::string indentation = indentationAt(text, places.start);
    const bool endsLine =
        text.substr(at, places.contentsEnd - at).find_first_of("\r\n") != text.npos;
    return {lineEnd + indentation + std::string(usualIndentation),
            endsLine ? std::string() : lineEnd + indentation};
}

// Behind the last entry, and the comments behind that.
Edit insertion(std::string_view text, const ListPlaces& places,
               const std::vector<std::string>& entries) {
    const std::size_t at = text.substr(0, places.contentsEnd).find_last_not_of(" \t\r\n") + 1;
    const Surroundings around = surroundingsOfNewEntries(text, places, at);
    std::string inserted;
    for (const std::string& entry : entries) {
        inserted += around.lead + entry;
    }
    return {at, at, inserted + around.tail};
}

std::string separatorOf(std::string_view text, const ListPlaces& places,
                        const ListNotation& notation) {
    if (!places.entries.empty()) {
        const EntryPlace& last = places.entries.back();
        const auto between = text.substr(last.keyEnd, last.valueStart - last.keyEnd);
        if (notation.isSeparator(between)) {
            return std::string(between);
        }
    }
    return std::string(notation.separator());
}

Edit changedValue(const EntryPlace& entry, const PropertyListValue& value,
                  const ListNotation& notation) {
    std::string text = notation.value(value);
    if (entry.valueStart == entry.valueEnd) { // the key is its own value
        text.insert(0, notation.separator());
    }
    return {entry.valueStart, entry.valueEnd, std::move(text)};
}

} // namespace

std::string withChangedEntries(std::string_view text, const ListPlaces& places,
                               const DictionaryChanges& changes, const ListNotation& notation) {
    std::vector<Edit> edits;
    std::vector<std::string> added;
    const std::string separator = separatorOf(text, places, notation);
    for (const auto& [key, value] : changes) {
        const EntryPlace* last = nullptr; // the one that counts
        for (const EntryPlace& entry : places.entries) {
            if (entry.key == key) {
                last = &entry;
                if (!value) {
                    edits.push_back(removal(text, entry));
                }
            }
        }
        if (value && last != nullptr) {
            edits.push_back(changedValue(*last, *value, notation));
        } else if (value) {
            added.push_back(notation.key(key) + separator + notation.value(*value) +
                            std::string(notation.terminator()));
        }
    }
    if (!added.empty()) {
        edits.push_back(insertion(text, places, added));
    }
    return applied(text, std::move(edits));
}

std::string withChangedItems(std::string_view text, const ListPlaces& places,
                             const PropertyListArray& before, const PropertyListArray& after,
                             const ListNotation& notation) {
    std::vector<Edit> edits;
    auto next = after.begin();
    for (std::size_t i = 0; i < before.size() && i < places.entries.size(); ++i) {
        const std::string item = notation.value(before[i]);
        if (next != after.end() && notation.value(*next) == item) {
            ++next;
        } else {
            edits.push_back(removal(text, places.entries[i]));
        }
    }
    std::vector<std::string> added;
    for (; next != after.end(); ++next) {
        added.push_back(notation.value(*next));
    }
    if (!added.empty()) {
        edits.push_back(insertion(text, places, added));
    }
    return applied(text, std::move(edits));
}

} // namespace quorvel::freedesktop
