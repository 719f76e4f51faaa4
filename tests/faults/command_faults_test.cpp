// Every command that writes, with every one of its system calls failing, and with the process
// killed at every one of them. After each the program starts again, and every training must be
// there.
//
// KURBELBUCH_FAULTS=full tries every fault at every call; else the kills, and a part of the rest.

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/event_loop.h"
#include "app/menu_tree.h"
#include "app/startup.h"
#include "charts/chart_state.h"
#include "charts/limits_dialog.h"
#include "charts/values/chart_options.h"
#include "device/device_state.h"
#include "device/device_tree.h"
#include "device/dictionary.h"
#include "export/csv_export.h"
#include "export/csv_text.h"
#include "export/export_state.h"
#include "files/backup_copy.h"
#include "files/deletion.h"
#include "files/list_window.h"
#include "files/renumbering.h"
#include "services/disk/directories.h"
#include "services/disk/memory.h"
#include "services/text/numbers.h"
#include "settings/saving.h"
#include "settings/settings_state.h"
#include "settings/start_settings.h"
#include "tests/builders/card_builder.h"
#include "tests/faults/fault_injector.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

namespace fs = std::filesystem;
using fault_injector::Fault;
using fault_injector::FaultKind;
using services::operator""_l1;
using stand_ins::world;
using Contents = std::map<std::string, std::string>;  // by description

constexpr unsigned secondsForOneCommand = 30;

std::string bytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeBytes(const fs::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string nameOf(std::uint64_t number) {
    return services::numberToHexadecimal16(number);
}

std::set<std::string> namesIn(const fs::path& directory) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory))
        names.insert(entry.path().filename().string());
    return names;
}

struct Training {
    std::uint64_t number = 0;
    bool chosen = false;
};

// By the training's place in the card's list, whatever its file is called later.
std::string descriptionOf(std::size_t place) {
    return "Training " + std::to_string(place);
}

std::string contentOf(std::size_t place) {
    return std::string(44 * (place + 1), static_cast<char>('a' + place));
}

bool isFull() {
    const char* extent = std::getenv("KURBELBUCH_FAULTS");
    return extent != nullptr && std::string_view(extent) == "full";
}

std::vector<Fault> faultsAt(int call) {
    std::vector<Fault> faults = {{.kind = FaultKind::kill, .at = call}};
    if (fault_injector::wasWrite(call))
        faults.push_back({.kind = FaultKind::killMidway, .at = call});
    const int errors[] = {EIO, ENOSPC, EROFS, EACCES};
    for (std::size_t i = 0; i < std::size(errors); ++i) {
        for (const bool goesOn : {false, true}) {
            // The short form tries another one at each call.
            if (!isFull() && static_cast<std::size_t>(call) % 4 != (i + (goesOn ? 2 : 0)) % 4)
                continue;
            faults.push_back(
                {.kind = FaultKind::fail, .at = call, .error = errors[i], .goesOn = goesOn});
        }
    }
    if (isFull() || fault_injector::wasWrite(call)) {
        for (const bool goesOn : {false, true})
            faults.push_back({.kind = FaultKind::shorten, .at = call, .goesOn = goesOn});
    }
    return faults;
}

std::string textOf(const Fault& fault) {
    static constexpr const char* kinds[] = {"none", "kill", "kill midway", "fail", "shorten"};
    std::string text = kinds[static_cast<int>(fault.kind)];
    if (fault.kind == FaultKind::fail) text += std::string(" ") + strerrorname_np(fault.error);
    return text + (fault.goesOn ? " from call " : " at call ") + std::to_string(fault.at) + " (" +
           fault_injector::nameOfCall(fault.at) + ")";
}

class CommandFaults : public stand_ins::StandInTest {
  protected:
    void SetUp() override {
        StandInTest::SetUp();
        card = directory / "karte";
        tree = card / "data/result/ergo_bike";
        backup = directory / "sicherung/data/result/ergo_bike";
    }

    // On FAT that stays for good: its bytes may be those of a finished file.
    bool isSetAside(std::string_view name) const {
        return isFat && name.find(".kurbelbuch-") != name.npos && name.find(".rest") != name.npos;
    }

