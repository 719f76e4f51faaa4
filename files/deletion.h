// Deleting trainings: their files and their records in the index.
#pragma once

namespace files {

// Asks, then deletes the file of every record whose `selected` flag is set, rewrites the index
// without these records and loads it again. A file that can't be deleted is passed over.
// When the index on the card is no longer the one in the list, it is loaded and nothing deleted.
void deleteChosenTrainings();

}  // namespace files
