// A whole platform in memory: a test fills the services and reads what the widget did with them.
#pragma once

#include "platform/memory/fixed_clock.h"
#include "platform/memory/fixed_screen.h"
#include "platform/memory/fixed_width_text_measurer.h"
#include "platform/memory/list_log.h"
#include "platform/memory/memory_application.h"
#include "platform/memory/memory_bundles.h"
#include "platform/memory/memory_calendar_stores.h"
#include "platform/memory/memory_date_services.h"
#include "platform/memory/memory_graphics_contexts.h"
#include "platform/memory/memory_home_screen_shell.h"
#include "platform/memory/memory_image_files.h"
#include "platform/memory/memory_preferences.h"
#include "platform/platform.h"

namespace quorvel::platform::memory {

class MemoryPlatform {
public:
    MemoryPlatform() = default;
    MemoryPlatform(const MemoryPlatform&) = delete;
    MemoryPlatform& operator=(const MemoryPlatform&) = delete;

    const Platform& platform() const { return m_platform; }

    FixedClock clock;
    MemoryDateServices dateServices{clock};
    MemoryCalendarStores calendarStores;
    MemoryPreferences preferences;
    FixedWidthTextMeasurer textMeasurer;
    MemoryImageFiles imageFiles;
    FixedScreen screen;
    MemoryGraphicsContexts graphicsContexts{screen};
    ListLog systemLog;
    MemoryBundles bundles;
    MemoryApplication application;
    MemoryHomeScreenShell homeScreenShell;

private:
    Platform m_platform{clock,        dateServices, calendarStores,   preferences,
                        textMeasurer, imageFiles,   graphicsContexts, screen,
                        systemLog,    bundles,      application,      homeScreenShell};
};

} // namespace quorvel::platform::memory
