#!/usr/bin/env python3
"""Publications to four real FTP servers, through breaks and refusals: what is stored is the
published file to the byte, or the user is told plainly why not.

ORMA_SEED repeats the cuts of a run; names of steps as arguments run these alone. ORMA_BREAKS adds so
many deliveries to each server that break in every way in turn, ORMA_PATIENCE=1 servers that freeze
for longer than the program waits (`./dev soak delivery`)."""

import os
import pty
import random
import signal
import threading
import time

from delivery import (SEED, Reporter, certificates, ftp_servers, proxies, run_all, scenarios,
                      scripted, without_ticks)
from orma_e2e import check, equal

BREAKS = int(os.environ.get("ORMA_BREAKS", "0"))
PATIENT = bool(os.environ.get("ORMA_PATIENCE"))
ASKED = "\nPublishing interrupted!: Resume publishing ?"
NOT_VERIFIED = ("Error: The publication is not verified: the server does not confirm the size of "
                "the file.")
REFUSED_OFFSET = "Error: Resume not possible on this server."

# The servers' own words begin so.
FULL_DISK = {"Vsftpd": "451", "PureFtpd": "451", "Proftpd": "451", "Pyftpdlib": "426"}
CANNOT_CREATE = {"Vsftpd": "553", "PureFtpd": "553", "Proftpd": "550", "Pyftpdlib": "550"}


class Published:
    """`publish` for the scenarios, with the remote file looked at and removed afterwards."""

    def __init__(self, reporter, server):
        self.reporter, self.server = reporter, server
        self.stored = server.root / "talk.wav"
        self.random = random.Random(f"{SEED} {type(server).__name__}")

    def somewhere(self):
        return self.random.randint(1, self.reporter.size)

    def whole(self, scenario, *arguments, options=(), **settings):
        """Through that accident the file arrives."""
        what = f"{type(self.server).__name__}, {scenario.__name__} {arguments}"
        said = scenario(self.server, lambda account: self.reporter.publish(
            account, *options, **settings), *arguments)
        equal(said, "", what)
        self.reporter.check_arrived(self.stored, what)
        self.stored.unlink()

    def refused(self, said, scenario, *arguments, options=("--on-break", "stop")):
        """Through that accident nothing else is claimed; what is said begins and ends so."""
        what = f"{type(self.server).__name__}, {scenario.__name__} {arguments}"
        got = scenario(self.server, lambda account: self.reporter.publish(
            account, *options, expect=1), *arguments)
        check(got.startswith(said) and got.endswith(ASKED), f"{what}: {got!r}, expected {said!r}")
        self.stored.unlink(missing_ok=True)


def no_accident(server, publish):
    return publish(server.account())


def longer_one_before(server, publish):
    """A longer file of that name lies there from yesterday."""
    (server.root / "talk.wav").write_bytes(b"yesterday" * 500_000)
    server.own()
    return publish(server.account())


