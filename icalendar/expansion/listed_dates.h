// The dates that RDATE and EXDATE list (RFC 5545 3.8.5.1, 3.8.5.2).
#pragma once

#include "icalendar/expansion/series.h"

namespace quorvel::icalendar {

// Adds the starts of an RDATE line that can meet the window.
void addListedDates(ExpansionContext& context, Series& series, const RuleLine& line);

// Adds the dates of an EXDATE line that lie around the window to the series' exceptions.
void excludeListedDates(ExpansionContext& context, Series& series, const RuleLine& line);

} // namespace quorvel::icalendar
