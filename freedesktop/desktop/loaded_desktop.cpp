#include "freedesktop/desktop/loaded_desktop.h"

#include <mutex>
#include <utility>

#include "freedesktop/desktop/module.h"
#include "freedesktop/glib/session_bus_address.h"
#include "freedesktop/io/module_function.h"
#include "freedesktop/language/messages.h"

namespace quorvel::freedesktop {

namespace {

Result<std::unique_ptr<Desktop>, std::string> desktopOfModule(const std::string& file) {
    const auto function = moduleFunction(file, makeDesktopSymbol);
    if (!function) {
        return function.error();
    }
    std::unique_ptr<Desktop> desktop(reinterpret_cast<MakeDesktop>(*function)());
    if (!desktop) {
        return file;
    }
    return desktop;
}

Error loadFailure(const std::string& reason) {
    return {filled(translated("the part of Quorvel that asks the desktop cannot be loaded ({1})"),
                   {reason}),
            {},
            translated("install Quorvel again (on Debian the package quorvel)")};
}

} // namespace

// Loads the module on the thread that searches, which has nothing else to do.
class LoadedDesktop::LoadedSourcesSearch final : public eds::SourcesSearch {
public:
    explicit LoadedSourcesSearch(std::string module)
        : m_module(std::move(module)) {}

    Result<std::string, TranslatableText> find() override {
        if (auto failure = load()) {
            return *std::move(failure);
        }
        return m_search->find();
    }

    void cancel() override {
        const std::lock_guard lock(m_mutex);
        m_isCancelled = true;
        if (m_search) {
            m_search->cancel();
        }
    }

private:
    // Why there is no search.
    std::optional<TranslatableText> load() {
        if (m_search) {
            return std::nullopt;
        }
        auto desktop = desktopOfModule(m_module);
        if (!desktop) {
            return TranslatableText{translatable("its library cannot be loaded: {1}"),
                                    {TranslatableText::verbatim(desktop.error())}};
        }
        const std::lock_guard lock(m_mutex);
        m_search = (*desktop)->makeSourcesSearch();
        if (m_isCancelled) {
            m_search->cancel();
        }
        return std::nullopt;
    }

    std::string m_module;
    std::mutex m_mutex; // guards the members below, which the searching thread alone sets
    bool m_isCancelled = false;
    std::unique_ptr<eds::SourcesSearch> m_search; // null before the first search
};

LoadedDesktop::LoadedDesktop(std::string module)
    : m_module(std::move(module)) {}

LoadedDesktop::~LoadedDesktop() = default;

ClockFormat LoadedDesktop::clockFormat() {
    if (!m_loaded && !m_failure && mayHaveSessionBus()) {
        auto desktop = desktopOfModule(m_module);
        if (desktop) {
            m_loaded = *std::move(desktop);
        } else {
            m_failure = loadFailure(desktop.error());
        }
    }
    return m_loaded ? m_loaded->clockFormat() : ClockFormat::ofLocale;
}

std::unique_ptr<eds::SourcesSearch> LoadedDesktop::makeSourcesSearch() const {
    return std::make_unique<LoadedSourcesSearch>(m_module);
}

} // namespace quorvel::freedesktop
