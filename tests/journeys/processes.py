"""Starting and ending the processes of a journey, each by its own id, orphans included."""

import ctypes
import os
import signal
import subprocess
import time

PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36
prctl = ctypes.CDLL(None).prctl


def adopt_orphans():
    """Children of children whose parent ended become ours, so that they can be ended too."""
    prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def end_with_parent():
    """Whoever kills the journeys, as a time limit does, leaves nothing behind."""
    prctl(PR_SET_PDEATHSIG, signal.SIGTERM, 0, 0, 0)


def start(command, log, **options):
    """Starts `command` with its messages going to the file `log`."""
    with open(log, "ab") as messages:
        return subprocess.Popen(
            command,
            stdin=subprocess.DEVNULL,
            stdout=messages,
            stderr=subprocess.STDOUT,
            preexec_fn=end_with_parent,
            **options,
        )


def end(process, patience=5.0):
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(patience)
        except subprocess.TimeoutExpired:
            process.kill()
    process.wait()


def children():
    """The ids of this process's own children."""
    me = os.getpid()
    found = []
    for name in os.listdir("/proc"):
        if not name.isdigit():
            continue
        try:
            with open(f"/proc/{name}/stat", encoding="latin-1") as stat:
                fields = stat.read().rpartition(")")[2].split()
        except OSError:
            continue
        if int(fields[1]) == me:
            found.append(int(name))
    return found


def end_orphans(patience=5.0):
    """Ends what adopt_orphans brought here and nobody waits for; call it when all others ended."""
    deadline = time.monotonic() + patience
    while pids := children():
        number = signal.SIGTERM if time.monotonic() < deadline else signal.SIGKILL
        for pid in pids:
            try:
                os.kill(pid, number)
                os.waitpid(pid, os.WNOHANG)
            except (ProcessLookupError, ChildProcessError):
                pass
        time.sleep(0.02)
