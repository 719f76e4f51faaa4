// Where the device's files are: on the card, beside the program or in a chosen directory. What is
// found becomes the working directory, and every other file is opened by its bare name.
#pragma once

#include "services/text/paths.h"

namespace device {

// Both relative to the root of a card or of a chosen directory.
inline constexpr services::PathView indexPath = "data/result/ergo_bike/dictionary.2";
inline constexpr services::PathView treePath = "data/result/ergo_bike/";

// The end of the working directory when the program is started from its application bundle.
inline constexpr services::PathView bundleTail = "Kurbelbuch.app/Contents/";

enum class TreeLocation {
    notFound = 0,
    below = 1,    // found below the working directory; its ergo_bike directory is current now
    current = 2,  // the working directory is an ergo_bike directory
};

TreeLocation locateDeviceTree();

// Asks for the directory that holds the tree, and checks that it holds one and is not on the
// backup's drive. The working directory changes only when both hold; callers locate the tree
// again and reload.
void chooseDaumDirectory();

// Asks for the directory of the backup copy, checks that it is not on the device's drive, and
// makes the tree in it unless the path lies in one. A cancelled requester counts as the empty path.
// When the program is to quit meanwhile nothing changes. False when nothing was chosen.
bool chooseBackupDirectory();

}  // namespace device
