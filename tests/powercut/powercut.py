#!/usr/bin/env python3
"""Cuts the power of a recorded disk at every moment, and has the program start on what is left.

Commands run in a user-mode Linux, with the real drivers of FAT and ext4, on a disk that records every
write. Each state in which a cut may leave the disk is mounted again, as it is and once more after a
check of the file system. There the program starts twice, does the command again, and starts twice
again. See docs/reliability.md.
"""

import argparse
import collections
import ctypes
import os
import pathlib
import random
import shutil
import struct
import subprocess
import sys
import tempfile
import threading
import time

import recording as recordings

KERNEL = "linux.uml"
MEGABYTE = 1 << 20
HOWS = ("as-is", "checked")
FileSystem = collections.namedtuple("FileSystem", "megabytes unit at_most make blocks hows",
                                    defaults=[None, HOWS])
EXT4 = ["mke2fs", "-q", "-F", "-t", "ext4", "-b", "4096", "-N", "64", "-E",
        "root_owner=1000:1000,lazy_itable_init=0,lazy_journal_init=0"]
# Small disks, as each state writes the whole disk. FAT16 is what has at least 4085 clusters; of FAT32
# Linux asks for no number. A cut tears nothing within `unit` bytes: cards write 512 at least, what has
# ext4 on it 4096. Without --at-most so many states of each recording are tried.
FILE_SYSTEMS = {
    "fat16": FileSystem(5, 512, None, ["mkfs.vfat", "-F", "16", "-s", "2", "-n", "KARTE"]),
    "fat32": FileSystem(4, 512, None, ["mkfs.vfat", "-F", "32", "-s", "1", "-n", "KARTE"]),
    "ext4": FileSystem(9, 4096, 100, EXT4),
    # Its fsync does not flush the disk's cache when the kernel has written the file back before. So
    # this disk has none: what a returned fsync covers is there. The last block is the recorder's. And
    # after a cut it is mounted only when it has been checked.
    "ext4-no-journal": FileSystem(4, 4096, 100, [*EXT4, "-O", "^has_journal"], 1023, ["checked"]),
}
PACES = ("quick", "slow")
# Mistakes put in on purpose, and where each must show (meddling.h).
MISTAKES = (
    ("no-flush", "settings-over", "ext4"),
    ("no-flush", "renumber-gaps", "fat32"),
    ("no-flush-after-rename", "settings-over", "fat16"),
    ("no-flush-after-rename", "backup-new", "fat32"),
    ("no-directory-flush", "settings-over", "ext4"),
    ("index-in-place", "delete-some", "fat16"),
    ("index-in-place", "renumber-crossed", "fat32"),
    ("leftover-deleted", "backup-new", "fat16"),
)
# The guest's kernel does not keep the wide registers of its processes.
NARROW = ("glibc.cpu.hwcaps=-AVX,-AVX2,-AVX_Fast_Unaligned_Load,-AVX512F,-AVX512VL,-AVX512BW,"
          "-XSAVEC")
SECONDS_WITHOUT_A_WORD = 180


def refuse_wide_registers():
    """That kernel was made for processors with fewer registers, and ends itself when the host hands
    over all of them. A host that does not know how to makes it content with the old ones: the
    request PTRACE_GETREGSET fails from now on."""
    ptrace, getregset, einval = 101, 0x4204, 22
    load, equal, give = 0x20, 0x15, 0x06
    allow, error = 0x7FFF0000, 0x00050000
    program = b"".join(struct.pack("<HBBI", *line) for line in (
        (load, 0, 0, 0), (equal, 0, 3, ptrace),
        (load, 0, 0, 16), (equal, 0, 1, getregset),
        (give, 0, 0, error | einval), (give, 0, 0, allow)))
    code = ctypes.create_string_buffer(program, len(program))
    filter_ = ctypes.create_string_buffer(struct.pack("@HP", len(program) // 8,
                                                      ctypes.addressof(code)))
    libc = ctypes.CDLL(None, use_errno=True)
    no_new_privileges, set_seccomp, by_filter = 38, 22, 2
    if libc.prctl(no_new_privileges, 1, 0, 0, 0) != 0 or \
            libc.prctl(set_seccomp, by_filter, ctypes.byref(filter_)) != 0:
        raise OSError(ctypes.get_errno(), "no filter of system calls")


