// Deleting trainings: their files and their records in the index.
#pragma once

namespace files {

// Asks, then deletes the file of every record whose `selected` flag is set, rewrites the index
// without these records and loads it again. A file that can't be deleted is passed over.
void deleteChosenTrainings();

}  // namespace files
