#!/usr/bin/env python3
"""An hour of recording at ten times real time, WAV in stereo and MP2 side by side. Each take must be
the same, byte by byte, as one that was recorded without any clock.

ORMA_HOUR_SECONDS sets the length of the recordings (3600)."""

import os
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "e2e"))
from orma_e2e import ORMA, Desk, check, equal, speech_at  # noqa: E402

SECONDS = int(os.environ.get("ORMA_HOUR_SECONDS", "3600"))
SPEED = 10
TAKES = [("wav", ["--wav", "--stereo"]), ("mp2", ["--mp2", "--mono", "--bitrate", "64"])]


def start(folder, voice, pace, options):
    home = folder / "home"  # each its own: two that end together would both write the user state
    home.mkdir(parents=True)
    return subprocess.Popen(
        [ORMA, "--home", str(home), "--audio", f"virtual:in={voice},pace={pace}", "--json",
         "record", str(folder / "talk.opr"), *options, "--seconds", str(SECONDS), "--mark", "10"],
        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)


def end(recorder):
    out, err = recorder.communicate()
    equal(recorder.returncode, 0, err)
    check('"lost samples": 0' in out, out)


def main():
    with Desk() as desk:
        voice = speech_at(desk.path("voice.wav"), 44100, 2, SECONDS)
        began = time.monotonic()
        running = [start(desk.path(f"clock-{kind}"), voice, SPEED, options)
                   for kind, options in TAKES]
        for recorder in running:
            end(recorder)
        passed = time.monotonic() - began
        for kind, options in TAKES:
            end(start(desk.path(f"fast-{kind}"), voice, "fast", options))
            take, other = (desk.path(f"{pace}-{kind}") / f"talk00.{kind}" for pace in ("clock", "fast"))
            # The stop of a clock may find the last buffer partly filled.
            sound, wanted = take.read_bytes()[44:], other.read_bytes()[44:]
            least = len(wanted) - 2 * 8820
            check(len(sound) >= least and sound[:least] == wanted[:least], f"{take} is not what was heard")
            print(f"{kind}: {SECONDS} s at {SECONDS / passed:.1f} times real time, {len(sound)} bytes "
                  "of sound equal, none lost")


if __name__ == "__main__":
    main()
