// The fixture of the shell's tests: every state of the program fresh, on an empty directory.
#pragma once

#include "app/app_state.h"
#include "charts/chart_state.h"
#include "device/device_state.h"
#include "settings/settings_state.h"
#include "tests/stand_ins/stand_ins.h"

class AppTest : public stand_ins::StandInTest {
  protected:
    void SetUp() override {
        StandInTest::SetUp();
        app::state = {};
        charts::state = {};
        device::state = {};
        settings::state = {};
    }
};
