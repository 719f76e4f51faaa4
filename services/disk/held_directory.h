// Keeping other programs from going on with a directory.
#pragma once

#include "services/disk/system_files.h"
#include "services/text/paths.h"

namespace services {

// Keeps out those that ask for the same: nothing else, and only as long as this process lives.
// Nothing is written for it.
struct HeldDirectory {
    OpenFile directory = noFile;  // noFile: nothing is held
};

enum class Holding { done, heldByAnother, impossible };

// Never waits. Empty: the working directory. What was held before is let go.
Holding holdDirectory(HeldDirectory& held, PathView directory);
void letGo(HeldDirectory& held);

}  // namespace services
