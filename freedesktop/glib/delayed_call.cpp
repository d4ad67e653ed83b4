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

namespace {

guint milliseconds(double seconds) {
    constexpr double longest = 1e6;      // seconds
    const bool isPositive = seconds > 0; // false for NaN
    return isPositive ? static_cast<guint>(std::ceil(std::min(seconds, longest) * 1000)) : 0;
}

} // namespace

void DelayedCall::start(double seconds) {
    const GSourceFunc run = [](gpointer data) -> gboolean {
        auto& self = *static_cast<DelayedCall*>(data);
        const auto call = self.m_call; // may destroy `self`
        self.stop();
        call();
        return G_SOURCE_REMOVE;
    };
    m_source->source = MainSource(g_timeout_source_new(milliseconds(seconds)), run, this);
}

void DelayedCall::stop() {
    m_source->source.reset();
}

bool DelayedCall::isStarted() const {
    return static_cast<bool>(m_source->source);
}

} // namespace quorvel::freedesktop
