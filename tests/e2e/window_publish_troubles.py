#!/usr/bin/env python3
"""Publications that go wrong, in the window: a stalled server and Cancel, a server that dies and
comes back, a recording that is gone, a window that is closed meanwhile. Each ends with the screen as
it was, nothing lost and nothing claimed, and the window records afterwards."""

import contextlib
import threading
import time

from delivery import Reporter, ftp_servers, proxies, run_all
from orma_e2e import SPEECH, check, wait_for
from window_desk import Window, display

SECONDS = 120  # of sound: more than the network's buffers hold


@contextlib.contextmanager
def window(reporter):
    """A window with the reporter's project on the editor's screen."""
    reporter.set(PublishToFile=1)
    with display() as screen, Window(screen, reporter.home, "--audio", f"virtual:in={SPEECH}",
                                     reporter.project) as user:
        user.pick("View", "Editor")
        user.start_looks = user.looks(reporter)
        yield user


def records(reporter, user):
    """The window is alive: it takes a take."""
    user.pick("View", "Record")
    user.click("Record")
    time.sleep(0.7)
    user.click("Play")
    time.sleep(1.5)
    user.click("Stop")
    wait_for(reporter.path("talk02.mp2").exists, "another take")


def unchanged(reporter, user, what):
    user.no_box()
    user.tool("key", "F9")  # with which a card that tells of success goes
    time.sleep(0.3)
    check(user.looks(reporter) == user.start_looks, f"{what}: the screen is not as before")


def upload(user):
    user.pick("Publish", "Cliplist")
    user.answer("Publish through FTP", "Return")


def stalled():
    """Cancel is heard while the server stands still; what came by then is no publication."""
    with Reporter(seconds=SECONDS) as reporter, ftp_servers.PureFtpd() as server, \
            proxies.FtpProxy(server.port) as proxy:
        reporter.use(server.account(proxy.port))
        with window(reporter) as user:
            frozen = threading.Event()
            proxy.when(500_000, lambda: (proxy.freeze(), frozen.set()))
            upload(user)
            check(frozen.wait(60), "the upload never began")
            time.sleep(1)
            check(user.looks(reporter) != user.start_looks, "nothing shows the progress")
            user.click("ProgressCancel")
            began = time.monotonic()
            user.answer("Info", "Return", seconds=30)
            check(time.monotonic() - began < 25, "a cancelled job went on")
            unchanged(reporter, user, "Cancel")
            check((server.root / "talk.wav").stat().st_size < reporter.size, "it is whole")

            reporter.path("talk01.mp2").rename(reporter.path("elsewhere"))
            user.pick("Publish", "Cliplist to File")
            user.answer("Error", "Return")
            unchanged(reporter, user, "a recording that is gone")
            check(reporter.file.exists(), "the earlier publication went")
            reporter.path("elsewhere").rename(reporter.path("talk01.mp2"))
            records(reporter, user)


def broken():
    """A server that dies is told, asked about, and made whole when it is back. A second time the
    window is closed while the upload goes on: it arrives, and then the program ends."""
    with Reporter(seconds=SECONDS) as reporter, ftp_servers.Vsftpd() as server, \
            proxies.FtpProxy(server.port) as proxy:
        reporter.use(server.account(proxy.port))
        stored = server.root / "talk.wav"
        with window(reporter) as user:
            for yes in (True, False):
                proxy.when(reporter.size // 3, server.kill)
                upload(user)
                user.answer("Error", "Return", seconds=40)
                user.dialog("Publishing interrupted!")
                proxy.check_fired()
                server.start()
                user.answer("Publishing interrupted!", "Return" if yes else "Escape")
                if yes:
                    wait_for(lambda: stored.stat().st_size == reporter.size, "the rest", 60)
                time.sleep(2)
                unchanged(reporter, user, "a server that died")
                if yes:
                    reporter.check_arrived(stored, "after a Yes")
                else:
                    check(stored.stat().st_size < reporter.size, "a No, yet the file is whole")
                stored.unlink()
            proxy.when(reporter.size // 3, lambda: time.sleep(3))
            upload(user)
            time.sleep(1)
            user.close()
            time.sleep(0.5)
            check(user.program.poll() is None, "the window went and left the upload")
            user.wait_end(60)
            reporter.check_arrived(stored, "the window was closed meanwhile")
        stored.unlink()
        with window(reporter) as user:
            proxy.when(reporter.size // 3, proxy.freeze)
            upload(user)
            wait_for(lambda: not proxy.armed, "a third of the upload", 60)
            user.program.terminate()  # as the end of the desktop's session does
            user.wait_end(25)
            check(stored.stat().st_size < reporter.size, "the stalled upload is whole")
        server.kill()
        with window(reporter) as user:
            upload(user)
            user.dialog("Error")
            user.program.terminate()  # as the end of the desktop's session does
            user.wait_end()


def main():
    run_all([("stalled", stalled), ("broken", broken)])


if __name__ == "__main__":
    main()
