// The way in which a function fails: it returns a value or an error.
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace quorvel {

// What a person reads who has to do something about it. Each part but `what` may be empty.
struct Error {
    std::string what;  // such as "it cannot be read: permission denied"
    std::string where; // the file, option or service, such as "'home.ics'"
    std::string toDo;  // such as "name a folder"
    bool operator==(const Error&) const = default;
};

// "where: what: what to do".
inline std::string message(const Error& error) {
    std::string text = error.where;
    for (const std::string* const part : {&error.what, &error.toDo}) {
        if (!text.empty() && !part->empty()) {
            text += ": ";
        }
        text += *part;
    }
    return text;
}

// A value of type Value or an error, never both and never neither. An error that is asked for its
// value, and the reverse, is a mistake in the program: std::bad_variant_access.
template <class Value, class Failure = Error>
class [[nodiscard]] Result {
public:
    Result(Value value)
        : m_content(std::in_place_index<0>, std::move(value)) {}
    Result(Failure failure)
        : m_content(std::in_place_index<1>, std::move(failure)) {}

    bool hasValue() const { return m_content.index() == 0; }
    explicit operator bool() const { return hasValue(); }

    const Value& value() const& { return std::get<0>(m_content); }
    Value& value() & { return std::get<0>(m_content); }
    Value&& value() && { return std::get<0>(std::move(m_content)); }
    const Value& operator*() const& { return value(); }
    Value& operator*() & { return value(); }
    Value&& operator*() && { return std::move(*this).value(); }
    const Value* operator->() const { return &value(); }
    Value* operator->() { return &value(); }

    const Failure& error() const& { return std::get<1>(m_content); }
    Failure&& error() && { return std::get<1>(std::move(m_content)); }

private:
    std::variant<Value, Failure> m_content;
};

// Success without a value, or an error.
template <class Failure>
class [[nodiscard]] Result<void, Failure> {
public:
    Result() = default;
    Result(Failure failure)
        : m_content(std::in_place_index<1>, std::move(failure)) {}

    bool hasValue() const { return m_content.index() == 0; }
    explicit operator bool() const { return hasValue(); }

    const Failure& error() const& { return std::get<1>(m_content); }
    Failure&& error() && { return std::get<1>(std::move(m_content)); }

private:
    std::variant<std::monostate, Failure> m_content;
};

} // namespace quorvel
