// What the program knows of the device: one state for the whole run, written only by this folder
// and by the commands that choose trainings or directories. Resetting it is assigning {}.
#pragma once

#include <cstdint>
#include <vector>

#include "device/dictionary_record.h"
#include "device/training_sample.h"
#include "services/disk/held_directory.h"
#include "services/text/paths.h"

namespace device {

struct DeviceState {
    // The trainings of the index, by start date unless a list has sorted them otherwise. Empty
    // before the first load and when every record was dropped.
    std::vector<DictionaryRecord> dictionary;

    // True while the table is what the last load left of an index it could not read: one record
    // that stands for nothing on the card and must not be saved over it.
    bool dictionaryUnreadable = false;

    // True when the last load could not look at everything that tells what the index means, or
    // another program was changing the tree: its trainings are listed, but nothing on the card may
    // be changed after them.
    bool dictionaryReadOnly = false;

    // Whole records, as they were read, of trainings of which the card did not tell whether they
    // have a file. They are not in the table, and saved with it.
    services::Text untoldRecords;

    // The names of trainings whose renaming was cut off and whose file is under neither name: they
    // are among the untold records, and the copy that remembers them stays.
    std::vector<services::Text> cutOffNames;

    // What lay on the disk when the index was loaded last: its length and a hash of its bytes. Both
    // 0 when it was missing and a copy stood in for it, and after a load that failed.
    std::uint64_t indexLength = 0;
    std::uint64_t indexHash = 0;

    // The same of the copy that lay beside it after the load; both 0 when there was none.
    std::uint64_t copyLength = 0;
    std::uint64_t copyHash = 0;

    // The tree while this program changes it: other programs leave it alone meanwhile.
    services::HeldDirectory heldTree;

    // The samples of the one loaded training; empty when none is loaded.
    std::vector<TrainingSample> samples;

    // Where the start settings lie and the directory requesters open; empty until the first load of
    // the settings, then fixed.
    services::Path programDirectory;

    // The "ergo_bike" directory of the backup copy, with a "/" at its end; empty when none is
    // chosen.
    services::Path backupDirectory;

    // 0: renumbering is locked and asks to be unlocked; 1: unlocked. Any other number, which only a
    // settings file can bring in, neither asks nor renumbers.
    std::int32_t renumberingEnabled = 0;
};

extern DeviceState state;

}  // namespace device
