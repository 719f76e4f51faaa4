// The clock on the wall.
#pragma once

#include "services/text/dates.h"

namespace services {

// The local date and time of day as a date value (see dates.h): taking it apart again shows what a
// clock on the wall shows.
DateValue now();

}  // namespace services
