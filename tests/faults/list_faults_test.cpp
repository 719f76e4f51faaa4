// Deleting, renumbering, and going on with a list that was badly loaded.
#include <filesystem>
#include <functional>
#include <vector>

#include "device/dictionary.h"
#include "files/deletion.h"
#include "tests/faults/command_faults.h"
#include "tests/faults/fault_injector.h"
#include "tests/files/file_command_answers.h"

namespace {

namespace fs = std::filesystem;
using namespace command_faults;
using stand_ins::world;

class DeletionFaults : public CommandFaults {
  protected:
    void tryDeleting(const char* command, const std::vector<Training>& list) {
        tryFaults(
            command,
            [&] {
                makeCard(list);
                openCard();
                world.questionAnswers.push_back(files_tests::deletionAnswer(true));
            },
            [] { files::deleteChosenTrainings(); }, [&] { expectEveryTraining(); });
    }
};

TEST_F(DeletionFaults, LoseNoTrainingThatWasNotChosen) {
    tryDeleting("delete two of five", {{1}, {2, true}, {3}, {4, true}, {5}});
}

TEST_F(DeletionFaults, LoseNothingWhenTheFirstIsChosen) {
    foreign = {{nameOf(0x99), "foreign"}};
    tryDeleting("delete the first of two", {{7, true}, {3}});
}

TEST_F(DeletionFaults, LoseNoTrainingOnFat) {
    pretendFat();
    tryDeleting("delete two of five on FAT", {{1}, {2, true}, {3}, {4, true}, {5}});
}

class RenumberingFaults : public CommandFaults {
  protected:
    void tryRenumbering(const char* command, const std::vector<Training>& list) {
        tryFaults(
            command,
            [&] {
                makeCard(list);
                openCard();
            },
            renumberTrainings, [&] { expectEveryTraining(); });
    }
};

TEST_F(RenumberingFaults, LoseNothingWhileGapsAreClosed) {
    tryRenumbering("renumber with gaps", {{1}, {5}, {9}, {0x20}});
}

TEST_F(RenumberingFaults, LoseNothingWhenNamesAreUsedAgain) {
    tryRenumbering("renumber through used names", {{1}, {5}, {0x20}, {0x21}, {0x22}, {0x23}});
}

TEST_F(RenumberingFaults, LoseNothingWhenNumbersAreCrossed) {
    tryRenumbering("renumber crossed numbers", {{5}, {9}, {6}, {0x30}});
}

TEST_F(RenumberingFaults, LoseNothingWhenAForeignFileIsInTheWay) {
    foreign = {{nameOf(2), "foreign"}, {nameOf(4), "another"}};
    tryRenumbering("renumber around foreign files", {{1}, {5}, {8}, {9}});
}

TEST_F(RenumberingFaults, LoseNothingWhenRecordsHaveNoFile) {
    fileless = {2, 6, 0x40};
    tryRenumbering("renumber beside gone files", {{1}, {5}, {8}, {9}});
}

// As on most cards: nothing but a plain rename, which replaces what is there.
TEST_F(RenumberingFaults, LoseNothingWhereTheFileSystemHasPlainRenamesOnly) {
    foreign = {{nameOf(3), "foreign"}};
    fault_injector::pretendPlainFileSystem(true);
    tryRenumbering("renumber by plain renames", {{1}, {5}, {0x20}, {0x21}, {0x22}});
    fault_injector::pretendPlainFileSystem(false);
}

// Where a rename could lose the file each gets its new name by a copy.
TEST_F(RenumberingFaults, LoseNothingWhereFilesAreCopied) {
    foreign = {{nameOf(3), "foreign"}};
    pretendFat();
    tryRenumbering("renumber by copies", {{1}, {5}, {0x20}, {0x21}, {0x22}});
}

// And where there is no room for a copy they are renamed.
TEST_F(RenumberingFaults, LoseNothingWhereThereIsNoRoomForCopies) {
    foreign = {{nameOf(3), "foreign"}};
    pretendFat();
    fault_injector::pretendFullDisk(true);
    tryRenumbering("renumber on a full FAT", {{1}, {5}, {0x20}, {0x21}, {0x22}});
    fault_injector::pretendFullDisk(false);
}

// The card gives a wrong answer or none while the index is loaded, and works again when the user
// goes on with what is listed.
class LoadingFaults : public CommandFaults {
  protected:
    void tryLoading(const char* command, const std::vector<Training>& list,
                    const std::function<void()>& goOn) {
        tryFaults(
            command,
            [&] {
                makeCard(list);
                forgetEverything();
                fs::current_path(tree);
            },
            [&] {
                device::loadDictionary();
                fault_injector::disarm();
                chooseTrainings();
                goOn();
            },
            [&] { expectEveryTraining(); });
    }
};

TEST_F(LoadingFaults, LoseNothingWhenTrainingsAreDeletedNext) {
    tryLoading("delete after a bad load", {{1}, {2, true}, {3}, {4}}, deleteTrainings);
}

TEST_F(LoadingFaults, LoseNothingWhenTrainingsAreRenumberedNext) {
    fileless = {3};
    tryLoading("renumber after a bad load", {{1}, {5}, {6}, {0x20}}, renumberTrainings);
}

}  // namespace
