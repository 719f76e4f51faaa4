// The description of the program, as its help window shows it.
#pragma once

#include <cstddef>

#include "services/text/latin1.h"

namespace app {

inline constexpr std::size_t helpLineCount = 111;

// The lines joined by CR LF, without a line end after the last one.
services::Text helpText();

}  // namespace app
