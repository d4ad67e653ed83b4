#include "freedesktop/log/library_messages.h"

#include <algorithm>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include <glib.h>

#include "freedesktop/log/log_line.h"

namespace quorvel::freedesktop {

namespace {

std::string_view textOfField(const GLogField& field) {
    const auto* text = static_cast<const char*>(field.value);
    return field.length < 0 ? std::string_view(text)
                            : std::string_view(text, static_cast<std::size_t>(field.length));
}

// GLib's own writer escapes most control characters, but neither newlines nor bidirectional ones.
GLogWriterOutput writeOnOneLine(GLogLevelFlags level, const GLogField* fields, gsize count,
                                gpointer /*data*/) {
    try {
        std::vector<GLogField> written(fields, fields + count);
        std::string message;
        const auto field = std::ranges::find(written, std::string_view("MESSAGE"),
                                             [](const GLogField& any) { return any.key; });
        if (field != written.end()) {
            message = printableMessage(textOfField(*field));
            field->value = message.c_str();
            field->length = -1; // up to its null character
        }
        return g_log_writer_default(level, written.data(), written.size(), nullptr);
    } catch (const std::exception&) {
        return G_LOG_WRITER_UNHANDLED; // no exception may pass through the library
    }
}

} // namespace

void printLibraryMessagesOnOneLine() {
    g_log_set_writer_func(writeOnOneLine, nullptr, nullptr);
}

} // namespace quorvel::freedesktop
