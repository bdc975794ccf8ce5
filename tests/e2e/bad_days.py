#!/usr/bin/env python3
"""Full disks, missing and read-only folders, foreign and broken files: the right text, the right
exit code, and nothing that was recorded is lost."""

import resource
import signal

from orma_e2e import SPEECH, Desk, check, equal


def says(done, text):
    check(text in done.stderr, f"expected {text!r} on standard error, got {done.stderr!r}")


def wrong_usage(desk):
    desk.run("record", expect=2)
    says(desk.record("notes.txt", "--seconds", "2", expect=2), "not a project file")
    says(desk.run("publish", desk.path("x.opr"), "--to", "file", expect=2), "choose one of")
    says(desk.run("settings", "set", "NoSuchThing=1", expect=2), "no setting is named")
    says(desk.run("settings", "set", "Mp2BitrateIndex=12", expect=2), "Mp2BitrateIndex")


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


def foreign_files(desk):
    """Somebody else's file in every place where one of ours may stand."""
    letter = b"Dear newsroom, this is a letter and no recording. " * 40

    desk.path("letter.opr").write_bytes(letter)
    says(desk.record("letter.opr", "--seconds", "2", expect=1), "LoadProject Project Id")
    equal(desk.path("letter.opr").read_bytes(), letter, "a foreign project file")

    newer = b"JOPR" + (11).to_bytes(4, "little") + bytes(64)
    desk.path("newer.opr").write_bytes(newer)
    says(desk.record("newer.opr", "--seconds", "2", expect=1), "LoadProject Project Version")
    equal(desk.path("newer.opr").read_bytes(), newer, "a project of a newer version")

    # A file that has a take's name already is moved aside, never overwritten.
    desk.path("quay00.wav").write_bytes(letter)
    desk.record("quay.opr", "--wav", "--seconds", "2")
    kept = [p for p in desk.folder.glob("quay*") if p.read_bytes() == letter]
    equal(len(kept), 1, "copies of the file that had the take's name")
    check(desk.path("quay00.wav").read_bytes()[:4] == b"RIFF", "the take has its own name")

    # Takes and level files that turned into something else.
    desk.record("dock.opr", "--mp2", "--seconds", "2")
    desk.path("dock00.jvu").write_bytes(letter)
    desk.run("project", "show", desk.path("dock.opr"))
    desk.path("dock00.mp2").write_bytes(letter)
    desk.path("dock00.jvu").unlink()
    equal(desk.json("project", "show", desk.path("dock.opr"))["clips"], [], "clips that can be read")
    before = desk.path("dock.opr").read_bytes()
    desk.run("publish", desk.path("dock.opr"), "--cliplist", "--to", "file", expect=1)
    equal(desk.path("dock.opr").read_bytes(), before, "the project after a failed publication")

    for name in ("OrmaIni.sup", "OrmaSet.sup"):
        (desk.home / name).write_bytes(letter)
    desk.record("lock.opr", "--seconds", "2")
    kept = [p for p in desk.home.iterdir() if p.read_bytes() == letter]
    equal(len(kept), 2, "foreign settings files that were kept")
    says(desk.run("show", desk.path("letter.opr"), expect=1), "not a file of this program")
    desk.run("verify", desk.path("letter.opr"), expect=1)


def lost_microphone(desk):
    """A microphone that is pulled out after 3 s: the take up to there is kept."""
    done = desk.run("record", desk.path("cable.opr"), "--wav", "--seconds", "8", expect=1,
                    audio=f"virtual:in={SPEECH},pace=fast,vanish={3 * 44100}")
    check(done.stderr.strip(), "the user is told that the input is gone")
    take = desk.json("show", desk.path("cable00.wav"))
    check(59 <= take["length in periods"] <= 61, f"the take up to there: {take}")


def main():
    for day in (wrong_usage, folders, full_disk, foreign_files, lost_microphone):
        with Desk() as desk:
            day(desk)
        print(f"survived: {day.__name__}")


if __name__ == "__main__":
    main()
