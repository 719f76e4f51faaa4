// The fixture of the commands that show a report: it is kept as it was before the last event.
#pragma once

#include "tests/files/files_test.h"

namespace files_tests {

class ReportTest : public FilesTest {
  protected:
    void SetUp() override {
        FilesTest::SetUp();
        stand_ins::world.beforeEvent = [this](int) {
            const auto found = stand_ins::world.windows.find(services::reportWindow);
            if (found != stand_ins::world.windows.end()) report = found->second;
        };
    }

    stand_ins::WindowRecord report;
    int tableChanges = 0;
};

}  // namespace files_tests
