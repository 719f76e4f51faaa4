// The export commands: each asks for a file, writes it and tells the user.
//
// The file is written from its start and never cut: what an older, longer file held behind the new
// text stays. Only opening is checked; the success message follows whatever became of the writing.
#pragma once

namespace exporting {

// The selected records of the dictionary table. Does nothing for a table of exactly one record; an
// empty table gives a file of the header alone.
void exportIndex();

// The samples of the loaded training. Does nothing for fewer than two samples.
void exportTraining();

}  // namespace exporting
