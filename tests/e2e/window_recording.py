#!/usr/bin/env python3
"""A reporter's first take in the window, with pointer and keys: Record, Play, three marks while
speech comes from a real sound server, Stop, play back, About, Exit. Take, level file, project and
both settings files are right afterwards."""

import subprocess
import time

from orma_e2e import ROOT, SPEECH, Desk, check, equal, fail, samples
from portaudio_capture import sound_server
from window_desk import Window, display

SKIN = ROOT / "assets/skin/Portrait"


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
            window.choose("View", "Up", "Return")
            check(window.picture(desk.path("about.png")).read_bytes() != stopped,
                  "About does not open")
            window.program.terminate()
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
