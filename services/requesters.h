// Message boxes and requesters: the platform's own, modal and in German. Texts are plain text; CR
// LF breaks lines.
#pragma once

#include "services/raster/colours.h"
#include "services/text/latin1.h"
#include "services/text/paths.h"

namespace services {

// One "OK" button; returns when the box is closed.
void showMessage(TextView title, TextView text);

// "Ja" and "Nein", with "Nein" as the default; true for "Ja" only. A box closed unanswered is no.
bool askYesNo(TextView title, TextView text);

// One existing directory, links resolved, with a "/" at its end; empty when cancelled. Where
// exactly one of the mounted drives holds `fileOnDrive`, a path from its root, this drive is
// preselected.
Path chooseDirectory(TextView title, PathView start, PathView fileOnDrive = {});

// The path for a file to write, existing or not; empty when cancelled. `pattern` is like "*.csv".
// No ending is added to what the user types. An empty directory stands for the user's documents.
Path chooseSaveFile(TextView title, PathView directory, TextView name, TextView pattern);

// The chosen colour, or `current` when cancelled.
Colour chooseColour(Colour current);

}  // namespace services
