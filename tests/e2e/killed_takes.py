#!/usr/bin/env python3
"""Recordings that are killed at random moments. What the microphone delivered is counted outside the
program; what `orma recover` brings back may lack one capture buffer and what the encoder holds. A
recording that is asked to end needs no recovery and lacks nothing.

ORMA_KILLS sets how many recordings are killed (8), ORMA_SEED chooses the moments."""

import os
import random
import shutil
import signal
import struct
import subprocess
import time

from orma_e2e import Desk, check, equal, speech_at, tool, wait_for

KILLS = int(os.environ.get("ORMA_KILLS", "8"))
SEED = int(os.environ.get("ORMA_SEED", time.time_ns() % 1000000))
RATE = 44100
BUFFER = 2205  # samples of a capture buffer, 50 ms
FRAME = 1152
SECONDS = 400  # of speech
MARKS = [1, 7, 40, 333, 2000, 9000]
# Kind, options, channels, bytes of an MP2 frame.
FORMATS = [("wav", ["--wav", "--mono"], 1, 0),
           ("mp2", ["--mp2", "--mono", "--bitrate", "64"], 1, 192),
           ("wav", ["--wav", "--stereo"], 2, 0),
           ("mp2", ["--mp2", "--stereo", "--bitrate", "128"], 2, 384)]
LONG_AGO = 1231150830


