// Sets the process-wide settings from a dictionary; an absent key takes its default. The agenda
// view calls the pieces in the order of the keys, as it owns some of the values itself.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/property_list.h"

namespace quorvel {

void loadLimitMaxHeight(const platform::PropertyListDictionary& dictionary);

// From customLaunchAppBundleID to sameHeightRows.
void loadListSettings(const platform::PropertyListDictionary& dictionary);

// 0, 2 or 3 where stored so, else 1.
std::int64_t loadedSwipeAction(const platform::PropertyListDictionary& dictionary);

// From textColor to dateTextSize. An absent textColor leaves titleColorSameAsCalendarColor alone.
void loadRowSettings(const platform::PropertyListDictionary& dictionary);

// The names of the keys of colours that the dictionary has: the user has chosen these, the others
// have their defaults.
std::vector<std::string> chosenColors(const platform::PropertyListDictionary& dictionary);

// daysToDisplay and maxEventsToDisplay.
void loadGatheringSettings(const platform::PropertyListDictionary& dictionary);

// iconFile, which is set afterwards; an absent key also turns iconRoundingNeeded on.
void loadIconFile(const platform::PropertyListDictionary& dictionary);

} // namespace quorvel
