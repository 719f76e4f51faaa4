// Being told to end in the middle of an action that had better come to a stop of its own.
#pragma once

namespace services {

// A signal that ends programs (SIGTERM, SIGINT, SIGHUP) ends this one at once, but from here on it
// is only noted. The second one of its kind ends it nevertheless; one that was ignored stays
// ignored.
void putOffEndings();

// Ends putting off. The process ends here, by the signal, if one came meanwhile.
void endIfAsked();

// The platform wants the program to quit, as when the desktop session ends. Its windows are closed
// one after the other then, the main window in the end.
void askForQuit();
bool isQuitAsked();
void forgetQuit();

// True when an action had better come to a stop: a signal came since, or quitting is asked for.
bool isEndingAsked();

}  // namespace services
