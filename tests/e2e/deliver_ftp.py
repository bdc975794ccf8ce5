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

from delivery import (SEED, Reporter, certificates, ftp_servers, proxies, run_all, scripted,
                      without_ticks)
from orma_e2e import check, equal

BREAKS = int(os.environ.get("ORMA_BREAKS", "0"))
PATIENT = bool(os.environ.get("ORMA_PATIENCE"))
ASKED = "\nPublishing interrupted!: Resume publishing ?"
NOT_VERIFIED = ("Error: The publication is not verified: the server does not confirm the size of "
                "the file.")
REFUSED_OFFSET = "Error: Resume not possible on this server."
RESUME, STOP = ("--on-break", "resume"), ("--on-break", "stop")

# The servers' own words begin so where the disk is full, and where no file can be made.
FULL_DISK = {"Vsftpd": "451", "PureFtpd": "451", "Proftpd": "451", "Pyftpdlib": "426"}
CANNOT_CREATE = {"Vsftpd": "553", "PureFtpd": "553", "Proftpd": "550", "Pyftpdlib": "550"}


# The accidents: each happens, or begins, after `at` uploaded bytes.

def by_the_proxy(name):
    return lambda server, proxy, at: proxy.when(at, getattr(proxy, name))


def three_breaks(server, proxy, at):
    proxy.when(at // 3, proxy.cut_data)
    proxy.when(at // 2, proxy.drop_control)
    proxy.when(at, proxy.drop_all)


def kill_and_restart(server, proxy, at):
    proxy.when(at, lambda: (server.kill(), proxy.later(0.5, server.start)))


def freeze(server, proxy, at):
    proxy.when(at, lambda: (server.freeze(), proxy.later(1.5, server.thaw)))


def freeze_for_good(server, proxy, at):
    proxy.when(at, server.freeze)


def stall(server, proxy, at):
    """The network stands still, the server does not."""
    proxy.when(at, lambda: (proxy.freeze(), proxy.later(1, proxy.thaw)))


def full_disk(server, proxy, at):
    server.fill_disk(at)
    proxy.later(2, server.free_disk)


CUT, END, DROP_CONTROL, DROP_ALL = map(by_the_proxy,
                                       ("cut_data", "end_data", "drop_control", "drop_all"))
ACCIDENTS = (CUT, END, DROP_CONTROL, DROP_ALL, kill_and_restart, three_breaks, freeze, stall,
             full_disk)


def publish_through(accident, at, reporter, server, *options, **more):
    with proxies.FtpProxy(server.port) as proxy:
        accident(server, proxy, at)
        said = reporter.publish(server.account(proxy.port), *options, **more)
        proxy.check_fired()
        return said


def breaks_and_refusals(kind):
    name = kind.__name__
    places = random.Random(f"{SEED} {name}")
    with Reporter() as reporter, kind() as server:
        account, stored = server.account(), server.root / "talk.wav"

        def arrives(said, what):
            equal(said, "", f"{name}, {what}")
            reporter.check_arrived(stored, f"{name}, {what}")
            stored.unlink()

        def refused(begin, account, what):
            said = reporter.publish(account, *STOP, expect=1)
            check(said.startswith(begin) and said.endswith(ASKED), f"{name}, {what}: {said!r}")
            stored.unlink(missing_ok=True)

        reporter.use(account)
        equal(reporter.json("test-connection")["reachable"], True, f"{name}, connection test")
        reporter.use(server.account(folder="/nowhere"))
        done = reporter.run("test-connection", expect=1)
        check("not into the folder /nowhere 550" in done.stderr, f"{name}, folder: {done.stderr}")
        arrives(reporter.publish(account), "no accident")
        stored.write_bytes(b"yesterday" * 500_000)
        server.own()
        arrives(reporter.publish(account), "a longer one of that name")
        for turn in range(len(ACCIDENTS) + BREAKS):
            accident, at = ACCIDENTS[turn % len(ACCIDENTS)], places.randint(1, reporter.size)
            arrives(publish_through(accident, at, reporter, server, *RESUME, seconds=240),
                    f"accident {turn} at {at}")
        arrives(publish_through(DROP_CONTROL, reporter.size - 50, reporter, server, *RESUME),
                "a break inside the last chunk")
        server.fill_disk(reporter.size // 3)
        refused(f"Error: InternetWriteFile 12003 {FULL_DISK[name]}", account, "a full disk")
        server.free_disk()
        refused("Error: InternetConnect 12003 530 ",
                server.account(password="not " + server.password), "a wrong password")
        cannot_create = f"Error: FtpOpenFile 12003 {CANNOT_CREATE[name]} "
        refused(cannot_create, server.account(folder=account.folder.rstrip("/") + "/no/such/folder"),
                "a missing folder")
        server.root.chmod(0o555)
        refused(cannot_create, account, "a read-only folder")
        equal(os.listdir(server.root), [], "what refused publications left behind")


def frozen_for_good(kind):
    """The program waits for 30 s until a byte moves, and says so. The file is longer than all that
    the system holds of it on its way."""
    with Reporter(seconds=600) as reporter, kind() as server:
        began = time.monotonic()
        said = publish_through(freeze_for_good, 1_000_000, reporter, server, *STOP, expect=1,
                               seconds=150)
        lasted = time.monotonic() - began
        check(said.startswith("Error: Timeout\n"), f"{kind.__name__}: {said!r}")
        check(29 < lasted < 55, f"{kind.__name__}: it took {lasted:.0f} s")


def refused_offsets():
    with Reporter() as reporter:
        for kind, rest in ((ftp_servers.Vsftpd, "refused"), (ftp_servers.Proftpd, "stor-refused"),
                           (ftp_servers.Pyftpdlib, "refused")):
            with kind(rest=rest) as server:
                equal(publish_through(CUT, reporter.size // 2, reporter, server, *RESUME, expect=1),
                      REFUSED_OFFSET, f"{kind.__name__}, {rest}")


def question():
    """At a terminal the user is asked, and his Yes makes the file whole."""
    with Reporter() as reporter, ftp_servers.Vsftpd() as server:
        stored = server.root / "talk.wav"
        for answer, code in ((b"y\n", 0), (b"n\n", 1)):
            terminal, shell = pty.openpty()
            os.write(terminal, answer)
            with proxies.FtpProxy(server.port) as proxy:
                proxy.when(reporter.size // 2, proxy.cut_data)
                reporter.use(server.account(proxy.port))
                job = reporter.start_publishing(stdin=shell)
                said = job.communicate(timeout=60)[1]
            os.close(terminal)
            os.close(shell)
            equal(job.returncode, code, f"exit code, {said}")
            check(said.startswith("Error: ") and said.strip().endswith(ASKED + "\n[y/N]"),
                  f"the question: {said!r}")
            if code == 0:
                reporter.check_arrived(stored, "after a Yes")
            else:
                check(stored.stat().st_size < reporter.size, "a No, yet the file is whole")


def other_ways():
    """Active data connections, a folder, companions, sound that is encoded on the way."""
    with Reporter() as reporter, ftp_servers.Vsftpd() as server:
        (server.root / "news").mkdir()
        server.own()
        picture = reporter.path("quay.jpg")
        picture.write_bytes(random.Random(SEED).randbytes(70_001))
        said = reporter.publish(server.account(folder="news"), "--image", picture, FtpPassive=0)
        equal(said, "", "active, with an image")
        reporter.check_arrived(server.root / "news/talk.wav", "active")
        equal((server.root / "news/talk_01.jpg").read_bytes(), picture.read_bytes(), "the image")
        equal(reporter.publish(server.account(), "--fast"), "", "a fast publication")
        reporter.run("verify", server.root / "talk.wav")
    with Reporter(wav=True) as reporter, ftp_servers.Vsftpd() as server:
        stored = server.root / "talk.wav"
        equal(reporter.publish(server.account(), seconds=60), "", "a WAV project")
        reporter.run("verify", stored)
        half = stored.stat().st_size // 2
        equal(publish_through(CUT, half, reporter, server, *RESUME, expect=1),
              "Error: Publishing interrupted!", "a WAV project cannot go on")


def cancelled():
    """Ctrl-C is heard also while a frozen server is waited for, and its upload given up."""
    with Reporter(seconds=300) as reporter, ftp_servers.PureFtpd() as server, \
            proxies.FtpProxy(server.port) as proxy:
        reporter.use(server.account(proxy.port))
        frozen = threading.Event()
        proxy.when(500_000, lambda: (proxy.freeze(), frozen.set()))
        job = reporter.start_publishing(*RESUME)
        check(frozen.wait(60), "the upload never began")
        time.sleep(1)
        job.send_signal(signal.SIGINT)
        began = time.monotonic()
        said = job.communicate(timeout=60)[1]
        check(time.monotonic() - began < 25, "a cancelled job went on")
        equal((job.returncode, said.strip()),
              (1, "Info: Publishing was cancelled. The publication is incomplete."), "Ctrl-C")


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
                options = RESUME if said == NOT_VERIFIED else STOP
                equal(reporter.publish(server.account(), *options, expect=1 if said else 0), said,
                      f"{replies}")
                check(without_ticks(bytes(server.files["talk.wav"])) == reporter.wanted, "the bytes")


def protected(kind, certs):
    with Reporter() as reporter:
        for mode, security in (("explicit", 1), ("implicit", 2)):
            what = f"{kind.__name__} {mode}"
            tls = {"security": security, "ca": certs.ca}

            def refused(text, account, ca=certs.ca):
                equal(reporter.publish(account, expect=1, security=security, ca=ca),
                      f"Error: {text}{ASKED}", what)

            with kind(tls=mode, certificate=certs.good) as server:
                here, stored = server.account(host="localhost"), server.root / "talk.wav"
                equal(reporter.publish(here, **tls), "", what)
                reporter.check_arrived(stored, what)
                stored.unlink()
                server.fill_disk(reporter.size // 2)
                threading.Timer(2, server.free_disk).start()
                equal(reporter.publish(here, *RESUME, **tls), "", f"{what}, a disk that was full")
                reporter.check_arrived(stored, f"{what}, resumed")
                refused("Certificate of the server is not trusted.", here, ca="")
            for certificate, text in ((certs.wrong_host, "Certificate is for another server name."),
                                      (certs.expired, "Certificate of the server is expired.")):
                with kind(tls=mode, certificate=certificate) as server:
                    refused(text, server.account(host="localhost"))
                    equal(os.listdir(server.root), [], "what was sent all the same")
            with scripted.ScriptedFtp() as server:
                refused("No TLS connection with the server.", server.account(host="localhost"))
                check(server.said and not any("USER" in s or "PASS" in s for s in server.said),
                      f"what went in clear text: {server.said}")


def main():
    with Reporter(seconds=3) as folder:
        certs = certificates.Certificates(folder.path("certificates"))
        run_all([(kind.__name__, breaks_and_refusals, kind) for kind in ftp_servers.FTP_SERVERS] +
                [("offsets", refused_offsets), ("question", question), ("ways", other_ways),
                 ("unconfirmed", unconfirmed), ("cancel", cancelled)] +
                [(f"{kind.__name__} TLS", protected, kind, certs)
                 for kind in (ftp_servers.Vsftpd, ftp_servers.Proftpd)] +
                [(f"{kind.__name__} frozen", frozen_for_good, kind)
                 for kind in ftp_servers.FTP_SERVERS if PATIENT])


if __name__ == "__main__":
    main()
