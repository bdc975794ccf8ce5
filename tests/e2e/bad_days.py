#!/usr/bin/env python3
"""Full disks, missing folders, foreign files, a server that is not there: the right text, the right
exit code, nothing that was recorded is lost and no password is told."""

import resource
import signal
import socket

from orma_e2e import SPEECH, check, equal, run_each


def says(done, text):
    check(text in done.stderr, f"expected {text!r} on standard error, got {done.stderr!r}")


def wrong_usage(desk):
    desk.run("record", expect=2)
    says(desk.record("notes.txt", "--seconds", "2", expect=2), "not a project file")
    says(desk.run("publish", desk.path("x.opr"), "--to", "file", expect=2), "choose one of")
    says(desk.run("settings", "set", "NoSuchThing=1", expect=2), "no setting is named")
    says(desk.run("settings", "set", "Mp2BitrateIndex=12", expect=2), "Mp2BitrateIndex")
    says(desk.run("test-connection", expect=1), "no FTP destination")

    letter = desk.path("letter.opr")
    letter.write_text("Dear newsroom, this is a letter and no recording.")
    says(desk.record("letter.opr", "--seconds", "2", expect=1), "LoadProject Project Id")
    says(desk.run("show", letter, expect=1), "not a file of this program")
    desk.run("verify", letter, expect=1)


def folders(desk):
    done = desk.record("missing/take.opr", "--seconds", "2", expect=1)
    says(done, "the folder does not exist")
    # A folder without room, and one that takes no file of the take's name (the name is too long:
    # the one refusal that holds for root, too).
    done = desk.record("/sys/kernel/take.opr", "--seconds", "2", expect=1)
    says(done, "You have no recording- time left in your current project.")
    name = "n" * 250
    done = desk.record(f"{name}.opr", "--seconds", "2", expect=1)
    says(done, f"Cannot open file : {desk.path(name)}00.wav")


def full_disk(desk):
    """A disk that is full after 200 kB: what fitted is kept, closed and readable."""

    def small_disk():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (200_000, 200_000))

    done = desk.record("full.opr", "--wav", "--mono", "--seconds", "8", expect=1,
                       preexec_fn=small_disk)
    says(done, "WriteFile")
    take = desk.json("show", desk.path("full00.wav"))
    check(take["length in periods"] >= 40, f"too little was kept: {take}")
    clips = desk.json("project", "show", desk.path("full.opr"))["clips"]
    equal(len(clips), 1, "clips of the project")

    # A publication that does not fit leaves the old one alone.
    desk.record("pier.opr", "--wav", "--mono", "--seconds", "4")
    desk.run("publish", desk.path("pier.opr"), "--cliplist", "--to", "file")
    before = desk.path("pub_pier.wav").read_bytes()
    says(desk.run("publish", desk.path("pier.opr"), "--cliplist", "--to", "file", expect=1,
                  preexec_fn=small_disk), "WriteFile")
    equal(desk.path("pub_pier.wav").read_bytes(), before, "the earlier publication")
    equal(sorted(p.name for p in desk.folder.glob("*.tmp")), [], "left-over temporary files")


def lost_microphone(desk):
    """A microphone that is pulled out after 3 s: the take up to there is kept."""
    done = desk.run("record", desk.path("cable.opr"), "--wav", "--seconds", "8", expect=1,
                    audio=f"virtual:in={SPEECH},pace=fast,vanish={3 * 44100}")
    check(done.stderr.strip(), "the user is told that the input is gone")
    take = desk.json("show", desk.path("cable00.wav"))
    check(59 <= take["length in periods"] <= 61, f"the take up to there: {take}")


def accounts(desk):
    """Their passwords are told nowhere, whether they are listed or tried."""
    with socket.socket() as taken:  # bound but not listening: nobody answers there
        taken.bind(("127.0.0.1", 0))
        server = f"127.0.0.1:{taken.getsockname()[1]}"
        desk.set({"FtpServer": server, "FtpPassword": "S3cret-0", "CurrentFtpName": "studio",
                  "Ftp[0].Name": "studio", "Ftp[0].Server": server, "Ftp[0].Security": 1,
                  "Ftp[1].Name": "night", "Ftp[1].Server": "other:2121", "Ftp[1].Folder": "news",
                  "Ftp[1].Password": "S3cret-1", "SmtpServer": "mail.local",
                  "SmtpPassword": "S3cret-2", "Smtp[2].Name": "behind the gap"})
        tried = desk.run("--json", "test-connection", expect=1)
    says(tried, "Cannot connect")
    check('"reachable": false' in tried.stdout, f"reachable: {tried.stdout}")
    for done in (tried, desk.run("accounts", "list"), desk.run("--json", "accounts", "list")):
        check("S3cret" not in done.stdout + done.stderr, "a password was told")
    listed = desk.json("accounts", "list")
    equal(listed["ftp"][1],
          {"name": "night", "server": "other:2121", "user": "", "password set": True,
           "folder": "news", "passive": False, "protection": "none"}, "the second destination")
    equal(listed["ftp in use"]["protection"], "explicit TLS", "protection in use")
    equal([a["name"] for a in listed["mail"]], ["mail.local"], "mail accounts")
    equal(listed["mail in use"]["password set"], True, "its password")


if __name__ == "__main__":
    run_each(wrong_usage, folders, full_disk, lost_microphone, accounts)
