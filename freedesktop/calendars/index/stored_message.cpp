#include "freedesktop/calendars/index/stored_message.h"

#include <string>
#include <utility>
#include <vector>

namespace quorvel::freedesktop::calendars {

namespace {

constexpr int deepest = 4;

TranslatableText takeMessageAt(int depth, ByteReader& reader) {
    const bool isVerbatim = reader.flag();
    std::string text(reader.text());
    std::vector<TranslatableText> values(depth < deepest ? reader.count() : 0);
    for (TranslatableText& value : values) {
        value = takeMessageAt(depth + 1, reader);
    }
    return isVerbatim ? TranslatableText::verbatim(std::move(text))
                      : TranslatableText(std::move(text), std::move(values));
}

} // namespace

void putMessage(ByteWriter& writer, const TranslatableText& message) {
    writer.number(message.isVerbatim() ? 1U : 0U);
    writer.text(message.text());
    writer.number(message.values().size());
    for (const TranslatableText& value : message.values()) {
        putMessage(writer, value);
    }
}

TranslatableText takeMessage(ByteReader& reader) {
    return takeMessageAt(0, reader);
}

} // namespace quorvel::freedesktop::calendars
