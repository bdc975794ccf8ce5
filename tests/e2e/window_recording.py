#!/usr/bin/env python3
"""A reporter's first take in the window, with pointer and keys: Record, Play, three marks while
speech comes from a real sound server, Stop, play back, About, Exit. Take, level file, project and
both settings files are right afterwards. A second start meanwhile only brings the window to the
front, and another program folder has a window of its own, which a signal ends as well."""

import subprocess
import time

from orma_e2e import ROOT, SPEECH, Desk, check, equal, fail, samples
from portaudio_capture import sound_server
from window_desk import EDIT, Window, display

SKIN = ROOT / "assets/skin/Portrait"
FILE, VIEW = 20, 207  # where the menus stand


def start_again(desk, environment, window):
    """Starts the program twice more: for another folder, whose window covers ours, and for ours."""
    with Desk() as other:
        ours = window.picture(desk.path("ours.png")).read_bytes()
        with Window(environment, other.home, skin=SKIN, covered=[window.id]) as above:
            place = window.geometry()
            equal(above.geometry(), place, "the place of the other window")
            check(window.picture(desk.path("covered.png")).read_bytes() != ours,
                  "the other window is not above")
            again = subprocess.run([EDIT, "--home", str(desk.home)], env=environment, timeout=30,
                                   check=False)
            equal(again.returncode, 0, "exit code of the second start")
            for _ in range(50):
                if window.picture(desk.path("raised.png")).read_bytes() == ours:
                    break
                time.sleep(0.1)
            else:
                fail("the second start did not bring the window to the front")
            above.program.terminate()
            above.wait_end()
        check((other.home / "OrmaSet.sup").exists(), "a signal lost the user's state")


def main():
    with Desk() as desk, sound_server(desk.folder) as sound, display() as screen:
        environment = dict(sound, DISPLAY=screen["DISPLAY"], QT_QPA_PLATFORM="xcb")
        desk.run("settings", "set", f"ProjectsFolder={desk.folder}/", "CurrentProjectName=talk")
        project, take = desk.path("talk.opr"), desk.path("talk00.wav")
        with Window(environment, desk.home, skin=SKIN) as window:
            window.click("Record")
            time.sleep(1)
            player = subprocess.Popen(["paplay", "--device=mic", str(SPEECH)], env=environment)
            time.sleep(1)
            window.click("Play")
            for press in (lambda: window.key("9"), lambda: window.click("Record"),
                          lambda: window.key("9")):
                time.sleep(1.2)
                press()
            time.sleep(1)
            window.click("Stop")
            for _ in range(50):
                if project.exists():
                    break
                time.sleep(0.1)
            else:
                fail("the project was not saved when the take ended")
            player.terminate()
            player.wait(20)

            before = window.picture(desk.path("stopped.png")).read_bytes()
            window.key("8")
            time.sleep(1.5)
            check(window.picture(desk.path("playing.png")).read_bytes() != before,
                  "playing shows nothing")
            window.key("7")
            stopped = window.picture(desk.path("stopped.png")).read_bytes()
            window.click_menu(VIEW, 2)
            check(window.picture(desk.path("about.png")).read_bytes() != stopped,
                  "About does not open")
            window.menu(VIEW, "Down", "Down", "Return")  # the editor shows nothing that moves
            start_again(desk, environment, window)
            window.click_menu(FILE, 1)
            window.wait_end()

        sound = samples(take)
        check(3 * 44100 < len(sound) < 15 * 44100, f"the take has {len(sound)} samples")
        check(max(map(abs, sound)) > 1000, "the take is silent")
        equal(len(desk.json("mark", take, "list")["marks"]), 3, "marks")
        check("talk00" in desk.run("clips", project, "list").stdout, "the take is no clip")
        check((desk.home / "OrmaSet.sup").exists(), "the user's state was not saved")
        check((desk.home / "OrmaIni.sup").exists(), "the configuration is gone")
        check("Big" in (desk.home / "size.txt").read_text(), "the window's size was not kept")


if __name__ == "__main__":
    main()
