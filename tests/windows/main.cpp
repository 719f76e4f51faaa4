// Runs the window tests inside one toolkit without a screen.
#include <gtest/gtest.h>

#include <cstdlib>

#include "services/toolkit.h"

int main(int argumentCount, char** arguments) {
    // No screen, and the least German of all locales.
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("LC_ALL", "C", 1);
    testing::InitGoogleTest(&argumentCount, arguments);
    services::startToolkit(arguments[0]);
    const int result = RUN_ALL_TESTS();
    services::stopToolkit();
    return result;
}
