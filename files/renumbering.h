// Closing the gaps in the numbers of the training files.
#pragma once

#include <functional>

namespace files {

// Asks, renames, rewrites the index and loads it again. Returns when the report is closed;
// `tableChanged` is called before the report is left to the reader. `mainHeight` is that of the
// main window. When the index on the card is no longer the one in the list, it is loaded and
// nothing renamed.
void renumberTrainings(int mainHeight, const std::function<void()>& tableChanged);

}  // namespace files
