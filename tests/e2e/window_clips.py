#!/usr/bin/env python3
"""The clip list in the window: a clip is renamed and moved by keys, one is added through the file
dialog, one removed, the list is played to its end, and a whole clip is published. What was heard,
the project and the published file are right afterwards."""

import time

from delivery import without_ticks
from orma_e2e import ROOT, Desk, check, equal, fail, samples
from window_desk import Window, display

SKIN = ROOT / "assets/skin/Portrait"
PUBLISH, VIEW = 88, 207


def titles(desk, project):
    return [clip["title"] or clip["name"] for clip in desk.json("clips", project, "list")["clips"]]


def wait_for(what, condition, seconds=20):
    for _ in range(seconds * 10):
        if condition():
            return
        time.sleep(0.1)
    fail(f"{what} did not happen")


def main():
    with Desk() as desk, display() as screen:
        desk.run("settings", "set", f"ProjectsFolder={desk.folder}/", "PublishToFile=1")
        project, heard = desk.path("talk.opr"), desk.path("heard.wav")
        desk.record("talk.opr", "--seconds", 2)
        desk.record("talk.opr", "--seconds", 3)
        audio = f"virtual:out={heard},pace=real"
        with Window(screen, desk.home, "--audio", audio, project, skin=SKIN) as window:
            window.menu(VIEW, "Down", "Down", "Down", "Return")

            def becomes(*wanted):
                wait_for(f"the list {wanted}", lambda: titles(desk, project) == list(wanted))

            window.key("Home", "F2")
            window.tool("type", "--window", window.id, "Mayor")
            window.key("Return")
            becomes("Mayor", "talk01")
            window.key("ctrl+Down")
            becomes("talk01", "Mayor")

            window.click("CInsert")
            dialog = window.find("Open clip")
            window.tool("windowfocus", "--sync", dialog)
            window.tool("key", "--window", dialog, "ctrl+a")
            window.tool("type", "--window", dialog, str(desk.path("talk00.wav")))
            window.tool("key", "--window", dialog, "Return")
            becomes("talk01", "talk00", "Mayor")
            window.tool("windowfocus", "--sync", window.id)

            window.key("End", "Delete")  # the row of the total
            window.key("Home")
            window.click("CRemove")
            becomes("talk00", "Mayor")

            stopped = window.picture(desk.path("stopped.png")).read_bytes()
            window.click("CPlay")
            time.sleep(1)
            check(window.picture(desk.path("playing.png")).read_bytes() != stopped,
                  "playing shows nothing")
            window.key("F2")
            window.tool("type", "--window", window.id, "late")  # refused while playing
            window.key("Return")  # stops
            window.click("CPlay")
            take = samples(desk.path("talk00.wav"))
            wait_for("playing to the end", lambda: heard.stat().st_size >= 44 + 4 * len(take))
            time.sleep(1)
            window.menu(PUBLISH, *["Down"] * 4, "Return")  # Clip to File
            published = desk.path("pub_talk.wav")
            wait_for("the publication", published.exists)
            window.key("F2")
            window.tool("type", "--window", window.id, "Harbour")
            time.sleep(1)  # typed, but not confirmed
            window.program.terminate()
            window.wait_end()
        whole = without_ticks(published)
        published.unlink()
        desk.run("publish", project, "--clip", 2, "--to", "file")
        check(whole == without_ticks(published), "the clip was not published whole")
        equal(samples(heard), 2 * take, "what was heard")
        equal(titles(desk, project), ["talk00", "Harbour"], "the list")


if __name__ == "__main__":
    main()
