#include "files/training_copies.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "services/disk/endings.h"
#include "services/disk/numbered_files.h"
#include "tests/files/files_test.h"
#include "tests/services/signals.h"
#include "tests/stand_ins/file_size_limit.h"

namespace {

namespace fs = std::filesystem;
using namespace files_tests;
using files::BackupMark;
using stand_ins::FileSizeLimit;
using stand_ins::world;
using Numbers = std::vector<std::uint64_t>;

constexpr int backupIndex = 5;

class TrainingCopies : public FilesTest {
  protected:
    void SetUp() override {
        FilesTest::SetUp();
        backup = directory / "stick";
        fs::create_directories(backup);
    }

    void TearDown() override {
        services::closeFile(backupIndex);
        services::forgetQuit();
        FilesTest::TearDown();
    }

    // The marks in the order in which they are told.
    std::string copy(const std::vector<bool>& missing, std::size_t groupOf,
                     const std::function<void(std::size_t record)>& whenTold = {}) {
        std::string marks;
        EXPECT_TRUE(services::openFile(backupIndex, (backup / "dictionary.2").string()));
        files::copyTrainings(missing, bytesOf(backup / "dictionary.2"), backup.string() + "/",
                             [&](std::size_t record, BackupMark mark) {
                                 EXPECT_EQ(record, marks.size());
                                 marks += static_cast<char>(mark);
                                 if (whenTold) whenTold(record);
                             },
                             {.trainings = groupOf});
        services::closeFile(backupIndex);
        return marks;
    }

    std::set<std::string> expectedNames(const Numbers& numbers) {
        std::set<std::string> names = {"dictionary.2"};
        for (const std::uint64_t number : numbers)
            names.insert(nameOf(number));
        return names;
    }

    // Whole trainings of these numbers, their records in this order, and nothing else.
    void expectBackup(const Numbers& numbers) {
        EXPECT_EQ(namesIn(backup), expectedNames(numbers));
        EXPECT_EQ(numbersInIndex(backup / "dictionary.2"), numbers);
        EXPECT_EQ(fs::file_size(backup / "dictionary.2"), 152 * numbers.size());
        for (const std::uint64_t number : numbers)
            EXPECT_EQ(bytesOf(backup / nameOf(number)), contentOf(nameOf(number)));
    }

