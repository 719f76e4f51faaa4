// Paths in the settings file, whose text is Latin-1: as Latin-1 where that can hold them, else as
// their own bytes. Both come back as the same path.
#pragma once

#include "services/latin1.h"
#include "services/paths.h"

namespace settings {

services::Text pathToStoredText(services::PathView path);

// Bytes that are UTF-8 with a character beyond Latin-1 are a path's own; all others are Latin-1.
// Where that names no directory but the bytes as they stand do, they are the path.
services::Path storedTextToPath(services::TextView text);

}  // namespace settings
