#!/usr/bin/env python3
"""From an empty folder to delivered publications, through the window alone: a new project, a take
of real speech, a cut, a mark, a copied clip; then the clip list by FTP, to a file and by mail, each
the file that `orma publish` makes of the project."""

import time

from delivery import Reporter, ftp_servers, mail_servers, without_ticks
from orma_e2e import SPEECH, Desk, check, equal
from portaudio_capture import sound_server
from window_desk import display
from window_user import User, say, wait_for

RECIPIENT = "reporter@desk.localhost"


class Newcomer(Reporter):
    """A reporter without a project."""

    def __enter__(self):
        Desk.__enter__(self)
        self.project = self.path("harbour.opr")
        return self

    def published(self):
        """What `orma publish` makes of the project now."""
        file = self.path("pub_harbour.wav")
        file.unlink(missing_ok=True)
        self.run("publish", self.project, "--cliplist", "--to", "file")
        self.run("verify", file)
        return without_ticks(file)


def record(desk, user, environment):
    user.choose("File", "New project", grey=("Save selection", "Copy to clip-editor...",
                                             "Recent projects"))
    user.answer("New project", "Return", text=str(desk.project))
    user.click("Record")
    time.sleep(1)
    voice = say(environment, SPEECH)
    time.sleep(0.5)
    user.click("Play")
    time.sleep(8)
    user.key("9")
    time.sleep(1)
    user.click("Stop")
    voice.terminate()
    voice.wait(20)
    wait_for(desk.project.exists, "the project is saved when the take has ended")


def edit(user):
    user.choose("View", "Editor")
    user.cursor(0.1)
    user.choose("Edit", "Mark")
    user.cursor(0.2)
    user.choose("Edit", "Cut begin")
    user.cursor(0.3)
    user.choose("Edit", "Cut end", grey=("Cut begin",))
    user.choose("File", "Copy to clip-editor...", grey=("Save selection",))
    user.answer("Orma Edit", "Return", text="the mayor")


def deliver(desk, user, stored):
    """By FTP through its dialog, then to a file; the editor comes back as it was."""
    before = user.looks(desk, "before")
    user.choose("Publish", "Cliplist")
    user.answer("Publish through FTP", "Return")
    wait_for(stored.exists, "the upload")
    time.sleep(1)
    user.no_box()
    check(user.looks(desk, "told") != before, "nothing tells that it went well")
    user.tool("key", "F9")
    time.sleep(0.3)
    check(user.looks(desk, "after") == before, "the editor is not back as it was")
    user.choose("Publish", "Cliplist to File")
    wait_for(desk.path("pub_harbour.wav").exists, "the file")
    user.no_box()


def send(user):
    """By mail, to an address that is typed into the dialog."""
    user.choose("Publish", "Cliplist")
    user.answer("Publish through email direct", "Return", text=RECIPIENT)
    time.sleep(1)
    user.no_box()


def check_project(desk):
    """What was done in the window is in the project."""
    clips = desk.json("project", "show", desk.project)["clips"]
    equal([clip["title"] for clip in clips], ["", "the mayor"], "clips")
    take = desk.path("harbour00.mp2")
    equal(len(desk.json("mark", take, "list")["marks"]), 2, "marks")
    cuts = desk.json("cut", take, "list")["cuts"]
    equal(len(cuts), 1, "cuts")
    check(cuts[0]["periods"] > 10, f"the cut is {cuts}")


def main():
    with Newcomer() as desk, sound_server(desk.folder) as sound, display() as screen, \
            ftp_servers.Vsftpd() as ftp, mail_servers.Postfix() as mail:
        environment = dict(sound, DISPLAY=screen["DISPLAY"], QT_QPA_PLATFORM="xcb")
        desk.use(ftp.account(), ProjectsFolder=f"{desk.folder}/", RecordMp2=1, RecordingFormat=1,
                 Stereo=1, Mp2BitrateIndex=8, PublishToFile=1)
        stored = ftp.root / "harbour.wav"
        with User(environment, desk.home) as user:
            record(desk, user, environment)
            edit(user)
            deliver(desk, user, stored)
            user.close()
            user.wait_end()
        check_project(desk)
        by_window = without_ticks(desk.path("pub_harbour.wav"))
        wanted = desk.published()
        check(by_window == wanted, "the window's file is not the one of the command line")
        desk.run("verify", stored)
        check(without_ticks(stored) == wanted, "other bytes are on the server")

        desk.use_mail("127.0.0.1", mail.port, mail.user, mail.password, PublishMethod=2)
        with User(environment, desk.home, desk.project) as user:
            send(user)
            message, = mail.wait_for_messages(1)
            user.click("Record")  # still alive
            time.sleep(1)
            user.click("Play")
            time.sleep(1)
            user.close()
            user.wait_end()
        (name, content), = mail_servers.attachments(message)
        equal(name, "harbour.wav", "the attachment")
        check(without_ticks(content) == wanted, "another file is attached")
        check(desk.path("harbour01.mp2").exists(), "the take that the end of the window stopped")


if __name__ == "__main__":
    main()