    void pretendFat() {
        isFat = true;
        fault_injector::pretendFat(true);
    }

    static void forgetEverything() {
        app::state = {};
        device::state = {};
        charts::state = {};
        settings::state = {};
        exporting::state = {};
        world = {};
        world.anyMessageIsFine = true;
        services::menuState = {};
    }

    void makeCard(const std::vector<Training>& list) {
        fs::remove_all(card);
        trainings = list;
        std::vector<device::DictionaryRecord> records;
        const auto addRecord = [&](std::uint64_t number, const std::string& description) {
            device::DictionaryRecord record = builders::makeRecord(number);
            record.description = description;
            record.startDate = 1'356'998'400 + static_cast<std::int32_t>(records.size()) * 86'400;
            records.push_back(record);
        };
        for (std::size_t i = 0; i < list.size(); ++i)
            addRecord(list[i].number, descriptionOf(i));
        for (const std::uint64_t number : fileless)
            addRecord(number, "without a file");
        // Not in the order of their dates, so that a save changes the index.
        std::reverse(records.begin(), records.end());
        builders::writeCard(card, records);
        for (const std::uint64_t number : fileless)
            fs::remove(tree / nameOf(number));
        for (std::size_t i = 0; i < list.size(); ++i)
            writeBytes(tree / nameOf(list[i].number), contentOf(i));
        for (const auto& [name, content] : foreign)
            writeBytes(tree / name, content);
    }

    // The program has started on the card, and what is chosen is chosen.
    void openCard() {
        forgetEverything();
        fs::current_path(tree);
        device::loadDictionary();
        ASSERT_EQ(device::state.dictionary.size(), trainings.size());
        chooseTrainings();
    }

    // By what they are, and not by their place in a list of which some may be missing.
    void chooseTrainings() const {
        for (device::DictionaryRecord& record : device::state.dictionary) {
            record.selected = 0;
            for (std::size_t i = 0; i < trainings.size(); ++i) {
                if (trainings[i].chosen && record.description == descriptionOf(i))
                    record.selected = 1;
            }
        }
    }

    // What must hold on the card after whatever happened.
    void expectEveryTraining() {
        Contents listed;
        for (int start = 0; start < 2; ++start) {
            forgetEverything();
            fs::current_path(tree);
            ASSERT_EQ(device::locateDeviceTree(), device::TreeLocation::current);
            device::loadDictionary();
            Contents now;
            for (const device::DictionaryRecord& record : device::state.dictionary) {
                EXPECT_TRUE(now.emplace(record.description, record.fileName).second)
                    << record.description << " is listed twice";
            }
            if (start == 1) {
                EXPECT_EQ(now, listed) << "the second start lists something else";
            }
            listed = now;
        }
        EXPECT_FALSE(listed.contains("without a file")) << listed["without a file"];
        std::set<std::string> known = {"dictionary.2"};
        for (const auto& [name, content] : foreign) {
            EXPECT_EQ(bytesOf(tree / name), content) << "a file of somebody else's";
            known.insert(name);
        }
        for (std::size_t i = 0; i < trainings.size(); ++i) {
            const auto found = listed.find(descriptionOf(i));
            if (found != listed.end()) {
                EXPECT_TRUE(bytesOf(tree / found->second) == contentOf(i))
                    << found->first << " has samples that are not its own";
                known.insert(found->second);
            } else {
                EXPECT_TRUE(trainings[i].chosen) << descriptionOf(i) << " is lost";
                // Its file may be left, whole, under whatever name it had when its record went.
                for (const std::string& name : namesIn(tree)) {
                    if (bytesOf(tree / name) == contentOf(i)) known.insert(name);
                }
            }
        }
        for (const std::string& name : namesIn(tree))
            EXPECT_TRUE(known.contains(name) || isSetAside(name)) << "left behind: " << name;
    }

