// What the exports remember between two calls: one state for the whole run, written only by this
// folder. Resetting it is assigning {}.
#pragma once

#include "services/text/paths.h"

namespace exporting {

struct ExportState {
    // Where the last file of each export was chosen, with a "/" at the end; empty at the start and
    // after a cancelled requester. They only open the next requester.
    services::Path indexDirectory;
    services::Path trainingDirectory;
};

extern ExportState state;

}  // namespace exporting
