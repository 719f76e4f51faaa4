// The backup copy: brings the backup's directory and index up to date with the current ones.
// Nothing in the backup is ever replaced, and its index only grows.
#pragma once

#include <functional>

namespace files {

// Asks for a backup directory when none is chosen, copies what the backup lacks and loads the index
// again. Nothing is copied when that requester is cancelled. Returns when the report is closed;
// `tableChanged` is called before the report is left to the reader. `mainHeight` is that of the
// main window.
void copyToBackup(int mainHeight, const std::function<void()>& tableChanged);

}  // namespace files
