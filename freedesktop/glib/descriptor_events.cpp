#include "freedesktop/glib/descriptor_events.h"

#include <utility>

#include <glib-unix.h>

#include "freedesktop/glib/main_source.h"

namespace quorvel::freedesktop {

struct DescriptorEvents::Source {
    MainSource source;
};

DescriptorEvents::DescriptorEvents(const FileDescriptor& descriptor,
                                   std::function<void()> onReadable)
    : m_descriptor(descriptor)
    , m_onReadable(std::move(onReadable))
    , m_source(std::make_unique<Source>()) {}

DescriptorEvents::~DescriptorEvents() = default;

void DescriptorEvents::listen() {
    if (!m_descriptor.isOpen() || m_source->source) {
        return;
    }
    const GUnixFDSourceFunc call = [](gint, GIOCondition, gpointer data) -> gboolean {
        static_cast<DescriptorEvents*>(data)->m_onReadable();
        return G_SOURCE_CONTINUE;
    };
    m_source->source =
        MainSource(g_unix_fd_source_new(m_descriptor.get(), G_IO_IN), G_SOURCE_FUNC(call), this);
}

void DescriptorEvents::pause() {
    m_source->source.reset();
}

} // namespace quorvel::freedesktop