def three_breaks(server, publish, at):
    """More than one accident in one delivery, the last at that byte."""
    with proxies.FtpProxy(server) as proxy:
        for byte, action in ((at // 3, proxy.cut_data), (at // 2, proxy.drop_control),
                             (at, proxy.drop_all)):
            proxy.when(byte, action)
        result = publish(server.account(proxy.port))
        proxy.check_fired()
        return result


def breaks_and_refusals(kind):
    name, resume = kind.__name__, ("--on-break", "resume")
    ways = ((scenarios.cut_data,), (scenarios.end_data,), (scenarios.drop_control,),
            (scenarios.drop_all,), (scenarios.kill_and_restart,), (three_breaks,),
            (scenarios.freeze, 1.5), (scenarios.stall, 1), (scenarios.full_disk, 2))
    with Reporter() as reporter, kind(limit=3600) as server:
        job = Published(reporter, server)
        reporter.use(server.account())
        equal(reporter.json("test-connection")["reachable"], True, f"{name}, connection test")
        reporter.use(server.account(folder="/nowhere"))
        done = reporter.run("test-connection", expect=1)
        check("not into the folder /nowhere 550" in done.stderr, f"{name}, folder: {done.stderr}")
        reporter.use(server.account())
        job.whole(no_accident)
        job.whole(longer_one_before)
        for turn in range(len(ways) + BREAKS):
            scenario, *seconds = ways[turn % len(ways)]
            job.whole(scenario, job.somewhere(), *seconds, options=resume, seconds=240)
        job.whole(scenarios.drop_control, reporter.size - 50, options=resume)  # inside the last chunk
        job.refused(f"Error: InternetWriteFile 12003 {FULL_DISK[name]}", scenarios.full_disk,
                    reporter.size // 3)
        job.refused("Error: InternetConnect 12003 530 ", scenarios.wrong_password)
        for refusal in (scenarios.missing_folder, scenarios.read_only):
            job.refused(f"Error: FtpOpenFile 12003 {CANNOT_CREATE[name]} ", refusal)
        equal(os.listdir(server.root), [], "what refused publications left behind")


def frozen_for_good(kind):
    """The program waits for 30 s until a byte moves, and says so. The file is longer than all that
    the system holds of it on its way."""
    with Reporter(seconds=600) as reporter, kind() as server:
        began = time.monotonic()
        said = scenarios.freeze(server, lambda account: reporter.publish(
            account, "--on-break", "stop", expect=1, seconds=150), 1_000_000, 200)
        lasted = time.monotonic() - began
        check(said.startswith("Error: Timeout\n"), f"{kind.__name__}: {said!r}")
        check(29 < lasted < 55, f"{kind.__name__}: it took {lasted:.0f} s")


def frozen_for_long(kind):
    """It comes back after the time-out and finds the upload resumed."""
    with Reporter() as reporter, kind() as server:
        Published(reporter, server).whole(scenarios.freeze, reporter.size // 2, 75, seconds=400,
                                          options=("--on-break", "resume"))


def refused_offsets():
    with Reporter() as reporter:
        for scenario, kinds in ((scenarios.refuse_rest, (ftp_servers.Vsftpd, ftp_servers.Pyftpdlib)),
                                (scenarios.rest_then_stor_refused, (ftp_servers.Proftpd,))):
            for kind in kinds:
                said = scenario(kind, lambda account: reporter.publish(
                    account, "--on-break", "resume", expect=1), reporter.size // 2)
                equal(said, REFUSED_OFFSET, f"{kind.__name__}, {scenario.__name__}")


def question():
    """At a terminal the user is asked, and his Yes makes the file whole."""
    with Reporter() as reporter, ftp_servers.Vsftpd() as server:
        for answer, code in ((b"y\n", 0), (b"n\n", 1)):
            terminal, shell = pty.openpty()
            os.write(terminal, answer)

            def publish(account):
                reporter.use(account)
                job = reporter.start("publish", reporter.project, "--cliplist", "--to", "ftp",
                                     stdin=shell)
                said = job.communicate(timeout=60)[1]
                equal(job.returncode, code, f"exit code, {said}")
                return said

            said = scenarios.cut_data(server, publish, reporter.size // 2)
            os.close(terminal)
            os.close(shell)
            check(said.startswith("Error: ") and said.strip().endswith(ASKED + "\n[y/N]"),
                  f"the question: {said!r}")
            stored = server.root / "talk.wav"
            if code == 0:
                reporter.check_arrived(stored, "after a Yes")
            else:
                check(stored.stat().st_size < reporter.size, "a No, yet the file is whole")


def other_ways():
    """Active data connections, a folder, companions, sound that is encoded on the way."""
    with Reporter() as reporter, ftp_servers.Pyftpdlib() as server:
        (server.root / "news").mkdir()
        server.own()
        picture = reporter.path("quay.jpg")
        picture.write_bytes(random.Random(SEED).randbytes(70_001))
        said = reporter.publish(server.account(folder="news"), "--image", picture, FtpPassive=0)
        equal(said, "", "active, with an image")
        reporter.check_arrived(server.root / "news/talk.wav", "active")
        equal((server.root / "news/talk_01.jpg").read_bytes(), picture.read_bytes(), "the image")
        fast = reporter.publish(server.account(), "--fast")
        equal(fast, "", "a fast publication")
        reporter.run("verify", server.root / "talk.wav")
    with Reporter(wav=True) as reporter, ftp_servers.Vsftpd() as server:
        stored = server.root / "talk.wav"
        equal(reporter.publish(server.account(), seconds=60), "", "a WAV project")
        reporter.run("verify", stored)
        half = stored.stat().st_size // 2
        said = scenarios.cut_data(server, lambda account: reporter.publish(
            account, "--on-break", "resume", expect=1), half)
        equal(said, "Error: Publishing interrupted!", "a WAV project cannot go on")
        said = scenarios.cut_data(server, lambda account: reporter.publish(
            account, "--on-break", "stop", expect=1), half)
        check(said.startswith("Error: InternetWriteFile 12003 426 "), f"why it broke: {said!r}")


def broken_image():
    """The sound is there; an image that breaks off is named, and so is its reason."""
    with Reporter() as reporter, ftp_servers.Proftpd() as server:
        picture = reporter.path("quay.jpg")
        picture.write_bytes(bytes(3_000_000))
        said = scenarios.cut_data(server, lambda account: reporter.publish(
            account, "--image", picture, expect=1), reporter.size + 1_000_000)
        equal(said, "Error: InternetWriteFile 12003 426 Transfer aborted. Data connection closed\n"
                    "Error: Not published: talk_01.jpg", "an image that broke off")
        reporter.check_arrived(server.root / "talk.wav", "before a broken image")


def cancelled():
    """Ctrl-C is heard also while a frozen server is waited for, and its upload given up."""
    with Reporter(seconds=300) as reporter, ftp_servers.PureFtpd() as server, \
            proxies.FtpProxy(server) as proxy:
        reporter.use(server.account(proxy.port))
        frozen = threading.Event()
        proxy.when(500_000, lambda: (proxy.freeze(), frozen.set()))
        job = reporter.start("publish", reporter.project, "--cliplist", "--to", "ftp",
                             "--on-break", "resume")
        check(frozen.wait(60), "the upload never began")
        time.sleep(1)
        job.send_signal(signal.SIGINT)
        began = time.monotonic()
        said = job.communicate(timeout=60)[1]
        check(time.monotonic() - began < 25, "a cancelled job went on")
        equal((job.returncode, said.strip()),
              (1, "Info: Publishing was cancelled. The publication is incomplete."), "Ctrl-C")
        proxy.thaw()


def unconfirmed():
    """What the server does not confirm is not called published."""
    with Reporter(seconds=6) as reporter:
        for replies, said in (  # a size that never grows is a reason to go on only once
                ({"stored": b"250-in its\r\n250 own way\r\n"}, ""),
                ({"SIZE": b"500 what?\r\n"}, ""),
                ({"SIZE": b"213 1000\r\n"}, NOT_VERIFIED),
                ({"SIZE": b"213 4000000000\r\n"}, NOT_VERIFIED),
                ({"stored": b"225 the connection is open\r\n"}, "Error: Connection lost" + ASKED),
                ({"stored": scripted.drop}, "Error: Connection lost" + ASKED),
                ({"stored": b"552 quota\r\n"},
                 "Error: InternetWriteFile 12003 552 quota" + ASKED)):
            with scripted.ScriptedFtp(replies) as server:
                account = ftp_servers.Account("127.0.0.1", server.port, "any", "secret", "")
                options = ("--on-break", "resume" if said == NOT_VERIFIED else "stop")
                equal(reporter.publish(account, *options, expect=1 if said else 0), said,
                      f"{replies}")
                check(without_ticks(bytes(server.files["talk.wav"])) == reporter.wanted, "the bytes")


def protected(kind, certs):
    with Reporter() as reporter:
        for mode, security in (("explicit", 1), ("implicit", 2)):
            what = f"{kind.__name__} {mode}"
            tls = {"security": security, "ca": certs.ca}
            with kind(tls=mode, certificate=certs.good) as server:
                here, stored = server.account(host="localhost"), server.root / "talk.wav"
                equal(reporter.publish(here, **tls), "", what)
                reporter.check_arrived(stored, what)
                stored.unlink()
                said = scenarios.full_disk(server, lambda _: reporter.publish(
                    here, "--on-break", "resume", **tls), reporter.size // 2, 2)
                equal(said, "", f"{what}, a disk that was full")
                reporter.check_arrived(stored, f"{what}, resumed")
                equal(reporter.publish(here, security=security, expect=1),
                      "Error: Certificate of the server is not trusted." + ASKED, what)
            for certificate, text in ((certs.wrong_host, "Certificate is for another server name."),
                                      (certs.expired, "Certificate of the server is expired.")):
                with kind(tls=mode, certificate=certificate) as server:
                    equal(reporter.publish(server.account(host="localhost"), expect=1, **tls),
                          f"Error: {text}{ASKED}", what)
                    equal(os.listdir(server.root), [], "what was sent all the same")
            with kind() as server:
                equal(reporter.publish(server.account(host="localhost"), expect=1, **tls),
                      "Error: No TLS connection with the server." + ASKED, f"{what}, no TLS")
            with scripted.ScriptedFtp() as server:
                account = ftp_servers.Account("localhost", server.port, "any", "secret", "")
                equal(reporter.publish(account, expect=1, **tls),
                      "Error: No TLS connection with the server." + ASKED, f"{what}, no TLS")
                check(server.said and not any("USER" in s or "PASS" in s for s in server.said),
                      f"what went in clear text: {server.said}")


def main():
    with Reporter(seconds=3) as folder:
        certs = certificates.Certificates(folder.path("certificates"))
        run_all([(kind.__name__, breaks_and_refusals, kind) for kind in ftp_servers.FTP_SERVERS] +
                [("offsets", refused_offsets), ("question", question), ("ways", other_ways),
                 ("unconfirmed", unconfirmed), ("image", broken_image), ("cancel", cancelled)] +
                [(f"{kind.__name__} TLS", protected, kind, certs)
                 for kind in (ftp_servers.Vsftpd, ftp_servers.Proftpd)] +
                [(f"{kind.__name__}, {step.__name__}", step, kind) for kind in ftp_servers.FTP_SERVERS
                 for step in (frozen_for_good, frozen_for_long) if PATIENT])


if __name__ == "__main__":
    main()