    // Runs `run` as often as there are faults, each time on what `prepare` makes, and has `check`
    // look at what is left.
    void tryFaults(const char* command, const std::function<void()>& prepare,
                   const std::function<void()>& run, const std::function<void()>& check) {
        prepare();
        fault_injector::arm({});
        run();
        const int calls = fault_injector::disarm();
        check();
        ASSERT_FALSE(HasFailure()) << "without any fault";
        ASSERT_GT(calls, 0);

        int tried = 0;
        int survived = 0;
        std::vector<Fault> faults;
        for (int call = 0; call < calls; ++call)
            std::ranges::copy(faultsAt(call), std::back_inserter(faults));
        for (const Fault& fault : faults) {
            SCOPED_TRACE(textOf(fault));
            prepare();
            ASSERT_FALSE(HasFailure()) << "preparing";
            std::fflush(nullptr);
            const pid_t child = fork();
            ASSERT_GE(child, 0);
            if (child == 0) {
                alarm(secondsForOneCommand);
                fault_injector::arm(fault);
                run();
                fault_injector::disarm();
                fault_injector::leaveProcess(0);
            }
            int status = 0;
            ASSERT_EQ(waitpid(child, &status, 0), child);
            const bool kills = fault.kind == FaultKind::kill || fault.kind == FaultKind::killMidway;
            EXPECT_TRUE(WIFEXITED(status)) << "the program did not come to an end of its own";
            EXPECT_EQ(WEXITSTATUS(status), kills ? fault_injector::killedStatus : 0);
            check();
            ++tried;
            if (HasFailure()) break;  // one is enough to look at
            ++survived;
        }
        std::printf("%-32s %4d calls  %5d faults  %5d survived\n", command, calls, tried, survived);
        RecordProperty("calls", calls);
        RecordProperty("faults", tried);
    }

    void TearDown() override {
        fault_injector::pretendFat(false);
        forgetEverything();
        StandInTest::TearDown();
    }

    bool isFat = false;
    fs::path card;
    fs::path tree;
    fs::path backup;
    std::vector<Training> trainings;
    Contents foreign;                     // files that the index does not know, by name
    std::vector<std::uint64_t> fileless;  // records that have no file
};

stand_ins::QuestionAnswer deletionAnswer() {
    return {services::Text("Lösche Datei"_l1),
            services::Text("Sollen die ausgewählten Dateien wirklich gelöscht werden?"_l1), true};
}

void deleteTrainings() {
    world.questionAnswers = {deletionAnswer()};
    files::deleteChosenTrainings();
}

void renumberTrainings() {
    device::state.renumberingEnabled = true;
    world.questionAnswers = {{"Dateinamen neu durchnummerieren",
                              "Sollen die Dateinamen neu durchnummeriert werden?", true}};
    world.events = {{.kind = services::EventKind::close, .window = services::reportWindow}};
    files::renumberTrainings(700, [] {});
}

