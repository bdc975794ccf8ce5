#!/usr/bin/env python3
"""The window is killed in the middle of editing: every mark, cut and crop, and the project, are in
the files already, and the next window goes on from there."""

import signal
import time

from orma_e2e import SPEECH, Desk, check, equal
from window_desk import Window, display

# Of the graph's width; the view begins with 300 periods of the take's 320.
MARK, CUT_BEGIN, CUT_END, CROP = 0.2, 0.4, 0.6, 0.9


def files(desk, take, project):
    """What a reader of the files finds."""
    return (desk.json("mark", take, "list")["marks"], desk.json("cut", take, "list")["cuts"],
            desk.json("project", "show", project)["clips"])


def kill(user):
    user.program.send_signal(signal.SIGKILL)
    user.program.wait(20)


def main():
    with Desk() as desk, display() as screen:
        desk.record("talk.opr", "--wav", "--mono", "--seconds", "16")
        project, take = desk.path("talk.opr"), desk.path("talk00.wav")
        sound, untouched = take.read_bytes(), files(desk, take, project)
        sound_system = ("--audio", f"virtual:in={SPEECH}")
        with Window(screen, desk.home, *sound_system, project) as user:
            user.pick("View", "Editor")
            user.cursor(MARK)
            user.key("Insert")
            user.cursor(CUT_BEGIN)
            user.pick("Edit", "Cut begin")
            user.cursor(CUT_END)
            user.pick("Edit", "Cut end", grey=("Cut begin",))
            user.cursor(CROP)
            user.pick("Edit", "Crop end")
            kill(user)
        marks, cuts, clips = found = files(desk, take, project)
        equal(take.read_bytes(), sound, "the sound, which editing leaves alone")
        equal((len(marks), len(cuts)), (1, 1), "marks and cuts")
        near = [marks[0]["period"], cuts[0]["first period"], cuts[0]["periods"]]
        for got, share in zip(near, (MARK, CUT_BEGIN, CUT_END - CUT_BEGIN)):
            check(abs(got - share * 300) <= 12, f"mark, cut and its length: {near}")
        check(clips != untouched[2], f"the crop is not in the project: {clips}")

        # Without an argument: the project is the most recent one.
        with Window(screen, desk.home, *sound_system) as user:
            user.choose("File", "Up", "Up", "Right", "Return")
            time.sleep(1)
            user.pick("View", "Editor")
            user.cursor(CROP)
            user.key("Insert")
            time.sleep(0.5)
            kill(user)
        later = files(desk, take, project)
        equal(later[1:], found[1:], "cuts and clips of the next window")
        equal(len(later[0]), 2, "marks, with its own")


if __name__ == "__main__":
    main()
