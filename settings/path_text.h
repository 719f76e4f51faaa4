// Paths in the settings file, whose text is Latin-1: as Latin-1 where that can hold them, else as
// their own bytes.
//
// A stored text that is UTF-8 with at least one character of several bytes is a path's own bytes;
// every other is Latin-1. Text in a human language is hardly ever both: "Ã¼" would have to stand in
// a directory's name, and then the path's own bytes are stored instead.
#pragma once

#include "services/text/latin1.h"
#include "services/text/paths.h"

namespace settings {

// The Latin-1 form unless it would be taken for own bytes or can't hold the path. Empty for a path
// with CR, LF or NUL, which can't stand in a line of the file.
services::Text pathToStoredText(services::PathView path);

// Own bytes come back as they are, without a look at the disk. A path with stray bytes was stored
// as it is too but reads as Latin-1: where that names no directory and the bytes as they stand do,
// they are the path.
services::Path storedTextToPath(services::TextView text);

}  // namespace settings