class DeletionFaults : public CommandFaults {
  protected:
    void tryDeleting(const char* command, const std::vector<Training>& list) {
        tryFaults(
            command,
            [&] {
                makeCard(list);
                openCard();
                world.questionAnswers.push_back(deletionAnswer());
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

// One interruption after another, before anything could be repaired, and at every place.
class TwoMisfortunes : public CommandFaults {
  protected:
    using Command = std::function<void()>;

    // The program starts, and does this until it is killed.
    void startUntilKilled(const Command& command, int call) {
        std::fflush(nullptr);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            alarm(secondsForOneCommand);
            forgetEverything();
            fs::current_path(tree);
            if (call != never) fault_injector::arm({.kind = FaultKind::kill, .at = call});
            device::loadDictionary();
            chooseTrainings();
            command();
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status)) << "the program did not come to an end of its own";
        wasKilled = WEXITSTATUS(status) == fault_injector::killedStatus;
        ASSERT_TRUE(wasKilled || WEXITSTATUS(status) == 0);
    }

    void tryPairs(const char* what, const std::vector<Training>& list, const Command& first,
                  const Command& second) {
        const int stride = isFull() ? 1 : 41;
        int pairs = 0;
        bool firstWasKilled = true;
        for (int i = 0; firstWasKilled; ++i) {
            bool secondWasKilled = true;
            for (int k = i % stride; secondWasKilled; k += stride) {
                SCOPED_TRACE("killed at call " + std::to_string(i) + ", then at call " +
                             std::to_string(k));
                makeCard(list);
                startUntilKilled(first, i);
                firstWasKilled = wasKilled;
                startUntilKilled(second, k);
                secondWasKilled = wasKilled;
                expectEveryTraining();
                ++pairs;
                if (HasFailure()) return;
            }
        }
        std::printf("%-32s %5d pairs of kills survived\n", what, pairs);
        RecordProperty("pairs", pairs);
    }

    static constexpr int never = -1;

    bool wasKilled = false;
};

TEST_F(TwoMisfortunes, DeletingThenRenumberingLoseNothing) {
    tryPairs("delete, then renumber", {{1}, {5, true}, {6}, {7}}, deleteTrainings,
             renumberTrainings);
}

TEST_F(TwoMisfortunes, RenumberingThenDeletingLoseNothing) {
    foreign = {{nameOf(2), "foreign"}};
    tryPairs("renumber, then delete", {{1}, {5}, {0x20, true}, {0x21}}, renumberTrainings,
             deleteTrainings);
}

TEST_F(TwoMisfortunes, RenumberingByCopiesTwiceLosesNothing) {
    pretendFat();
    tryPairs("renumber by copies, twice", {{1}, {5}, {6}, {7}}, renumberTrainings,
             renumberTrainings);
}

TEST_F(TwoMisfortunes, RenumberingTwiceLosesNothing) {
    fileless = {3};
    tryPairs("renumber, then renumber", {{1}, {5}, {6}, {7}}, renumberTrainings, renumberTrainings);
}

// What is listed stays as it was while another program starts on the same card and is killed.
class OtherProgram : public TwoMisfortunes {};

TEST_F(OtherProgram, KilledBesideAListLeavesNothingToLose) {
    foreign = {{nameOf(4), "foreign"}};
    const std::vector<Training> list = {{1}, {5}, {6, true}, {7}};
    for (const Command& ours : {Command(deleteTrainings), Command(renumberTrainings)}) {
        wasKilled = true;
        for (int call = 0; wasKilled; ++call) {
            SCOPED_TRACE("killed at call " + std::to_string(call));
            makeCard(list);
            openCard();
            const device::DeviceState listed = std::move(device::state);
            startUntilKilled(renumberTrainings, call);
            fs::current_path(tree);
            device::state = listed;
            ours();
            expectEveryTraining();
            ASSERT_FALSE(HasFailure());
        }
    }
}

// A second program does all of its work between two calls of the first.
TEST_F(OtherProgram, AtWorkInTheMiddleOfOursLosesNothing) {
    foreign = {{nameOf(4), "foreign"}};
    const std::vector<Training> list = {{1}, {5}, {6, true}, {7}, {9}};
    const Command commands[] = {deleteTrainings, renumberTrainings, [] {}};
    int pairs = 0;
    for (const Command& ours : commands) {
        for (const Command& theirs : commands) {
            bool happened = true;
            for (int call = isFull() ? 0 : pairs % 3; happened; call += isFull() ? 1 : 3) {
                SCOPED_TRACE("at call " + std::to_string(call));
                makeCard(list);
                forgetEverything();
                fs::current_path(tree);
                happened = false;
                fault_injector::arm({.kind = FaultKind::interrupt, .at = call, .meanwhile = [&] {
                                         happened = true;
                                         startUntilKilled(theirs, never);
                                     }});
                device::loadDictionary();
                chooseTrainings();
                ours();
                fault_injector::disarm();
                expectEveryTraining();
                ASSERT_FALSE(HasFailure());
                ++pairs;
            }
        }
    }
    std::printf("%-32s %5d places survived\n", "two programs on one card", pairs);
    RecordProperty("places", pairs);
}

class BackupFaults : public CommandFaults {
  protected:
    void runBackup() {
        world.events.push_back(
            {.kind = services::EventKind::close, .window = services::reportWindow});
        files::copyToBackup(700, [] {});
    }

    void prepareBackup(const std::vector<Training>& list, std::size_t present) {
        makeCard(list);
        fs::remove_all(directory / "sicherung");
        fs::create_directories(backup);
        const std::string index = bytesOf(tree / "dictionary.2");
        for (std::size_t i = 0; i < present; ++i) {
            const std::string name = nameOf(list[list.size() - 1 - i].number);
            fs::copy_file(tree / name, backup / name);
        }
        before = index.substr(0, present * 152);
        if (present > 0) writeBytes(backup / "dictionary.2", before);
        openCard();
        device::state.backupDirectory = backup.string() + "/";
    }

    void expectSoundBackup(bool complete) {
        const std::string index = bytesOf(backup / "dictionary.2");
        EXPECT_TRUE(index.starts_with(before)) << "the backup's index has not only grown";
        std::set<std::string> listed;
        for (std::size_t at = 0; at + 152 <= index.size(); at += 152) {
            std::uint64_t number = 0;
            for (std::size_t k = 8; k-- > 0;)
                number = number << 8U | static_cast<unsigned char>(index[at + k]);
            EXPECT_TRUE(listed.insert(nameOf(number)).second) << "twice: " << nameOf(number);
        }
        const std::set<std::string> names = namesIn(backup);
        for (const std::string& name : listed)
            EXPECT_TRUE(names.contains(name)) << "listed without a file: " << name;
        for (const std::string& name : names) {
            if (name.size() == 16) {
                EXPECT_TRUE(bytesOf(backup / name) == bytesOf(tree / name)) << name;
            } else if (complete) {
                EXPECT_EQ(name, "dictionary.2");
            }
        }
        if (!complete) return;
        EXPECT_EQ(listed.size(), trainings.size());
        EXPECT_EQ(index.size() % 152, 0U);
    }

    void tryBackup(const char* command, const std::vector<Training>& list, std::size_t present) {
        tryFaults(
            command, [&, present] { prepareBackup(list, present); }, [&] { runBackup(); },
            [&] {
                expectEveryTraining();
                expectSoundBackup(false);
                openCard();
                device::state.backupDirectory = backup.string() + "/";
                runBackup();
                expectSoundBackup(true);
            });
    }

    // A process that starts the backup, and meets the fault.
    void runBackupAgainst(const Fault& fault) {
        openCard();
        device::state.backupDirectory = backup.string() + "/";
        std::fflush(nullptr);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            alarm(secondsForOneCommand);
            fault_injector::arm(fault);
            runBackup();
            fault_injector::disarm();
            fault_injector::leaveProcess(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status)) << "the program did not come to an end of its own";
    }

    std::string before;  // the backup's index
};

TEST_F(BackupFaults, LeaveABackupOnFatThatASecondRunCompletes) {
    pretendFat();
    tryBackup("back up onto FAT", {{1}, {5}, {9}}, 1);
}

TEST_F(BackupFaults, LeaveANewBackupThatASecondRunCompletes) {
    tryBackup("back up into nothing", {{1}, {5}, {9}}, 0);
}

TEST_F(BackupFaults, LeaveAGrownBackupThatASecondRunCompletes) {
    tryBackup("back up two of four", {{1}, {5}, {9}, {12}}, 2);
}

// The next backup meets a fault as well: another kill, one in the middle of the next write, or a
// disk that is full from then on. The one after that completes it.
TEST_F(BackupFaults, LeaveABackupThatIsCompletedAfterTwoOfThem) {
    const std::vector<Training> list = {{1}, {5}, {9}};
    prepareBackup(list, 0);
    fault_injector::arm({});
    runBackup();
    const int calls = fault_injector::disarm();
    std::vector<FaultKind> firstKinds;
    for (int call = 0; call < calls; ++call)
        firstKinds.push_back(fault_injector::wasWrite(call) ? FaultKind::killMidway
                                                            : FaultKind::kill);
    constexpr FaultKind secondKinds[] = {FaultKind::kill, FaultKind::killMidway, FaultKind::fail};
    int tried = 0;
    for (int first = 0; first < calls; ++first) {
        // The second run has fewer calls or more; a fault beyond its last one is none.
        for (int second = isFull() ? 0 : first % 29; second < calls + 20;
             second += isFull() ? 1 : 29) {
            SCOPED_TRACE("kill at " + std::to_string(first) + ", then at " +
                         std::to_string(second));
            prepareBackup(list, 0);
            runBackupAgainst({.kind = firstKinds[static_cast<std::size_t>(first)], .at = first});
            const FaultKind kind = secondKinds[second % 3];
            runBackupAgainst({.kind = kind, .at = second, .error = ENOSPC, .goesOn = true});
            expectSoundBackup(false);
            openCard();
            device::state.backupDirectory = backup.string() + "/";
            runBackup();
            expectSoundBackup(true);
            ++tried;
            if (HasFailure()) return;
        }
    }
    expectEveryTraining();
    std::printf("%-32s %4d calls  %5d faults  %5d survived\n", "back up twice into nothing", calls,
                2 * tried, 2 * tried);
}

class SettingsFaults : public CommandFaults {
  protected:
    void useSettings(int width) {
        device::state.programDirectory = directory.string() + "/";
        device::state.backupDirectory = "/stick/";
        settings::state.windowWidth = width;
        settings::state.windowHeight = 600;
        charts::state.colours = charts::builtInColours();
    }

