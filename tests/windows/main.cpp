// Runs the window tests inside one toolkit on two screens that are not there: a main one and one of
// twice the density to its right.
#include <gtest/gtest.h>

#include <cstdlib>

#include "services/toolkit.h"

int main(int argumentCount, char** arguments) {
    // And in the least German of all locales.
    setenv("QT_QPA_PLATFORM", "offscreen:configfile=" WINDOW_TESTS_SCREENS, 1);
    setenv("LC_ALL", "C", 1);
    testing::InitGoogleTest(&argumentCount, arguments);
    services::startToolkit(arguments[0]);
    const int result = RUN_ALL_TESTS();
    services::stopToolkit();
    return result;
}
