"""Runs one server and ends with it: `supervisor.py SECONDS UID COMMAND...`.

The server and all that it starts, daemons included, end when standard input closes (the test is
done, or was killed), when the server itself ends, or after SECONDS, whichever is first.
"""

import ctypes
import os
import select
import signal
import subprocess
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
    nobody = {"user": int(uid), "group": int(uid), "extra_groups": []} if os.getuid() == 0 else {}
    server = subprocess.Popen(command, stdin=subprocess.DEVNULL, start_new_session=True,
                              umask=0o022, **nobody)
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, signal.SIG_IGN)  # meant for the test, whose end is seen anyway
    end = time.monotonic() + float(seconds)
    while server.poll() is None and time.monotonic() < end:
        if select.select([0], [], [], 0.05)[0]:
            break
    while signal_all(os.getpid(), signal.SIGKILL):
        time.sleep(0.005)


if __name__ == "__main__":
    main(*sys.argv[1:])
