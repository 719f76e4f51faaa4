// The backup copy: whatever it leaves is sound, and the next one completes it.
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "device/device_state.h"
#include "files/backup_copy.h"
#include "tests/builders/file_bytes.h"
#include "tests/faults/command_faults.h"
#include "tests/faults/fault_injector.h"

namespace {

namespace fs = std::filesystem;
using namespace command_faults;
using builders::bytesIfThere;
using builders::bytesOf;
using builders::namesIn;
using builders::writeBytes;
using fault_injector::Fault;
using fault_injector::FaultKind;
using stand_ins::world;

class BackupFaults : public CommandFaults {
  protected:
    void runBackup() {
        world.events.push_back(
            {.kind = services::EventKind::close, .window = services::reportWindow});
        files::copyToBackup(700, [] {});
    }

    void openCardForBackup() {
        openCard();
        device::state.backupDirectory = backup.string() + "/";
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
        openCardForBackup();
    }

    void expectSoundBackup(bool complete) {
        const std::string index = bytesIfThere(backup / "dictionary.2");
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
                EXPECT_TRUE(bytesIfThere(backup / name) == bytesIfThere(tree / name)) << name;
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
                openCardForBackup();
                runBackup();
                expectSoundBackup(true);
            });
    }

    // A process that starts the backup, and meets the fault.
    void runBackupAgainst(const Fault& fault) {
        openCardForBackup();
        statusOf([&] {
            fault_injector::arm(fault);
            runBackup();
            fault_injector::disarm();
            return 0;
        });
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
            openCardForBackup();
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

}  // namespace
