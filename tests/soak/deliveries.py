#!/usr/bin/env python3
"""Deliveries that break off at random bytes, in every way in turn. By FTP they are resumed until the
remote file is whole; of a mail either all arrives, or nothing and the user knows. Then servers that
freeze for longer than the program waits.

ORMA_BREAKS sets how many deliveries break on each server (50), ORMA_SEED repeats a run."""

import os
import random
import sys
import time
from collections import Counter
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "e2e"))
from deliver_mail import AT_STEP, INTERRUPTED, check_message, send  # noqa: E402
from delivery import SEED, Reporter, ftp_servers, mail_servers, proxies, run_all, scenarios  # noqa: E402
from orma_e2e import check, equal  # noqa: E402

BREAKS = int(os.environ.get("ORMA_BREAKS", "50"))
RESUME, STOP = ("--on-break", "resume"), ("--on-break", "stop")


def three_breaks(server, publish, at):
    """More than one accident in one delivery, the last at that byte."""
    with proxies.FtpProxy(server) as proxy:
        for byte, action in ((at // 3, proxy.cut_data), (at // 2, proxy.drop_control),
                             (at, proxy.drop_all)):
            proxy.when(byte, action)
        result = publish(server.account(proxy.port))
        proxy.check_fired()
        return result


def short_freeze(server, publish, at):
    return scenarios.freeze(server, publish, at, 1)


def short_stall(server, publish, at):
    return scenarios.stall(server, publish, at, 1)


def disk_for_a_while(server, publish, at):
    return scenarios.full_disk(server, publish, at, 1)


WAYS = (scenarios.cut_data, scenarios.end_data, scenarios.drop_control, scenarios.drop_all,
        scenarios.kill_and_restart, short_freeze, short_stall, disk_for_a_while, three_breaks)


def broken_uploads(kind):
    """Returns how many of each way ended whole."""
    dice = random.Random(f"{SEED} {kind.__name__}")
    whole = Counter()
    with Reporter() as reporter, kind(limit=3600) as server:
        stored = server.root / "talk.wav"
        for turn in range(BREAKS):
            way, at = WAYS[turn % len(WAYS)], dice.randint(1, reporter.size)
            what = f"{kind.__name__}, {way.__name__} at {at} of {reporter.size}"
            try:
                said = way(server, lambda account: reporter.publish(
                    account, *RESUME, expect=None, seconds=240), at)
            except AssertionError as error:
                raise AssertionError(f"{what}: {error}") from error
            equal(said, "", what)
            reporter.check_arrived(stored, what)
            whole[way.__name__] += 1
            stored.unlink()
    ways = ", ".join(f"{name} {count}" for name, count in whole.items())
    return f"{BREAKS} breaks, {whole.total()} files whole: {ways}"


def broken_mails(kind):
    dice = random.Random(f"{SEED} {kind.__name__}")
    failed = 0
    with Reporter(seconds=20) as reporter, kind(log_in=False, limit=3600) as server:
        for _ in range(BREAKS):
            at = dice.randrange(1, reporter.size * 4 // 3)
            with proxies.TcpProxy(server.port) as proxy:
                proxy.when(at, proxy.drop_all)
                reporter.use_mail("127.0.0.1", proxy.port)
                said = send(reporter, expect=1)
                proxy.check_fired()
                check(said in {INTERRUPTED, *AT_STEP.values()}, f"dropped at {at}: {said!r}")
                failed += 1
        reporter.use_mail("127.0.0.1", server.port)
        equal(send(reporter), "", "without an accident")
        arrived = server.wait_for_messages(1)
        equal(len(arrived), 1, "mails that arrived")
        check_message(reporter, arrived[0], kind.__name__)
    return f"{failed} mails broken off, all told and none delivered; the next one whole"


def frozen_for_good(kind):
    """The program waits for 30 s until a byte moves, and says so. The file is longer than all that
    the system holds of it on its way."""
    with Reporter(seconds=600) as reporter, kind() as server:
        began = time.monotonic()
        said = scenarios.freeze(server, lambda account: reporter.publish(
            account, *STOP, expect=1, seconds=150), 1_000_000, 200)
        lasted = time.monotonic() - began
        check(said.startswith("Error: Timeout\n"), f"{kind.__name__}: {said!r}")
        check(29 < lasted < 55, f"{kind.__name__}: it took {lasted:.0f} s")
    return f"a server frozen for good: told after {lasted:.0f} s"


def frozen_for_long(kind):
    """It comes back after the time-out and finds the upload resumed."""
    with Reporter() as reporter, kind() as server:
        began = time.monotonic()
        said = scenarios.freeze(server, lambda account: reporter.publish(
            account, *RESUME, seconds=400), reporter.size // 2, 75)
        lasted = time.monotonic() - began
        equal(said, "", kind.__name__)
        reporter.check_arrived(server.root / "talk.wav", f"{kind.__name__}, frozen for 75 s")
        check(lasted > 70, f"{kind.__name__}: not frozen")
    return f"a server frozen for 75 s: whole after {lasted:.0f} s"


if __name__ == "__main__":
    ftp, mail = ftp_servers.FTP_SERVERS, mail_servers.MAIL_SERVERS
    run_all([(f"{kind.__name__} frozen", frozen_for_good, kind) for kind in ftp] +
            [(f"{kind.__name__} thawed", frozen_for_long, kind) for kind in ftp] +
            [(kind.__name__, broken_uploads, kind) for kind in ftp] +
            [(kind.__name__, broken_mails, kind) for kind in mail], workers=14)