    std::string path() const { return (directory / "Einstellungen.dat").string(); }

    // The bytes that a save of that width gives.
    std::string savedBytes(int width, bool onCard) {
        openCard();
        if (!onCard) fs::current_path(directory);
        useSettings(width);
        settings::saveStartSettings();
        return bytesOf(path());
    }

    void trySaving(const char* command, bool existing) {
        makeCard({{1}, {2}});
        const std::string newBytes = savedBytes(1234, true);
        const std::string newWithoutCard = savedBytes(1234, false);
        const std::string oldBytes = existing ? savedBytes(777, true) : "";
        ASSERT_NE(oldBytes, newBytes);
        tryFaults(
            command,
            [&] {
                for (const std::string& name : namesIn(directory)) {
                    if (name.starts_with("Einstellungen")) fs::remove(directory / name);
                }
                if (existing) writeBytes(path(), oldBytes);
                openCard();
                useSettings(1234);
            },
            [] { settings::saveStartSettings(); },
            [&] {
                EXPECT_EQ(fs::exists(path()) || existing, fs::exists(path()));
                const std::string bytes = bytesOf(path());
                // A card that could not be looked at is none.
                EXPECT_TRUE(bytes == oldBytes || bytes == newBytes || bytes == newWithoutCard)
                    << bytes;
                expectEveryTraining();
            });
    }
};

TEST_F(SettingsFaults, LeaveTheOldOnesOrTheNewOnes) {
    trySaving("save settings over old ones", true);
}

TEST_F(SettingsFaults, LeaveNoneOrTheNewOnes) {
    trySaving("save settings for the first time", false);
}

class ExportFaults : public CommandFaults {
  protected:
    void tryExporting(const char* command, const char* name, const std::string& expected,
                      const std::function<void()>& prepare, const std::function<void()>& run) {
        const fs::path target = directory / "export.csv";
        tryFaults(
            command,
            [&] {
                fs::remove(target);
                makeCard({{1, true}, {5, true}, {9}});
                openCard();
                prepare();
                world.saveFileAnswers.push_back(
                    {services::Text("Name und Ort der CSV-Datei wählen"_l1), "", name,
                     target.string()});
            },
            run,
            [&] {
                EXPECT_TRUE(expected.starts_with(bytesOf(target)));
                expectEveryTraining();
            });
    }
};

TEST_F(ExportFaults, OfTheIndexTouchNoTraining) {
    makeCard({{1, true}, {5, true}, {9}});
    openCard();
    tryExporting(
        "export the index", "Dicitonary.csv", exporting::indexCsv(device::state.dictionary), [] {},
        [] { exporting::exportIndex(); });
}

TEST_F(ExportFaults, OfATrainingTouchNoTraining) {
    const std::vector<device::TrainingSample> samples(3);
    makeCard({{1, true}, {5, true}, {9}});
    openCard();
    tryExporting(
        "export a training", "0001  01_01_2013 00_00_00   60min   25,0km  Training 0.csv",
        exporting::trainingCsv(samples), [&] { device::state.samples = samples; },
        [] { exporting::exportTraining(); });
}

// Every command of the program while memory runs out: at each allocation, once or for good. The
// command ends, the program goes on, and nothing on the card is lost.
class ShortMemory : public CommandFaults {
  protected:
    // Of the list, with these rows chosen.
    void pressInList(int button, const std::vector<int>& rows = {}) {
        world.beforeEvent = [rows](int) {
            world.windows[services::listWindow].controls[files::trainingListControl].chosen = rows;
        };
        world.events.push_back({.kind = services::EventKind::control,
                                .window = services::listWindow,
                                .control = files::firstButtonControl + button,
                                .data = services::pressed});
    }

