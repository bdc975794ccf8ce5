#!/usr/bin/env python3
"""Recordings that are uploaded while they are made, to a real server that stalls or dies.

ORMA_STALL_SECONDS: how long the server stands still in the middle of a take (3).
"""

import os
import signal
import time

from delivery import ftp_servers
from orma_e2e import SPEECH, check, equal, run_each, wait_for

STALL = float(os.environ.get("ORMA_STALL_SECONDS", "3"))


class Recording:
    """A take at real pace in a process of its own, so that things can happen meanwhile."""

    def __init__(self, desk, kind, seconds):
        self.process = desk.start("record", desk.path(f"{kind}.opr"), f"--{kind}", "--seconds",
                                  seconds, audio=f"virtual:in={SPEECH},pace=real")

    def end(self, expect, within):
        out, err = self.process.communicate(timeout=within)
        equal(self.process.returncode, expect, f"exit code ({out}{err})")
        return err

    def uploads(self, remote, least=1):
        """Waits until so many bytes are there."""
        wait_for(lambda: remote.exists() and remote.stat().st_size >= least, f"{remote.name}")
        check(self.process.poll() is None, "the recording has ended")


def references(desk, seconds):
    """The same sound, and two seconds more, as a WAV and an MP2 take without any network."""
    desk.set(LiveFtpAllowed=0)
    takes = {}
    for kind in ("wav", "mp2"):
        desk.record(f"plain_{kind}.opr", f"--{kind}", "--seconds", str(seconds + 2))
        takes[kind] = desk.path(f"plain_{kind}00.{kind}").read_bytes()
    return takes


def same_sound(path, kind, plain, seconds=None):
    """Byte for byte that of the plain take, but for the last period, which the stop has cut short.
    In MP2 at 64 kbit/s that is three frames and what the converter spreads."""
    take = path.read_bytes()
    head, second, end = (44, 88200, 4410) if kind == "wav" else (0, 8000, 5 * 192)
    length = len(take) - head
    if seconds:
        check(seconds * second <= length <= seconds * second + end, f"{path.name}: {length} bytes")
    check(length > end and len(take) <= len(plain), f"{path.name}: {length} bytes")
    check(take[head:-end] == plain[head:len(take) - end], f"{path.name} is not the sound")
    return take


def stalled_server(desk):
    """The server stands still in the middle of a take; both takes are whole in the end."""
    seconds = STALL + 4
    plain = references(desk, seconds)
    for kind, server_kind in (("wav", ftp_servers.Vsftpd), ("mp2", ftp_servers.Proftpd)):
        with server_kind() as server:
            desk.use(server.account(), LiveFtpAllowed=1, LiveFtpNewProjects=1)
            remote = server.root / f"{kind}00.mp2"
            take = Recording(desk, kind, seconds)
            take.uploads(remote)
            server.freeze()
            time.sleep(STALL)
            server.thaw()
            take.end(0, within=60 + STALL)
            local = same_sound(desk.path(f"{kind}00.{kind}"), kind, plain[kind], seconds)
            sent = same_sound(remote, "mp2", plain["mp2"], seconds)
            check(kind == "wav" or sent == local, "the remote file is the local one")


def server_gone(desk):
    """A server that dies ends the take, which is kept up to there and opens like any other."""
    plain = references(desk, 20)
    for kind in ("wav", "mp2"):
        with ftp_servers.Proftpd() as server:
            desk.use(server.account(), LiveFtpAllowed=1, LiveFtpNewProjects=1)
            remote = server.root / f"{kind}00.mp2"
            take = Recording(desk, kind, 20)
            take.uploads(remote, 12000)
            server.kill()
            error = take.end(1, within=30)
            check("The upload is not whole" in error, f"the user is told: {error}")
        same_sound(desk.path(f"{kind}00.{kind}"), kind, plain[kind])
        clips = desk.json("project", "show", desk.path(f"{kind}.opr"))["clips"]
        equal(len(clips), 1, "clips of the kept take")


def given_up(desk):
    """Ctrl-C while the rest is uploaded gives up the upload and never the take."""
    plain = references(desk, 3)
    with ftp_servers.Vsftpd() as server:
        desk.use(server.account(), LiveFtpAllowed=1, LiveFtpNewProjects=1)
        take = Recording(desk, "mp2", 3)
        take.uploads(server.root / "mp200.mp2", 0)
        server.freeze()
        level_file, journal = desk.path("mp200.jvu"), desk.path("mp200.rec")
        wait_for(lambda: level_file.exists() and not journal.exists(), "the end of the take")
        time.sleep(1)
        check(take.process.poll() is None, "the upload is waited for")
        take.process.send_signal(signal.SIGINT)
        error = take.end(1, within=10)
        check("given up" in error, f"the user is told: {error}")
        server.thaw()
    same_sound(desk.path("mp200.mp2"), "mp2", plain["mp2"], 3)


if __name__ == "__main__":
    run_each(stalled_server, server_gone, given_up)