class Guest(threading.Thread):
    """One user-mode Linux that does these jobs; `tell` gets what it answers, word by word."""

    def __init__(self, options, number, jobs, tell):
        super().__init__()
        self.options, self.number, self.jobs, self.tell = options, number, jobs, tell
        self.done = False
        self.error = None

    def run(self):
        work = self.options.work
        (work / f"jobs.{self.number}").write_text("".join(f"{job}\n" for job in self.jobs))
        place = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
        with tempfile.TemporaryDirectory(dir=place, prefix="powercut.") as memory, \
                open(work / f"console.{self.number}", "w") as console:
            process = subprocess.Popen(
                [KERNEL, "mem=256M", "root=/dev/root", "rootfstype=hostfs", "rootflags=/", "ro",
                 "quiet", "loglevel=1", f"init={self.options.guest}", "con=null", "con0=null,fd:1",
                 f"uml_dir={memory}/", f"powercut_directory={work}",
                 f"powercut_jobs=jobs.{self.number}", f"powercut_mistake={self.options.mistake}",
                 f"GLIBC_TUNABLES={NARROW}"],
                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                env=dict(os.environ, TMPDIR=memory), preexec_fn=refuse_wide_registers,
                text=True, errors="replace", start_new_session=True)
            watch = Watch(process)
            for line in process.stdout:
                watch.heard()
                console.write(line)
                if line.startswith("@error"):
                    self.error = line[1:].strip()
                elif line.startswith("@done"):
                    self.done = True
                elif line.startswith("@"):
                    self.tell(line[1:].split())
            process.wait()
            watch.end()
        if not self.done and self.error is None:
            self.error = f"the guest ended; see {work}/console.{self.number}"


class Watch:
    """Ends a guest that says nothing any more, with the processes that are its own."""

    def __init__(self, process):
        self.process, self.last, self.over = process, time.monotonic(), threading.Event()
        threading.Thread(target=self.look, daemon=True).start()

    def heard(self):
        self.last = time.monotonic()

    def end(self):
        self.over.set()

    def look(self):
        while not self.over.wait(5):
            if time.monotonic() - self.last > SECONDS_WITHOUT_A_WORD:
                os.killpg(self.process.pid, 9)
                return


def run_guests(options, jobs, tell):
    """Shares the jobs out; each guest gets every n-th."""
    lock = threading.Lock()

    def tell_one(words):
        with lock:
            tell(words)

    count = min(options.guests, len(jobs))
    guests = [Guest(options, number, jobs[number::count], tell_one) for number in range(count)]
    for guest in guests:
        guest.start()
    for guest in guests:
        guest.join()
    errors = [guest.error for guest in guests if guest.error]
    if errors:
        raise SystemExit("\n".join(errors))


def can_run():
    """Why no user-mode Linux runs here, or nothing."""
    if shutil.which(KERNEL) is None:
        return f"{KERNEL} is not installed"
    if os.uname().machine != "x86_64":
        return f"{KERNEL} runs on x86_64 only"
    try:
        # An init that does not exist: it comes to the end of its start, and panics.
        with tempfile.TemporaryDirectory() as memory:
            shown = subprocess.run(
                [KERNEL, "mem=64M", "root=/dev/root", "rootfstype=hostfs", "rootflags=/", "ro",
                 "init=/bin/true", "con=null", "con0=null,fd:1", "panic=1", f"uml_dir={memory}/"],
                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                preexec_fn=refuse_wide_registers, timeout=60, text=True, errors="replace",
                env=dict(os.environ, TMPDIR=memory), start_new_session=True)
    except (OSError, subprocess.SubprocessError) as error:
        return f"{KERNEL} does not start: {error}"
    if "Attempted to kill init! exitcode=0x00000000" not in shown.stdout:
        return f"{KERNEL} starts no program: {shown.stdout.strip().splitlines()[-1:]}"
    return None