    void closeWindow(int window) {
        world.events.push_back({.kind = services::EventKind::close, .window = window});
    }

    static void choose(int item) {
        app::dispatchEvent({.kind = services::EventKind::menu, .item = item});
    }

    void startProgram() {
        forgetEverything();
        fs::current_path(card);
        ASSERT_TRUE(app::startUp({}));
        for (const int item : {200, 301, 402, 503, 604, 705, 250, 351, 452, 553, 654, 755})
            services::setItemMark(item, true);
        device::state.renumberingEnabled = true;
    }

    // What the user does next.
    bool isUsable() {
        world.events.clear();
        world.questionAnswers.clear();
        world.saveFileAnswers.clear();
        world.beforeEvent = {};
        app::state.quit = false;
        closeWindow(services::listWindow);
        choose(app::editTrainingFilesItem);
        std::set<std::string> listed;
        for (const device::DictionaryRecord& record : device::state.dictionary)
            listed.insert(record.description);
        bool usable = !device::state.dictionaryUnreadable && world.windows.size() == 1 &&
                      device::state.heldTree.directory == services::noFile &&
                      world.events.empty() &&
                      app::state.chartImage.pixels.size() ==
                          static_cast<std::size_t>(app::state.chartImage.deviceWidth) *
                              static_cast<std::size_t>(app::state.chartImage.deviceHeight);
        for (std::size_t i = 0; i < trainings.size(); ++i)
            usable = usable && (trainings[i].chosen || listed.contains(descriptionOf(i)));
        return usable;
    }

