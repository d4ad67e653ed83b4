#include "freedesktop/glib/delayed_call.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "freedesktop/glib/main_source.h"

namespace quorvel::freedesktop {

struct DelayedCall::Source {
    MainSource source;
};

DelayedCall::DelayedCall(std::function<void()> call)
    : m_call(std::move(call))
    , m_source(std::make_unique<Source>()) {}

DelayedCall::~DelayedCall() = default;

void DelayedCall::start(double seconds) {
    constexpr double longest = 1e6; // seconds
    const auto milliseconds =
        static_cast<guint>(std::ceil(std::clamp(seconds, 0.0, longest) * 1000));
    const GSourceFunc run = [](gpointer data) -> gboolean {
        auto& self = *static_cast<DelayedCall*>(data);
        const auto call = self.m_call; // which may end `self`
        self.stop();
        call();
        return G_SOURCE_REMOVE;
    };
    m_source->source = MainSource(g_timeout_source_new(milliseconds), run, this);
}

void DelayedCall::stop() {
    m_source->source.reset();
}

bool DelayedCall::isStarted() const {
    return static_cast<bool>(m_source->source);
}

} // namespace quorvel::freedesktop
