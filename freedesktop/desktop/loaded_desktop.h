// The desktop of a program that loads GIO when it has to ask.
#pragma once

#include <string>

#include "freedesktop/desktop/desktop.h"

namespace quorvel::freedesktop {

// Loads nothing where there is no session bus.
class LoadedDesktop final : public Desktop {
public:
    // `module`: the file that wraps the library.
    explicit LoadedDesktop(std::string module);
    ~LoadedDesktop() override;

    ClockFormat clockFormat() override;
    std::unique_ptr<eds::SourcesSearch> makeSourcesSearch() const override;
    std::optional<Error> failure() const override { return m_failure; }

private:
    class LoadedSourcesSearch;

    std::string m_module;
    std::unique_ptr<Desktop> m_loaded; // null before the first question, and after a failure
    std::optional<Error> m_failure;
};

} // namespace quorvel::freedesktop
