#include "files/deletion.h"

#include <filesystem>
#include <string>
#include <vector>

#include "tests/files/file_command_answers.h"
#include "tests/files/files_test.h"

namespace {

namespace fs = std::filesystem;
using namespace files_tests;
using Numbers = std::vector<std::uint64_t>;

class Deletion : public FilesTest {
  protected:
    static void expectQuestion(bool yes) {
        stand_ins::world.questionAnswers.push_back(deletionAnswer(yes));
    }

    static void choose(const std::vector<std::size_t>& indexes) {
        for (auto& record : device::state.dictionary)
            record.selected = 0;
        for (const std::size_t index : indexes)
            device::state.dictionary[index].selected = 1;
    }
};

TEST_F(Deletion, DeletesTheFilesAndRecordsOfTheChosenTrainings) {
    useCard({recordOf(1, 1), recordOf(2, 2), recordOf(3, 3)});
    choose({0, 2});
    expectQuestion(true);
    files::deleteChosenTrainings();
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"dictionary.2", nameOf(2)}));
    EXPECT_EQ(numbersInIndex("dictionary.2"), Numbers{2});
    ASSERT_EQ(device::state.dictionary.size(), 1U);
    EXPECT_EQ(device::state.dictionary[0].fileName, nameOf(2));
    EXPECT_EQ(device::state.dictionary[0].selected, 1);
}

TEST_F(Deletion, NothingChangesOnNo) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    choose({0});
    const std::string index = bytesOf("dictionary.2");
    expectQuestion(false);
    files::deleteChosenTrainings();
    EXPECT_TRUE(fs::exists(nameOf(1)));
    EXPECT_EQ(bytesOf("dictionary.2"), index);
    EXPECT_EQ(device::state.dictionary.size(), 2U);
}

TEST_F(Deletion, NothingChosenLeavesTheIndexUntouched) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    choose({});
    // Bytes that a rewritten index would not have.
    writeBytes("dictionary.2", bytesOf("dictionary.2") + "rest");
    const std::string index = bytesOf("dictionary.2");
    expectQuestion(true);
    expectNothingToDelete();
    files::deleteChosenTrainings();
    EXPECT_EQ(bytesOf("dictionary.2"), index);
    EXPECT_TRUE(fs::exists(nameOf(1)) && fs::exists(nameOf(2)));
}

TEST_F(Deletion, TheRemainingRecordsKeepTheCurrentOrderOfTheTable) {
    useCard({recordOf(1, 1), recordOf(2, 2), recordOf(3, 3), recordOf(4, 4)});
    auto& records = device::state.dictionary;
    std::swap(records[0], records[3]);  // 4 2 3 1
    choose({1});
    expectQuestion(true);
    files::deleteChosenTrainings();
    EXPECT_EQ(numbersInIndex("dictionary.2"), (Numbers{4, 3, 1}));
}

TEST_F(Deletion, AFileThatIsGoneAlreadyIsPassedOver) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    fs::remove(nameOf(1));
    choose({0});
    expectQuestion(true);
    files::deleteChosenTrainings();
    EXPECT_EQ(numbersInIndex("dictionary.2"), Numbers{2});
}

TEST_F(Deletion, DeletesNothingButTrainingFiles) {
    useCard({recordOf(1, 1), recordOf(2, 2), recordOf(3, 3), recordOf(4, 4), recordOf(5, 5)});
    writeBytes("../outside", "precious");
    writeBytes("notes", "precious");
    fs::remove(nameOf(1));
    fs::create_symlink("../outside", nameOf(1));
    fs::remove(nameOf(2));
    fs::create_directory(nameOf(2));
    device::state.dictionary[2].fileName = "../outside";
    device::state.dictionary[3].fileName = "notes";
    choose({0, 1, 2, 3});
    expectQuestion(true);
    files::deleteChosenTrainings();
    EXPECT_EQ(bytesOf("../outside"), "precious");
    EXPECT_EQ(bytesOf("notes"), "precious");
    EXPECT_TRUE(fs::is_symlink(nameOf(1)));
    EXPECT_TRUE(fs::is_directory(nameOf(2)));
    EXPECT_EQ(numbersInIndex("dictionary.2"), Numbers{5});
}

TEST_F(Deletion, NothingElseStaysInTheDirectory) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    choose({0});
    expectQuestion(true);
    files::deleteChosenTrainings();
    EXPECT_EQ(namesIn("."), (std::set<std::string>{"dictionary.2", nameOf(2)}));
}

TEST_F(Deletion, AnotherCardInTheSlotIsLoadedAndNotTouched) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    choose({0});
    builders::writeCard(directory, std::vector<device::DictionaryRecord>{recordOf(1, 5)});
    const std::string index = bytesOf("dictionary.2");
    expectQuestion(true);
    files::deleteChosenTrainings();
    EXPECT_EQ(bytesOf("dictionary.2"), index);
    EXPECT_TRUE(fs::exists(nameOf(1)));
    ASSERT_EQ(device::state.dictionary.size(), 1U);
    EXPECT_EQ(device::state.dictionary[0].startDate, recordOf(1, 5).startDate);
}

TEST_F(Deletion, APulledCardGetsTheMessage) {
    useCard({recordOf(1, 1), recordOf(2, 2)});
    choose({0});
    fs::remove("dictionary.2");
    expectQuestion(true);
    stand_ins::expectMessage(
        "Dateifehler",
        "Die Datei 'data\\result\\ergo_bike\\dictionary.2' ist leer oder wurde nicht gefunden!");
    files::deleteChosenTrainings();
    EXPECT_TRUE(fs::exists(nameOf(1)));
}

TEST_F(Deletion, DeletingEveryTrainingLeavesAnEmptyIndex) {
    useCard({recordOf(1, 1)});
    choose({0});
    expectQuestion(true);
    stand_ins::expectMessage(
        "Dateifehler",
        "Die Datei 'data\\result\\ergo_bike\\dictionary.2' ist leer oder wurde nicht gefunden!");
    files::deleteChosenTrainings();
    EXPECT_EQ(fs::file_size("dictionary.2"), 0U);
}

}  // namespace
