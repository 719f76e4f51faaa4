#include "app/event_loop.h"
#include "app/startup.h"
#include "services/disk/directories.h"
#include "services/disk/memory.h"
#include "services/toolkit.h"

int main(int, char** arguments) {
    services::startToolkit(arguments[0]);
    bool started = false;
    // Short of memory already: there is nothing yet to go on with.
    const bool complete = services::withinMemory(
        [&started] { started = app::startUp(services::executableDirectory()); });
    if (complete && started) app::runEventLoop();
    services::stopToolkit();
    return complete ? 0 : 1;
}