    fs::path backup;
};

TEST_F(TrainingCopies, AGroupOfAnySizeGivesTheSame) {
    useTrainings(7);
    for (std::size_t groupOf = 1; groupOf <= 8; ++groupOf) {
        SCOPED_TRACE(groupOf);
        fs::remove_all(backup);
        fs::create_directory(backup);
        EXPECT_EQ(copy({true, false, true, true, true, false, true}, groupOf), "+*+++*+");
        expectBackup({1, 3, 4, 5, 7});
    }
}

TEST_F(TrainingCopies, AGroupEndsWithItsBytes) {
    useTrainings(4);
    for (std::uint64_t i = 1; i <= 4; ++i)
        ASSERT_EQ(bytesOf(nameOf(i)).size(), 60U);
    ASSERT_TRUE(services::openFile(backupIndex, (backup / "dictionary.2").string()));
    std::vector<std::uintmax_t> lengths;  // of the index when a record is told
    files::copyTrainings({true, true, true, true}, {}, backup.string() + "/",
                         [&](std::size_t, BackupMark) {
                             lengths.push_back(fs::file_size(backup / "dictionary.2") / 152);
                         },
                         {.trainings = 100, .bytes = 61});
    EXPECT_EQ(lengths, (std::vector<std::uintmax_t>{2, 2, 4, 4}));
}

TEST_F(TrainingCopies, WhatIsToldIsThere) {
    useTrainings(5);
    const auto isThere = [&](std::size_t record) {
        EXPECT_TRUE(fs::exists(backup / nameOf(record + 1)));
        EXPECT_GE(fs::file_size(backup / "dictionary.2"), 152 * (record + 1));
    };
    EXPECT_EQ(copy({true, true, true, true, true}, 2, isThere), "+++++");
}

TEST_F(TrainingCopies, WhatThereIsAlreadyIsToldAtOnce) {
    useTrainings(3);
    const auto isFirst = [&](std::size_t record) {
        if (record < 2) {
            EXPECT_FALSE(fs::exists(backup / nameOf(3)));
            EXPECT_EQ(world.repaints, 0);
        }
    };
    EXPECT_EQ(copy({false, false, true}, 64, isFirst), "**+");
}

TEST_F(TrainingCopies, ATrainingThatVanishedSinceTheIndexWasReadIsNotCopied) {
    useTrainings(3);
    fs::remove(nameOf(2));
    EXPECT_EQ(copy({true, true, true}, 64), "+-+");
    expectBackup({1, 3});
}

TEST_F(TrainingCopies, ANameThatIsNoneIsNotCopied) {
    useTrainings(3);
    device::state.dictionary[1].fileName = "../elsewhere0000";
    EXPECT_EQ(copy({true, true, true}, 64), "+-+");
    expectBackup({1, 3});
}

TEST_F(TrainingCopies, RoomForSomeRecordsIsUsedForTheFirst) {
    useTrainings(4);
    {
        const FileSizeLimit full(2 * 152 + 100);
        EXPECT_EQ(copy({true, true, true, true}, 64), "++--");
    }
    EXPECT_EQ(numbersInIndex(backup / "dictionary.2"), (Numbers{1, 2}));
    EXPECT_EQ(fs::file_size(backup / "dictionary.2"), 2U * 152);
    // Their files are there and found by the next.
    EXPECT_EQ(namesIn(backup), expectedNames({1, 2, 3, 4}));
    EXPECT_EQ(copy({false, false, true, true}, 64), "**++");
    expectBackup({1, 2, 3, 4});
}

// Another disk lies there by now.
TEST_F(TrainingCopies, AnIndexThatHasChangedSinceIsNotReplaced) {
    useTrainings(3);
    const auto change = [&](std::size_t record) {
        if (record == 0) writeBytes(backup / "dictionary.2", "of another disk");
    };
    EXPECT_EQ(copy({true, true, true}, 1, change), "+--");
    EXPECT_EQ(bytesOf(backup / "dictionary.2"), "of another disk");
}

TEST_F(TrainingCopies, WhatCouldNotBeCopiedIsToldBesideALongIndex) {
    useTrainings(2);
    fs::remove(nameOf(1));
    writeBytes(backup / "dictionary.2", std::string(152 * 100, 'x'));
    const auto isFirst = [&](std::size_t record) {
        if (record == 0) {
            EXPECT_FALSE(fs::exists(backup / nameOf(2)));
        }
    };
    EXPECT_EQ(copy({true, true}, 1, isFirst), "-+");
}

TEST_F(TrainingCopies, AFullDiskKeepsTheOthersOfItsGroup) {
    useTrainings(4);
    writeBytes(nameOf(2), std::string(5000, 'x'));
    {
        const FileSizeLimit full(4000);
        EXPECT_EQ(copy({true, true, true, true}, 64), "+-++");
    }
    expectBackup({1, 3, 4});
}

// The other card has trainings of the same names.
TEST_F(TrainingCopies, NothingComesFromAnotherCard) {
    for (const int call : {0, 2, 3, 5}) {
        SCOPED_TRACE(call);
        fs::remove_all(backup);
        fs::create_directory(backup);
        useTrainings(6);
        world.repaints = 0;
        world.whileRepainting = [&](int now) {
            if (now != call) return;
            for (std::uint64_t i = 1; i <= 6; ++i)
                writeBytes(nameOf(i), "of another card");
            auto other = recordOf(1, 1);
            other.description = "Another card";
            writeBytes("dictionary.2", device::encodeDictionaryRecord(other));
        };
        const bool inSecondGroup = call >= 3;
        EXPECT_EQ(copy({true, true, true, true, true, true}, 3),
                  inSecondGroup ? "+++---" : "------");
        world.whileRepainting = {};
        expectBackup(inSecondGroup ? Numbers{1, 2, 3} : Numbers{});
    }
}

TEST_F(TrainingCopies, NothingComesFromACardThatIsGone) {
    useTrainings(4);
    world.whileRepainting = [&](int call) {
        if (call != 2) return;
        for (const std::string& name : namesIn(tree))
            fs::remove(tree / name);
    };
    EXPECT_EQ(copy({true, true, true, true}, 2), "++--");
    expectBackup({1, 2});
}

TEST_F(TrainingCopies, WhenTheProgramIsToQuitTheGroupAtWorkIsCompleted) {
    useTrainings(5);
    world.whileRepainting = [](int call) {
        if (call == 3) services::askForQuit();
    };
    EXPECT_EQ(copy({true, true, true, true, true}, 3), "++++");
    expectBackup({1, 2, 3, 4});
    services::forgetQuit();
    EXPECT_EQ(copy({false, false, false, false, true}, 3), "****+");
    expectBackup({1, 2, 3, 4, 5});
}

TEST_F(TrainingCopies, ASignalEndsTheProcessWhenTheGroupAtWorkIsComplete) {
    useTrainings(5);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(signal);
        fs::remove_all(backup);
        fs::create_directory(backup);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            alarm(30);
            tests::takeSignals();
            world.whileRepainting = [signal](int call) {
                if (call == 1) raise(signal);
            };
            services::putOffEndings();
            copy({true, true, true, true, true}, 3);
            services::endIfAsked();
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status));
        EXPECT_EQ(WTERMSIG(status), signal);
        expectBackup({1, 2});
    }
}

}  // namespace
