// Paths of the operating system: its own bytes, untouched. A path that names a directory ends with
// "/". Never mix these with Text (Latin-1): convert at the edge, with the functions below.
#pragma once

#include <string>
#include <string_view>

#include "services/text/latin1.h"

namespace services {

using Path = std::string;
using PathView = std::string_view;

// False for the empty path and for one with a NUL byte, which would name another file.
bool isUsablePath(PathView path);

// The path as the user should read it: characters outside Latin-1 become "?". For messages only,
// never the way back to a file.
Text pathToText(PathView path);

// A file name made of Latin-1 text (a description, for example) as the system writes it.
Path textToPath(TextView text);

// The text of the path before the first "/" at or after its second character: "/Volumes" for
// "/Volumes/CARD/", empty when there is no such "/". This coarse rule is the program's definition
// of a drive.
PathView driveOf(PathView path);

}  // namespace services
