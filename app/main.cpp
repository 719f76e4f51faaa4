#include "app/event_loop.h"
#include "app/startup.h"
#include "services/directories.h"
#include "services/toolkit.h"

int main(int, char** arguments) {
    services::startToolkit(arguments[0]);
    if (app::startUp(services::executableDirectory())) app::runEventLoop();
    services::stopToolkit();
    return 0;
}
