#!/usr/bin/env python3
"""Takes through a real sound server: `orma play` plays a project's clips into the null sink of a
PulseAudio, whose monitor is recorded. What comes out are, sample by sample, the takes, one after the
other without a gap, to the last sample.

ORMA_PLAYBACK_SECONDS sets how much is played (20)."""

import os
import signal
import struct
import subprocess
import time

from orma_e2e import Desk, check, equal, samples, speech_at
from portaudio_capture import check_heard, sound_server

SECONDS = int(os.environ.get("ORMA_PLAYBACK_SECONDS", "20"))
RATE = 44100


def to_file(desk, *arguments):
    """Plays into a file, faster than real time; returns what was heard."""
    out = desk.path("heard.wav")
    desk.run("play", *arguments, audio=f"virtual:out={out},pace=fast")
    return samples(out)


def virtual(desk, takes):
    """Parts of a take and of the list, and what is refused."""
    project, take = desk.path("quay.opr"), desk.path("quay00.wav")
    equal(to_file(desk, project), takes[0] + takes[1], "the list")
    equal(to_file(desk, take, "--from", "0:02", "--to", "#90"), takes[0][2 * RATE:90 * RATE // 20],
          "2 s to 4.5 s of a take")
    seam = len(takes[0])
    at = seam // (RATE // 20)
    equal(to_file(desk, project, "--from", f"#{at - 10}", "--to", f"#{at + 20}"),
          (takes[0] + takes[1])[seam - 10 * RATE // 20:seam + 20 * RATE // 20],
          "a part of the list across its clips")

    desk.run("play", desk.path("none.wav"), expect=1)
    desk.run("play", desk.path("home"), expect=2)
    desk.run("play", take, "--from", "59:00", expect=1)


def heard_of(desk, environment):
    """What the sink's monitor hears while orma plays the list."""
    raw = desk.path("monitor.raw")
    with open(raw, "wb") as sink:
        listener = subprocess.Popen(
            ["parec", "--device=mic.monitor", "--raw", "--format=s16le", f"--rate={RATE}",
             "--channels=1"], env=environment, stdout=sink, stderr=subprocess.DEVNULL)
        time.sleep(1)
        player = desk.start("--trace", desk.path("trace"), "play", desk.path("quay.opr"),
                            env=environment)
        out, err = player.communicate(timeout=SECONDS + 60)
        equal(player.returncode, 0, f"exit code ({out}{err})")
        time.sleep(1.5)
        listener.terminate()
        listener.wait(20)
    gaps = [line for line in desk.path("trace").read_text().splitlines() if "silence" in line]
    equal(gaps, [], "gaps")
    data = raw.read_bytes()
    return struct.unpack(f"<{len(data) // 2}h", data[:len(data) // 2 * 2])


def interrupted(desk, environment):
    """Ctrl-C ends playing at once and well."""
    player = desk.start("--json", "play", desk.path("quay.opr"), env=environment)
    time.sleep(2)
    player.send_signal(signal.SIGINT)
    begun = time.monotonic()
    out, err = player.communicate(timeout=20)
    equal(player.returncode, 0, f"exit code after Ctrl-C ({err})")
    check('"stopped": true' in out, f"not told that it was stopped: {out}")
    check(time.monotonic() - begun < 5, "Ctrl-C was slow")


def main():
    with Desk() as desk, sound_server(desk.folder) as environment:
        voice = speech_at(desk.path("voice.wav"), RATE, 1, SECONDS + 2)
        for length in (SECONDS - SECONDS // 4, SECONDS // 4):
            desk.record("quay.opr", "--wav", "--mono", "--seconds", str(length), speech=voice)
        takes = [samples(desk.path(f"quay{n:02}.wav")) for n in (0, 1)]
        virtual(desk, takes)

        played = takes[0] + takes[1]
        check_heard(heard_of(desk, environment), played)
        interrupted(desk, environment)
        print(f"{len(played)} samples ({SECONDS} s) through PulseAudio: all equal, no gap")


if __name__ == "__main__":
    main()
