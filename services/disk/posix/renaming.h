// How renameFile works, from the best way to the last resort: it takes the first one that the file
// system supports.
#pragma once

#include "services/text/paths.h"

namespace services {

enum class Renaming { done, failed, unsupported };
Renaming renameExclusively(PathView from, PathView to);   // in one step that refuses to replace
Renaming renameByLinking(PathView from, PathView to);     // the second name first, then one less
Renaming renameAfterLooking(PathView from, PathView to);  // for file systems without links

}  // namespace services
