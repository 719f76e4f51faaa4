#include "files/backup_plan.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<device::DictionaryRecord> recordsOf(const std::vector<std::string>& names) {
    std::vector<device::DictionaryRecord> records;
    for (const std::string& name : names) {
        records.emplace_back();
        records.back().fileName = name;
    }
    return records;
}

TEST(BackupPlan, AnIndexHasANameForEachWholeRecordAndAnEmptyOneHasOne) {
    EXPECT_EQ(files::namesInIndex(0), 1);
    EXPECT_EQ(files::namesInIndex(1), 0);
    EXPECT_EQ(files::namesInIndex(151), 0);
    EXPECT_EQ(files::namesInIndex(152), 1);
    EXPECT_EQ(files::namesInIndex(152 * 3), 3);
    EXPECT_EQ(files::namesInIndex(152 * 3 + 10), 3);
    EXPECT_EQ(files::namesInIndex(-1), 0);
}

TEST(BackupPlan, WhatTheBackupNamesIsNotMissing) {
    const auto records = recordsOf({"0000000000000001", "0000000000000002", "0000000000000003"});
    using Missing = std::vector<bool>;
    EXPECT_EQ(files::missingInBackup(records, {"0000000000000003", "0000000000000001"}),
              (Missing{false, true, false}));
    EXPECT_EQ(files::missingInBackup(records, {}), (Missing{true, true, true}));
    EXPECT_EQ(files::missingInBackup({}, {"0000000000000001"}), Missing{});
}

TEST(BackupPlan, NamesAreComparedWithTheirLetterCase) {
    const auto records = recordsOf({"000000000000000A", "000000000000000b"});
    EXPECT_EQ(files::missingInBackup(records, {"000000000000000a", "000000000000000b"}),
              (std::vector<bool>{true, false}));
}

TEST(BackupPlan, ANameThatStandsTwiceIsMissingTwice) {
    const auto records = recordsOf({"0000000000000001", "0000000000000001"});
    EXPECT_EQ(files::missingInBackup(records, {}), (std::vector<bool>{true, true}));
}

TEST(BackupPlan, ALineIsMarkNameAndDescription) {
    device::DictionaryRecord record;
    record.fileName = "0000000000000001";
    record.description = "Berg";
    EXPECT_EQ(files::backupLine(files::BackupMark::present, record), "* 0000000000000001 Berg");
    EXPECT_EQ(files::backupLine(files::BackupMark::copied, record), "+ 0000000000000001 Berg");
    EXPECT_EQ(files::backupLine(files::BackupMark::failed, {}), "-  ");
}

}  // namespace