def start(desk, folder, voices, form, pace="fast"):
    """Starts a recording in a new folder."""
    _, options, channels, _ = form
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    marks = [word for mark in MARKS for word in ("--mark", f"#{mark}")]
    return desk.start("record", folder / "talk.opr", *options, "--seconds", SECONDS, *marks,
                      audio=f"virtual:in={voices[channels]},pace={pace},count={folder / 'count'}",
                      stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def sound_of(path, kind):
    data = path.read_bytes()
    return data[44:] if kind == "wav" else data


def check_header(path, most_behind=65536):
    """The header of a killed take tells at most what the file holds, and nearly all of it."""
    data = path.read_bytes()
    if len(data) < 44:
        return
    riff, = struct.unpack_from("<I", data, 4)
    size, = struct.unpack_from("<I", data, 40)
    check(riff == size + 36, f"header of {path}: RIFF {riff}, data {size}")
    check(0 <= len(data) - 44 - size <= most_behind, f"header of {path}: {size} of {len(data) - 44}")


def delivered_frames(count):
    data = count.read_bytes() if count.exists() else b""
    return struct.unpack("<Q", data)[0] if len(data) == 8 else 0


def reference(desk, form, voices):
    """The same recording without a kill: its sound, and the seconds that it took."""
    folder = desk.path("whole")
    began = time.monotonic()
    equal(start(desk, folder, voices, form).wait(240), 0, "end of a whole recording")
    return sound_of(folder / f"talk00.{form[0]}", form[0]), time.monotonic() - began


def check_take(desk, folder, form, sound):
    """The take, its levels, marks and clip agree. Returns its buffers and its seconds."""
    kind, _, channels, frame_bytes = form
    take = folder / f"talk00.{kind}"
    rate = RATE if kind == "wav" else 48000
    samples = len(sound) // (2 * channels) if kind == "wav" else len(sound) // frame_bytes * FRAME
    if kind == "wav":
        check_header(take, most_behind=0)
        equal(len(sound), samples * 2 * channels, "whole samples")
    tool("ffprobe", "-v", "error", take)
    sheet = desk.json("show", folder / "talk00.jvu")
    levels, marks = len(sheet["levels"]), [mark["period"] for mark in sheet["marks"]]
    equal((sheet["range start"], sheet["range end"], sheet["removed ranges"]), (0, levels, []),
          "the selection")
    equal(levels, samples * 20 // rate, "levels")
    # A mark at period n is set once buffer n + 1 is saved, so the last may be missing.
    equal(marks, [min(mark, levels) for mark in MARKS[:len(marks)]], "marks")
    check(len(marks) >= sum(mark + 1 < levels for mark in MARKS), f"marks {marks} of {levels}")
    clips = desk.json("project", "show", folder / "talk.opr")["clips"]
    equal([clip["name"] for clip in clips], ["talk00"], "clips")
    return levels, samples / rate


def stop_one(desk, ending, form, voices, whole_sound):
    """A signal ends the take as the stop button does."""
    kind, _, channels, frame_bytes = form
    folder = desk.path("stop")
    recorder = start(desk, folder, voices, form, pace=20)
    wait_for(lambda: delivered_frames(folder / "count") > 5 * RATE, "five seconds of sound")
    recorder.send_signal(ending)
    equal(recorder.wait(20), 0, f"end by {ending.name}")
    check(not (folder / "talk00.rec").exists(), f"{ending.name} leaves a journal")
    sound = sound_of(folder / f"talk00.{kind}", kind)
    buffers, _ = check_take(desk, folder, form, sound)
    # The first buffer is not in it, but the one that the stop cut short is, as it came in.
    check(delivered_frames(folder / "count") // BUFFER <= buffers < SECONDS * 20,
          f"{ending.name}: a take of {buffers} buffers")
    full = ((buffers - 1) * BUFFER * 2 * channels if kind == "wav" else
            ((buffers - 1) * 2400 // FRAME - 2) * frame_bytes)
    check(sound[:full] == whole_sound[:full], f"{ending.name}: the take is not what was said")


def kill_one(desk, number, form, voices, whole, rng):
    """Returns the seconds that were lost; none when the recording had ended by itself."""
    kind, options, *_ = form
    whole_sound, whole_seconds = whole
    folder = desk.path("kill")
    take = folder / f"talk00.{kind}"
    recorder = start(desk, folder, voices, form)
    time.sleep(rng.uniform(0.0, 0.6 * whole_seconds))
    recorder.send_signal(signal.SIGKILL)
    recorder.wait(20)
    if recorder.returncode == 0:
        return None  # the machine has become faster: it was done before
    equal(recorder.returncode, -signal.SIGKILL, "end of the recording")

    # The first buffer is heard before saving begins.
    saved = max(delivered_frames(folder / "count") // BUFFER - 1, 0)
    if take.exists():
        os.utime(take, (LONG_AGO, LONG_AGO))
        if kind == "wav":
            check_header(take)
            tool("sndfile-info", take)
    desk.run("recover", folder / "talk.opr")

    check(not (folder / "talk00.rec").exists(), "the journal is gone after the recovery")
    lost = saved / 20
    if take.exists():
        sound = sound_of(take, kind)
        check(whole_sound.startswith(sound), f"kill {number}: the take is not what was said")
        equal(int(take.stat().st_mtime), LONG_AGO, "modification time")
        lost -= check_take(desk, folder, form, sound)[1]
    bound = 1 / 20 + (0 if kind == "wav" else 2 * FRAME / 48000)
    check(lost <= bound + 1e-6, f"kill {number} of {options}: {lost:.3f} s lost of {saved / 20} s")
    return lost


def main():
    rng = random.Random(SEED)
    worst = {"wav": 0.0, "mp2": 0.0}
    with Desk() as desk:
        voices = {channels: speech_at(desk.path(f"voice{channels}.wav"), RATE, channels, SECONDS)
                  for channels in (1, 2)}
        wholes = [reference(desk, form, voices) for form in FORMATS]
        for ending, at in ((signal.SIGTERM, 0), (signal.SIGINT, 3)):
            stop_one(desk, ending, FORMATS[at], voices, wholes[at][0])
        for number in range(KILLS):
            at = number % len(FORMATS)
            while (lost := kill_one(desk, number, FORMATS[at], voices, wholes[at], rng)) is None:
                pass
            kind = FORMATS[at][0]
            worst[kind] = max(worst[kind], lost)
    print(f"{KILLS} killed takes opened (seed {SEED}); most lost: WAV {1000 * worst['wav']:.1f} ms, "
          f"MP2 {1000 * worst['mp2']:.1f} ms")


if __name__ == "__main__":
    main()
