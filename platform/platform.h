// The services that a controller and its view use.
#pragma once

namespace quorvel::platform {

class Bundles;
class CalendarStores;
class Clock;
class DateServices;
class GraphicsContexts;
class HomeScreenShell;
class ImageFiles;
class Preferences;
class Screen;
class SystemLog;
class TextMeasurer;
class UIApplication;

// The host owns the services, which outlive every controller and view.
struct Platform {
    Clock& clock;
    DateServices& dateServices;
    CalendarStores& calendarStores;
    Preferences& preferences;
    TextMeasurer& textMeasurer;
    ImageFiles& imageFiles;
    GraphicsContexts& graphicsContexts;
    Screen& screen;
    SystemLog& systemLog;
    Bundles& bundles;
    UIApplication& application;
    HomeScreenShell& homeScreenShell;
};

} // namespace quorvel::platform
