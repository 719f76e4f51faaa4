// Closing the gaps in the numbers of the training files.
#pragma once

#include <functional>

namespace files {

// Asks, renames, rewrites the index and loads it again. Returns when the report is closed;
// `tableChanged` is called before the report is left to the reader. `mainHeight` is that of the
// main window.
void renumberTrainings(int mainHeight, const std::function<void()>& tableChanged);

}  // namespace files
