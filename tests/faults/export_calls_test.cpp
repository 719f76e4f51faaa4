// What an export asks of the disk before it says that the file was saved.
#include <gtest/gtest.h>

#include "device/device_state.h"
#include "export/csv_export.h"
#include "export/export_state.h"
#include "tests/faults/fault_injector.h"
#include "tests/stand_ins/stand_ins.h"

namespace {

using services::operator""_l1;
using stand_ins::world;

class ExportCalls : public stand_ins::StandInTest {
  protected:
    void SetUp() override {
        StandInTest::SetUp();
        device::state = {};
        exporting::state = {};
        world.anyMessageIsFine = true;
    }

    // How often the export asked for the disk, for the file and for its name; `chosen` is what the
    // user answers.
    static int flushes(void (*run)(), const char* name, const std::string& chosen) {
        world.saveFileAnswers.push_back(
            {services::Text("Name und Ort der CSV-Datei wählen"_l1), "", name, chosen});
        fault_injector::arm({.names = {"fsync"}});
        run();
        return fault_injector::disarm();
    }
};

TEST_F(ExportCalls, EveryExportWaitsForTheDisk) {
    const std::string path = (directory / "export.csv").string();
    EXPECT_EQ(flushes(exporting::exportIndex, "Dicitonary.csv", path), 2);
    device::state.samples.resize(2);
    exporting::state = {};
    EXPECT_EQ(flushes(exporting::exportTraining, "", path), 2);
}

}  // namespace
