#!/usr/bin/env python3
"""An operator sets up an FTP account by the keyboard alone: Test tells a wrong password in words and
logs in at a real server with the right one, Save makes it the account that the command line uses. A
starting editor closes the set-up window, unless something there would be lost."""

import os
import subprocess
import time
from pathlib import Path

from delivery import ftp_servers
from orma_e2e import ORMA, SPEECH, Desk, check, equal, wait_for
from window_desk import Window, display

SETUP = str(Path(ORMA).with_name("orma-setup"))
FTP_PAGE = 3


class SetupWindow(Window):
    PROGRAM = SETUP
    TITLE = "Orma Edit set-up"

    def press(self, *keys):
        self.tool("key", *keys)
        time.sleep(0.2)

    def type(self, text):
        self.tool("type", "--delay", 20, text)

    def focus(self):
        """Back from a small dialog."""
        self.tool("windowfocus", "--sync", self.id)


def log_ins(server, outcome):
    """How many log-ins came out so, by the server's own log."""
    return server.log.read_text(errors="replace").count(outcome)


def configures_and_tests_an_account(environment, desk, server):
    account = server.account()
    with SetupWindow(environment, desk.home) as window:
        window.press(*["ctrl+Next"] * FTP_PAGE)
        window.press("Tab", "Tab", "space")  # past the empty list to Add
        for text in ("News", f"{account.host}:{account.port}", account.user, "wrong"):
            window.type(text)
            window.press("Tab")
        window.press("Tab")
        window.type(account.folder)
        empty = window.looks(desk)
        window.press("Tab", "Tab", "Tab", "space")
        wait_for(lambda: log_ins(server, "FAIL LOGIN"), "a refused log-in")
        time.sleep(1)
        refused = window.looks(desk)
        check(refused != empty, "a wrong password is not told")
        window.focus()
        window.press(*["shift+Tab"] * 5, "ctrl+a")
        window.type(account.password)
        before = log_ins(server, "OK LOGIN")
        window.press(*["Tab"] * 5, "space")
        wait_for(lambda: log_ins(server, "OK LOGIN") > before, "a log-in")
        time.sleep(1)
        check(window.looks(desk) != refused, "a log-in is not told")
        window.focus()
        check(not (desk.home / "OrmaIni.sup").exists(), "a test saved the settings")
        window.press("ctrl+s")
        wait_for((desk.home / "OrmaIni.sup").exists, "saving")
        equal((desk.home / "OrmaIni.sup").stat().st_mode & 0o077, 0, "rights of others")
        equal(desk.json("test-connection", "--account", "News")["reachable"], True, "reachable")
        equal(desk.json("accounts", "list")["ftp in use"]["name"], "News", "account in use")
        subprocess.run([SETUP, "--home", str(desk.home)], env=environment, check=True, timeout=20)
        check(window.program.poll() is None, "another start ended the first one")


def closes_for_the_editor(environment, desk):
    with SetupWindow(environment, desk.home) as window, \
            Window(environment, desk.home, "--audio", f"virtual:in={SPEECH}"):
        window.wait_end()
    with SetupWindow(environment, desk.home) as window:
        window.press(*["Tab"] * 6, "ctrl+a")  # the projects folder
        window.type(str(desk.path("elsewhere")))
        with Window(environment, desk.home, "--audio", f"virtual:in={SPEECH}"):
            time.sleep(2)
            check(window.program.poll() is None, "unsaved changes were given up")
            found = window.tool("search", "--onlyvisible", "--pid", window.program.pid).split()
            check(len(found) > 1, "nothing was asked")


def main():
    with Desk() as desk, ftp_servers.Vsftpd() as server, \
            display(dict(os.environ, XDG_RUNTIME_DIR=str(desk.path("run")))) as environment:
        desk.path("run").mkdir(mode=0o700)
        configures_and_tests_an_account(environment, desk, server)
        closes_for_the_editor(environment, desk)


if __name__ == "__main__":
    main()
