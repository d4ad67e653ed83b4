// Everything that a controller and its view ask of their surroundings.
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

// The host owns the services and keeps them alive for as long as any controller or view.
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
