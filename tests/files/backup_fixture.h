// The backup copy to a stick that is there, and the report that it leaves.
#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "files/backup_copy.h"
#include "files/report_window.h"
#include "tests/files/report_test.h"

namespace files_tests {

inline constexpr const char* backupLegend =
    "* = Die Datei ist bereits vorhanden.\r"
    "+ = Die Datei wurde kopiert.\r"
    "- = Die Datei konnte nicht kopiert werden.\r";

class BackupCopy : public ReportTest {
  protected:
    void SetUp() override {
        ReportTest::SetUp();
        backup = directory / "stick" / "data" / "result" / "ergo_bike";
        std::filesystem::create_directories(backup);
        device::state.backupDirectory = backup.string() + "/";
    }

    void copy() {
        files::copyToBackup(700, [this] { ++tableChanges; });
    }

    // Copies and closes the report.
    void copyAndClose() {
        stand_ins::world.events.push_back(closeEvent(services::reportWindow));
        copy();
    }

    // The report without its legend.
    std::string lines() {
        const std::string text = report.controls[files::reportText].text;
        EXPECT_EQ(text.substr(0, std::string(backupLegend).size()), backupLegend);
        return text.substr(std::min(text.size(), std::string(backupLegend).size()));
    }

    static std::string line(char mark, std::uint64_t number) {
        return std::string(1, mark) + " " + nameOf(number) + " Training " + std::to_string(number) +
               "\r";
    }

    // An index of the backup that names these trainings, and nothing else.
    void useBackupIndex(const std::vector<device::DictionaryRecord>& records,
                        const std::string& strayBytes = "") {
        std::string bytes;
        for (const auto& record : records)
            bytes += device::encodeDictionaryRecord(record);
        writeBytes(backup / "dictionary.2", bytes + strayBytes);
    }

    std::filesystem::path backup;
};

}  // namespace files_tests
