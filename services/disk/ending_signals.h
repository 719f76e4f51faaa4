// The system's part of endings.h.
#pragma once

namespace services {

// True when the system has told the program to end since that is put off.
bool isEndingNoted();

}  // namespace services