def make_disks(options):
    for system in options.file_systems:
        image = options.work / f"{system}.img"
        with open(image, "wb") as file:
            file.truncate(FILE_SYSTEMS[system].megabytes * MEGABYTE)
        blocks = FILE_SYSTEMS[system].blocks
        made = subprocess.run([*FILE_SYSTEMS[system].make, image, *([str(blocks)] if blocks else [])],
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if made.returncode != 0:
            raise SystemExit(made.stdout)


def directory_of(options, system, command, pace):
    return options.work / f"{system}.{command}.{pace}"


def record(options):
    """Runs every command on every file system; each recording with its states."""
    make_disks(options)
    names = [(system, command, pace) for system in options.file_systems
             for command in options.commands for pace in options.paces]
    for name in names:
        directory = directory_of(options, *name)
        shutil.rmtree(directory, ignore_errors=True)
        directory.mkdir()
    run_guests(options, [f"record {' '.join(name)}" for name in names], lambda words: None)
    states = {}
    for name in names:
        directory = directory_of(options, *name)
        system = FILE_SYSTEMS[name[0]]
        recording = recordings.Recording(
            (directory / "log").read_bytes(), system.unit,
            system.megabytes * MEGABYTE // recordings.SECTOR if system.blocks else None)
        (directory / "log").unlink()
        (directory / "sectors").write_bytes(recording.bytes_of_sectors())
        found = recordings.states_of(recording, options.limit, options.seed)
        at_most = options.at_most or system.at_most
        if at_most and len(found) > at_most:
            found = random.Random(options.seed).sample(found, at_most)
        (directory / "states").write_text(
            "".join(f"{state} {int(finished)}\n" for state, finished in found))
        states[name] = found
        if not options.short:
            print(f"recorded {' '.join(name)}: {len(recording.sectors)} sectors,"
                  f" {recording.flushes()} flushes, {len(found)} states", flush=True)
    return states


class Results:
    """Verdicts by file system and command."""

    def __init__(self):
        self.counts = collections.defaultdict(collections.Counter)
        self.losses = collections.defaultdict(list)

    def add(self, words):
        _state, system, command, pace, state, moment, how, verdict, *why = words
        counts = self.counts[command, system]
        counts["tried"] += 1
        counts[verdict] += 1
        counts[moment] += 1
        if verdict == "lost":
            counts[f"lost {moment}"] += 1
            replay = f"{system} {command} {pace} {state} {how}"
            self.losses[command, system].append((len(state), moment, replay, " ".join(why)))

    def total(self, what):
        return sum(counts[what] for counts in self.counts.values())

    def print(self, shown, every=False):
        row = "{:<20} {:<16} {:>7} {:>9} {:>7} {:>7} {:>6} {:>9}"
        print("\n" + row.format("command", "file system", "tried", "finished", "whole", "kept",
                                "lost", "finished"))
        for (command, system), counts in self.counts.items():
            print(row.format(command, system, counts["tried"], counts["finished"], counts["whole"],
                             counts["kept"], counts["lost"], counts["lost finished"]))
        print(row.format("together", "", *map(self.total, (
            "tried", "finished", "whole", "kept", "lost", "lost finished"))))
        for (command, system), losses in self.losses.items():
            # By what comes first; the rest follows from it more often than not.
            if not every:
                losses = [(*loss, why.split(";")[0]) for *loss, why in losses]
            reasons = collections.Counter(
                (moment, why) for _length, moment, _replay, why in losses)
            print(f"\n{command} on {system}:")
            for (moment, why), count in reasons.most_common(shown):
                smallest = min(loss for loss in losses if (loss[1], loss[3]) == (moment, why))
                print(f"  {count} × {moment}: {why}\n    --replay '{smallest[2]}'")
            if len(reasons) > shown:
                print(f"  and {len(reasons) - shown} other reasons")


def try_states(options, states):
    results = Results()
    # Small pieces, so that all guests have something to do to the end.
    piece = 40
    wanted = HOWS if options.how == "both" else [options.how]
    jobs, total = [], 0
    for name, found in states.items():
        for how in (how for how in wanted if how in FILE_SYSTEMS[name[0]].hows):
            total += len(found)
            jobs += [f"try {' '.join(name)} {first} {first + piece} {how}"
                     for first in range(0, len(found), piece)]
    started = time.monotonic()

    def tell(words):
        results.add(words)
        tried = results.total("tried")
        if tried % 500 == 0:
            seconds = time.monotonic() - started
            print(f"{tried} of {total} tried, {tried / seconds:.1f} a second,"
                  f" {results.total('lost')} lost", flush=True)

    run_guests(options, jobs, tell)
    seconds = time.monotonic() - started
    results.print(options.shown)
    tried = results.total("tried")
    print(f"\n{tried} states in {seconds:.0f} seconds, {tried / seconds:.1f} a second")
    if tried != total:
        raise SystemExit(f"{total - tried} states were not tried")
    return results.total("lost")


def replay(options, line):
    """One state of the recordings that are there; everything that is lost in it."""
    system, command, pace, state, how = line.split()
    directory = directory_of(options, system, command, pace)
    for place, text in enumerate((directory / "states").read_text().splitlines()):
        if text.split()[0] == state:
            break
    else:
        raise SystemExit(f"no state {state} in {directory}")
    results = Results()
    run_guests(options, [f"try {system} {command} {pace} {place} {place + 1} {how}"], results.add)
    results.print(options.shown, every=True)
    return results.total("lost")


def try_mistakes(options):
    """Whether each mistake loses something where the program as it is loses nothing."""
    wrong = []
    places = dict.fromkeys((command, system) for _mistake, command, system in MISTAKES)
    for mistake, command, system in [*(("none", *place) for place in places), *MISTAKES]:
        options.mistake, options.commands, options.file_systems = mistake, [command], [system]
        name = f"{mistake}: {command} on {system}"
        print(f"\n{name}", flush=True)
        lost = try_states(options, record(options))
        if bool(lost) == (mistake == "none"):
            wrong.append(name)
    print("\nnot as it must be: " + ", ".join(wrong) if wrong else "\nall mistakes are caught")
    return len(wrong)


def parse(arguments):
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--guest", required=True, type=pathlib.Path, help="the built powercut_guest")
    parser.add_argument("--work", required=True, type=pathlib.Path, help="where recordings go")
    parser.add_argument("--commands", help="names, joined by commas; all without")
    parser.add_argument("--file-systems", default=",".join(FILE_SYSTEMS))
    parser.add_argument("--paces", default=",".join(PACES))
    parser.add_argument("--how", choices=("both", *HOWS), default="both")
    parser.add_argument("--limit", type=int, default=128,
                        help="about so many states of each span between two flushes")
    parser.add_argument("--at-most", type=int, metavar="STATES", help="of each recording")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--guests", type=int, default=os.cpu_count())
    parser.add_argument("--mistake", default="none", help="put in on purpose: see meddling.cpp")
    parser.add_argument("--mistakes", action="store_true", help="each must be caught")
    parser.add_argument("--shown", type=int, default=3, help="reasons told of each command")
    parser.add_argument("--replay", metavar="STATE", help="one state again, as a failure names it")
    parser.add_argument("--short", action="store_true",
                        help="a few states of each command; no failure where nothing can run")
    options = parser.parse_args(arguments)
    if options.short:
        options.file_systems, options.paces, options.at_most = "fat16,fat32", "quick", 20
    options.guest, options.work = options.guest.resolve(), options.work.resolve()
    known = subprocess.run([options.guest, "--commands"], check=True, text=True,
                           stdout=subprocess.PIPE).stdout.split()
    options.commands = options.commands.split(",") if options.commands else known
    options.file_systems = options.file_systems.split(",")
    options.paces = options.paces.split(",")
    for given, all_ in ((options.commands, known), (options.file_systems, FILE_SYSTEMS),
                        (options.paces, PACES)):
        for name in given:
            if name not in all_:
                parser.error(f"no {name}; there are: {', '.join(all_)}")
    return options


def main(arguments):
    options = parse(arguments)
    reason = can_run()
    if reason:
        print(f"power cuts are not tried: {reason}")
        return 0 if options.short else 1
    options.work.mkdir(parents=True, exist_ok=True)
    if options.replay:
        return 1 if replay(options, options.replay) else 0
    if options.mistakes:
        return 1 if try_mistakes(options) else 0
    return 1 if try_states(options, record(options)) else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
