#!/usr/bin/env python3
"""From an empty folder to delivered publications, through the window alone: a new project, a take
of real speech with marks, played back, a cut, a copied clip; then the clip list by FTP, to a file and
by mail, each the file that `orma publish` makes of the project. A second start meanwhile only brings
the window to the front, and another program folder has a window of its own, which a signal ends.
What was edited is in the files when the window is killed."""

import subprocess
import time

from delivery import ftp_servers, mail_servers, without_ticks
from orma_e2e import SPEECH, Desk, check, equal, wait_for
from portaudio_capture import sound_server
from window_desk import EDIT, Window, display

RECIPIENT = "reporter@desk.localhost"


def record(desk, user, environment):
    user.pick("File", "New project", grey=("Save selection", "Copy to clip-editor...",
                                           "Recent projects"))
    user.answer("New project", "Return", text=str(desk.project))
    user.click("Record")
    time.sleep(1)
    voice = subprocess.Popen(["paplay", "--device=mic", str(SPEECH)], env=environment)
    time.sleep(0.5)
    user.click("Play")
    time.sleep(6)
    for mark in (lambda: user.key("9"), lambda: user.click("Record")):
        mark()
        time.sleep(1)
    user.click("Stop")
    voice.terminate()
    voice.wait(20)
    wait_for(desk.project.exists, "the project is saved when the take has ended")


def play(desk, user):
    before = user.looks(desk)
    user.key("8")
    time.sleep(1.5)
    check(user.looks(desk) != before, "playing shows nothing")
    user.key("7")
    before = user.looks(desk)
    user.pick("View", "About")
    check(user.looks(desk) != before, "About does not open")


def edit(user):
    user.pick("View", "Editor")
    user.cursor(0.1)
    user.pick("Edit", "Mark")
    user.cursor(0.2)
    user.pick("Edit", "Cut begin")
    user.cursor(0.3)
    user.pick("Edit", "Cut end", grey=("Cut begin",))
    user.pick("File", "Copy to clip-editor...", grey=("Save selection",))
    user.answer("Orma Edit", "Return", text="the mayor")


def deliver(desk, user, stored):
    """By FTP through its dialog, then to a file; the editor comes back as it was."""
    before = user.looks(desk)
    user.pick("Publish", "Cliplist")
    user.answer("Publish through FTP", "Return")
    wait_for(stored.exists, "the upload")
    time.sleep(1)
    user.no_box()
    check(user.looks(desk) != before, "nothing tells that it went well")
    user.tool("key", "F9")
    time.sleep(0.3)
    check(user.looks(desk) == before, "the editor is not back as it was")
    user.pick("Publish", "Cliplist to File")
    wait_for(desk.file.exists, "the file")
    user.no_box()
    user.tool("key", "F9")
    time.sleep(0.3)


def start_again(desk, environment, window):
    """Starts the program twice more: for another folder, whose window covers ours, and for ours."""
    with Desk() as other:
        ours = window.looks(desk)
        with Window(environment, other.home, covered=[window.id]) as above:
            equal(above.geometry(), window.geometry(), "the place of the other window")
            check(window.looks(desk) != ours, "the other window is not above")
            subprocess.run([EDIT, "--home", str(desk.home)], env=environment, timeout=30, check=True)
            wait_for(lambda: window.looks(desk) == ours, "the window in front again")
            above.program.terminate()
            above.wait_end()
        check((other.home / "OrmaSet.sup").exists(), "a signal lost the user's state")


def check_project(desk):
    """What was done in the window is in the project."""
    clips = desk.json("project", "show", desk.project)["clips"]
    equal([clip["title"] for clip in clips], ["", "the mayor"], "clips")
    take = desk.path("harbour00.mp2")
    levels = desk.json("show", desk.path("harbour00.jvu"))["levels"]
    check(6 * 20 < len(levels) < 15 * 20, f"the take has {len(levels)} periods")
    check(min(levels) < 40, "the take is silent")  # 0 is full scale, 79 is silence
    equal(len(desk.json("mark", take, "list")["marks"]), 3, "marks")
    cuts = desk.json("cut", take, "list")["cuts"]
    equal(len(cuts), 1, "cuts")
    check(cuts[0]["periods"] > 10, f"the cut is {cuts}")
    check((desk.home / "OrmaSet.sup").exists(), "the user's state was not saved")
    check((desk.home / "OrmaIni.sup").exists(), "the configuration is gone")
    check("Big" in (desk.home / "size.txt").read_text(), "the window's size was not kept")


def work(desk):
    """How many marks the takes have, and the clips."""
    marks = [desk.json("mark", take, "list")["marks"] for take in desk.folder.glob("harbour0*.mp2")]
    return sum(map(len, marks)), desk.json("project", "show", desk.project)["clips"]


def main():
    with Desk() as desk, sound_server(desk.folder) as sound, display(sound) as environment, \
            ftp_servers.Vsftpd() as ftp, mail_servers.Postfix() as mail:
        desk.project, desk.file = desk.path("harbour.opr"), desk.path("pub_harbour.wav")
        desk.use(ftp.account(), ProjectsFolder=f"{desk.folder}/", RecordMp2=1, RecordingFormat=1,
                 Stereo=1, Mp2BitrateIndex=8, PublishToFile=1)
        stored = ftp.root / "harbour.wav"
        with Window(environment, desk.home) as user:
            record(desk, user, environment)
            play(desk, user)
            edit(user)
            deliver(desk, user, stored)
            start_again(desk, environment, user)
            user.pick("File", "Exit", grey=("Save selection",))
            user.wait_end()
        check_project(desk)
        by_window = without_ticks(desk.file.read_bytes())
        desk.file.unlink()
        desk.run("publish", desk.project, "--cliplist", "--to", "file")
        wanted = without_ticks(desk.file.read_bytes())
        check(by_window == wanted, "the window's file is not the one of the command line")
        for file in (desk.file, stored):
            desk.run("verify", file)
        check(without_ticks(stored.read_bytes()) == wanted, "other bytes are on the server")

        desk.use_mail("127.0.0.1", mail.port, mail.user, mail.password, PublishMethod=2)
        with Window(environment, desk.home, desk.project) as user:
            user.pick("Publish", "Cliplist")
            user.answer("Publish through email direct", "Return", text=RECIPIENT)
            time.sleep(1)
            user.no_box()
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

        before = work(desk)
        with Window(environment, desk.home, desk.project) as user:
            user.pick("View", "Clip editor")
            user.key("Home")
            user.pick("View", "Editor")
            user.cursor(0.5)
            user.key("Insert")
            user.cursor(0.9)
            user.pick("Edit", "Crop end")
            user.program.kill()
            user.program.wait(20)
        after = work(desk)
        equal(after[0] - before[0], 1, "marks that the kill left")
        check(after[1] != before[1], f"the crop is not in the project: {after}")

        with Window(environment, desk.home, desk.project) as user:
            user.pick("View", "Clip editor")
            user.key("Home", "ctrl+Down", "F2")
            user.write("Harbour")
            time.sleep(1)  # typed, but not confirmed
            user.program.terminate()
            user.wait_end()
        clips = desk.json("clips", desk.project, "list")["clips"]
        equal([clip["title"] for clip in clips], ["the mayor", "Harbour", ""], "the list")


if __name__ == "__main__":
    main()