    void tryCommand(const char* command, const std::function<void()>& prepare,
                    const std::function<void()>& run) {
        const auto begin = [&] {
            makeCard({{1}, {5}, {6, true}, {9}});
            fs::remove(directory / "export.csv");
            startProgram();
            prepare();
        };
        begin();
        fault_injector::armMemory(-1, false);
        run();
        const int allocations = fault_injector::disarmMemory();
        ASSERT_TRUE(isUsable()) << command;
        ASSERT_GT(allocations, 0);
        // The short form tries a part of them, another one for each command.
        const int stride = isFull() ? 1 : 1 + allocations / 40;
        int tried = 0;
        for (int at = allocations % stride; at < allocations; at += stride) {
            for (const bool goesOn : {false, true}) {
                SCOPED_TRACE(std::string(command) + (goesOn ? " from" : " at") + " allocation " +
                             std::to_string(at));
                begin();
                ASSERT_FALSE(HasFailure()) << "preparing";
                std::fflush(nullptr);
                const pid_t child = fork();
                ASSERT_GE(child, 0);
                if (child == 0) {
                    alarm(secondsForOneCommand);
                    fault_injector::armMemory(at, goesOn);
                    run();
                    fault_injector::disarmMemory();
                    _exit(isUsable() ? 0 : 1);
                }
                int status = 0;
                ASSERT_EQ(waitpid(child, &status, 0), child);
                EXPECT_TRUE(WIFEXITED(status)) << "the program ended";
                EXPECT_EQ(WEXITSTATUS(status), 0) << "the program can't be used any more";
                expectEveryTraining();
                for (const std::string& name : namesIn(card))
                    EXPECT_TRUE(name == "data" || name == "Einstellungen.dat") << name;
                ++tried;
                ASSERT_FALSE(HasFailure());
            }
        }
        std::printf("%-32s %6d allocations  %5d tried and survived\n", command, allocations, tried);
        RecordProperty("allocations", allocations);
    }
};

TEST_F(ShortMemory, EndsTheStartOfTheProgramAtMost) {
    tryCommand(
        "start", [&] { fs::current_path(card); },
        [&] {
            // Without its window and menus there is no program to go on with.
            if (services::withinMemory([] { app::startUp({}); })) return;
            fault_injector::disarmMemory();
            startProgram();
        });
}

TEST_F(ShortMemory, EndsDeletingAndNoMore) {
    tryCommand(
        "delete",
        [&] {
            pressInList(2, {1});
            closeWindow(services::listWindow);
            world.questionAnswers = {deletionAnswer()};
        },
        [] { choose(app::editTrainingFilesItem); });
}

TEST_F(ShortMemory, EndsRenumberingAndNoMore) {
    tryCommand(
        "renumber",
        [&] {
            pressInList(3);
            closeWindow(services::reportWindow);
            closeWindow(services::listWindow);
            world.questionAnswers = {{"Dateinamen neu durchnummerieren",
                                      "Sollen die Dateinamen neu durchnummeriert werden?", true}};
        },
        [] { choose(app::editTrainingFilesItem); });
}

TEST_F(ShortMemory, EndsSortingAndNoMore) {
    tryCommand(
        "sort",
        [&] {
            pressInList(4);
            closeWindow(services::listWindow);
        },
        [] { choose(app::editTrainingFilesItem); });
}

TEST_F(ShortMemory, EndsOpeningATrainingAndNoMore) {
    tryCommand(
        "open a training",
        [&] {
            pressInList(0, {1});
            closeWindow(services::listWindow);  // which stays when it could not be pressed
        },
        [] { choose(app::openTrainingItem); });
}

TEST_F(ShortMemory, EndsExportsAndNoMore) {
    tryCommand(
        "export the index",
        [&] {
            pressInList(0);
            closeWindow(services::listWindow);
            world.saveFileAnswers.push_back({services::Text("Name und Ort der CSV-Datei wählen"_l1),
                                             "", "Dicitonary.csv",
                                             (directory / "export.csv").string()});
        },
        [] { choose(app::exportTrainingsItem); });
    tryCommand(
        "export a training",
        [&] {
            pressInList(0, {1});
            closeWindow(services::listWindow);
            world.saveFileAnswers.push_back(
                {services::Text("Name und Ort der CSV-Datei wählen"_l1), "",
                 "0006  03_01_2013 00_00_00   60min   25,0km  Training 2.csv",
                 (directory / "export.csv").string()});
        },
        [] { choose(app::exportTrainingItem); });
}

TEST_F(ShortMemory, EndsDrawingAndNoMore) {
    tryCommand(
        "draw", [] {}, [] { choose(107); });
    tryCommand(
        "draw another size", [] { services::resizeWindow(services::mainWindow, 1500, 900); },
        [] { app::dispatchEvent({.kind = services::EventKind::resize}); });
    tryCommand(
        "draw a band", [] { choose(200); },
        [] {
            app::dispatchEvent({.kind = services::EventKind::click});
            app::dispatchEvent({.kind = services::EventKind::timer, .item = 1});
            world.pointerY += 9;
            app::dispatchEvent({.kind = services::EventKind::timer, .item = 1});
            app::dispatchEvent({.kind = services::EventKind::click});
        });
}

TEST_F(ShortMemory, EndsDialogsAndNoMore) {
    tryCommand(
        "limits",
        [&] {
            world.events.push_back({.kind = services::EventKind::control,
                                    .window = services::limitsWindow,
                                    .control = charts::resetButton});
            closeWindow(services::limitsWindow);
        },
        [] { choose(800); });
    tryCommand(
        "help", [&] { closeWindow(services::infoWindow); }, [] { choose(app::programItem); });
}

TEST_F(ShortMemory, EndsSavingTheSettingsAndNoMore) {
    tryCommand(
        "save settings", [] {}, [] { choose(app::saveSettingsItem); });
    tryCommand(
        "load settings", [] { choose(app::saveSettingsItem); },
        [] { choose(app::reloadSettingsItem); });
}

TEST_F(ShortMemory, EndsTheBackupAndNoMore) {
    tryCommand(
        "back up",
        [&] {
            fs::remove_all(directory / "sicherung");
            fs::create_directories(backup);
            device::state.backupDirectory = backup.string() + "/";
            pressInList(1);
            closeWindow(services::reportWindow);
            closeWindow(services::listWindow);
        },
        [] { choose(app::editTrainingFilesItem); });
}

}  // namespace
