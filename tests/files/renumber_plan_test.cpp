#include "files/renumber_plan.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// "old>new" for a file that is renamed, "old=new" for one that keeps its name; leading zeros left
// out.
std::string plan(const std::vector<std::string>& names) {
    std::vector<device::DictionaryRecord> records;
    for (const std::string& name : names) {
        device::DictionaryRecord record;
        record.fileName = std::string(16 - name.size(), '0') + name;
        records.push_back(record);
    }
    std::string text;
    for (const files::RenumberStep& step : files::planRenumbering(records)) {
        EXPECT_EQ(step.newName.size(), 16U);
        const auto withoutZeros = [](const std::string& name) {
            return name.substr(std::min(name.find_first_not_of('0'), name.size() - 1));
        };
        text += (text.empty() ? "" : " ") + withoutZeros(step.oldName) +
                (step.renames ? ">" : "=") + withoutZeros(step.newName);
    }
    return text;
}

TEST(RenumberPlan, GapsAreClosed) {
    EXPECT_EQ(plan({"1", "2", "5"}), "1=1 2=2 5>3");
}

TEST(RenumberPlan, TheSequenceGoesOnFromTheEarliestTraining) {
    EXPECT_EQ(plan({"10", "12", "20"}), "10=10 12>11 20>12");
}

TEST(RenumberPlan, FilesOnlyMoveDownAndATurnIsUsedUpAllTheSame) {
    EXPECT_EQ(plan({"5", "2", "9", "7", "a"}), "5=5 2=6 9>7 7=8 a>9");
}

TEST(RenumberPlan, NewNamesAreLowerCaseAndAKeptOneStaysAsItIs) {
    EXPECT_EQ(plan({"9", "AB", "AC"}), "9=9 AB>a AC>b");
    EXPECT_EQ(plan({"A", "B", "D"}), "A=a B=b D>c");
}

TEST(RenumberPlan, NumbersAreSigned) {
    // From 2^63 on they count as negative, so they are above nothing positive.
    EXPECT_EQ(plan({"1", "8000000000000000"}), "1=1 8000000000000000=2");
    EXPECT_EQ(plan({"ffffffffffffffff", "5"}), "ffffffffffffffff=ffffffffffffffff 5>0");
    EXPECT_EQ(plan({"7fffffffffffffff", "7fffffffffffffff"}),
              "7fffffffffffffff=7fffffffffffffff 7fffffffffffffff>8000000000000000");
}

TEST(RenumberPlan, AnEmptyTableHasNoSteps) {
    EXPECT_EQ(plan({}), "");
}

TEST(RenumberPlan, AReportLineJoinsBothNames) {
    EXPECT_EQ(files::renumberLine({"00000000000000AB", "000000000000000a", true}),
              "00000000000000AB = 000000000000000a");
}

}  // namespace
