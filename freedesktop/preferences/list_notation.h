// Writes values and entries of a property list as text.
#pragma once

#include <string>
#include <string_view>

#include "freedesktop/preferences/xml_parser.h"
#include "platform/property_list.h"

namespace quorvel::freedesktop {

// Knows booleans, numbers, texts and arrays of them, XML also dictionaries; canWrite() names the
// rest of what both can write.
class ListNotation {
public:
    virtual ~ListNotation() = default;

    virtual std::string value(const platform::PropertyListValue& value) const = 0;
    virtual std::string key(std::string_view key) const = 0;
    // Behind an entry of a dictionary.
    virtual std::string_view terminator() const = 0;
    // Between the key and its value, where the other entries give no example.
    virtual std::string_view separator() const = 0;
    // Whether that text between a key and its value can stand between others, too.
    virtual bool isSeparator(std::string_view text) const = 0;
};

// For an encoding other than UTF-8, writes all but ASCII as character references.
class XmlNotation final : public ListNotation {
public:
    explicit XmlNotation(XmlEncoding encoding)
        : m_encoding(encoding) {}
    std::string value(const platform::PropertyListValue& value) const override;
    std::string key(std::string_view key) const override;
    std::string_view terminator() const override { return {}; }
    std::string_view separator() const override { return " "; }
    bool isSeparator(std::string_view text) const override;

private:
    std::string escaped(std::string_view text) const;

    XmlEncoding m_encoding;
};

// The old text format, which has no other values than texts.
class OldNotation final : public ListNotation {
public:
    std::string value(const platform::PropertyListValue& value) const override;
    std::string key(std::string_view key) const override;
    std::string_view terminator() const override { return ";"; }
    std::string_view separator() const override { return " = "; }
    bool isSeparator(std::string_view text) const override;
};

bool canWrite(const platform::PropertyListValue& value);

// What the old text format stores in place of the value: YES, NO, or the number as a text.
platform::PropertyListValue asOldValue(const platform::PropertyListValue& value);

} // namespace quorvel::freedesktop
