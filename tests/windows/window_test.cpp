#include "tests/windows/window_test.h"

#include "services/qt/toolkit_state.h"

void WindowTest::queueEvent(const services::Event& event) {
    services::qt::post(event);
}
