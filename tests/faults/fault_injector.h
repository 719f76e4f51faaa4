// System calls that fail on demand. Linked into a program, its definitions of the C library's file
// functions take the place of the real ones, for the standard library's callers as well.
//
// While armed every call is counted from 0, or every call of the names that the fault is for. The
// one of the fault's number (and all later ones, when it goes on) does what the fault says instead
// of its work.
#pragma once

#include <array>
#include <functional>
#include <string_view>

namespace fault_injector {

enum class FaultKind {
    none,
    kill,        // the process ends before the call does anything
    killMidway,  // a write gets half of its bytes to the file before the process ends
    fail,        // the call fails with `error` and does nothing
    shorten,     // a write or read moves half of its bytes; other calls work
    interrupt,   // `meanwhile` happens before the call, which then works
};

struct Fault {
    FaultKind kind = FaultKind::none;
    int at = 0;
    int error = 0;
    bool goesOn = false;
    // C functions that fail, as {"link", "rename"}; without names all of them.
    std::array<std::string_view, 2> names = {};
    std::function<void()> meanwhile = {};
};

// The exit status of a process that a fault has killed.
inline constexpr int killedStatus = 66;

void arm(const Fault& fault);

// From now on, armed or not, the file system has neither hard links nor renames that spare what is
// there, as those of many cards; until it is called with false.
void pretendPlainFileSystem(bool plain);

// From now on, armed or not, the file system calls itself one of the FAT family; until it is called
// with false.
void pretendFat(bool isFat);

// The same for one that is too full for another file; it takes what is written all the same.
void pretendFullDisk(bool isFull);

// The same for memory: every allocation is counted from 0, and the one of number `at` (and all
// later ones, when it goes on) finds none. Never with at = -1.
void armMemory(int at, bool goesOn);
int disarmMemory();

// Ends counting and faults. The number of calls since arming.
int disarm();

// Ends the process as a kill does, nothing unwound or flushed; only a build that counts what is run
// keeps its counts.
[[noreturn]] void leaveProcess(int status);

// The name of the C function that was call number `at` since arming.
const char* nameOfCall(int at);

// True when that call was a write.
bool wasWrite(int at);

}  // namespace fault_injector
