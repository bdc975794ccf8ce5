"""Runs one server and ends with it: `supervisor.py SECONDS UID COMMAND...`.

The server and all that it starts, daemons included, end when standard input closes (the test is
done, or was killed), when the server itself ends, or after SECONDS, whichever is first.
"""

import ctypes
import os
import select
import signal
import sys
import time
from pathlib import Path

PR_SET_CHILD_SUBREAPER = 36


def descendants(pid):
    """The living processes below pid."""
    parents = {}
    for stat in Path("/proc").glob("[0-9]*/stat"):
        try:
            state, parent = stat.read_text().rpartition(")")[2].split()[:2]
        except (OSError, ValueError):
            continue
        if state != "Z":
            parents.setdefault(int(parent), []).append(int(stat.parent.name))
    found, below = [], [pid]
    while below:
        below = [child for parent in below for child in parents.get(parent, [])]
        found += below
    return found


def signal_all(pid, number):
    """Sends a signal to every process below pid; true if there was one."""
    below = descendants(pid)
    for each in below:
        try:
            os.kill(each, number)
        except ProcessLookupError:
            pass
    return bool(below)


def main(seconds, uid, *command):
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, signal.SIG_IGN)  # meant for the test, whose end is seen anyway
    server = os.fork()
    if server == 0:
        for number in range(1, 32):
            if number not in (signal.SIGKILL, signal.SIGSTOP):
                signal.signal(number, signal.SIG_DFL)
        null = os.open(os.devnull, os.O_RDWR)
        os.dup2(null, 0)
        os.setsid()
        if os.getuid() == 0 and int(uid):
            os.setgroups([])
            os.setgid(int(uid))
            os.setuid(int(uid))
        os.umask(0o022)
        os.execv(command[0], command)
    end = time.monotonic() + float(seconds)
    running = True
    while running and time.monotonic() < end:
        if select.select([0], [], [], 0.05)[0]:
            break
        try:
            while (ended := os.waitpid(-1, os.WNOHANG)[0]) != 0:
                running = running and ended != server
        except ChildProcessError:
            break
    while signal_all(os.getpid(), signal.SIGKILL):
        time.sleep(0.005)


if __name__ == "__main__":
    main(*sys.argv[1:])
