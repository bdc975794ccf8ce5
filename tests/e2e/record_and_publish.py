#!/usr/bin/env python3
"""Speech from the virtual microphone to a published Broadcast-Wave file, as WAV and as MP2, looked
at by programs that know nothing of this one."""

import json
import struct
import subprocess

from orma_e2e import Desk, check, chunks, equal, samples, speech_at, tool


PERIOD = 2205  # samples of 50 ms at 44100 Hz


def input_processing(voice):
    """The DC blocker, the only thing that gain 0 dB without equaliser does to a sample."""
    out, held = [], 0
    for sample in voice:
        value = sample - (held >> 10)
        held += value
        out.append(max(-32767, min(32767, value)))
    return out


def ffprobe(path):
    return json.loads(tool("ffprobe", "-v", "error", "-of", "json", "-show_streams",
                           "-show_format", path))


def decoded_samples(path):
    """How many samples ffmpeg gets out of a file, without a complaint."""
    done = subprocess.run(["ffmpeg", "-v", "error", "-i", str(path), "-f", "s16le", "-"],
                          capture_output=True, timeout=240)
    check(done.returncode == 0 and not done.stderr, f"ffmpeg on {path}: {done.stderr.decode()}")
    return len(done.stdout) // 2


def wav_project(desk):
    voice = speech_at(desk.path("voice.wav"), 44100, 1, 12)
    desk.record("harbour.opr", "--wav", "--mono", "--seconds", "10", "--mark", "0:03.50",
                "--mark", "#100", speech=voice)

    take = samples(desk.path("harbour00.wav"))
    spoken = input_processing(samples(voice))
    # Saving begins with the second buffer.
    equal(take, tuple(spoken[PERIOD:PERIOD + 10 * 44100]), "the take against what was spoken")

    levels = desk.json("show", desk.path("harbour00.jvu"))
    equal([m["period"] for m in levels["marks"]], [70, 100], "marks")
    equal(len(levels["levels"]) * PERIOD, len(take), "one level for every buffer")

    desk.run("publish", desk.path("harbour.opr"), "--cliplist", "--to", "file")
    published = desk.path("pub_harbour.wav")
    desk.run("verify", published)
    equal([c[0] for c in chunks(published.read_bytes())], ["bext", "fmt ", "fact", "data", "levl", "qlty"],
          "chunks of the PCM publication")
    stream = ffprobe(published)["streams"][0]
    equal((stream["codec_name"], stream["sample_rate"], stream["channels"]),
          ("pcm_s16le", "48000", 1), "ffprobe")
    check(decoded_samples(published) * 44100 >= len(take) * 48000, "published sound is missing")


def mp2_project(desk):
    desk.record("pier.opr", "--mp2", "--bitrate", "128", "--stereo", "--seconds", "6",
                "--mark", "0:02")
    desk.record("pier.opr", "--seconds", "3")
    takes = [desk.path(f"pier{n:02}.mp2").read_bytes() for n in (0, 1)]
    for take in takes:
        equal(len(take) % 384, 0, "whole frames of 128 kbit/s")

    desk.run("publish", desk.path("pier.opr"), "--cliplist", "--to", "file")
    published = desk.path("pub_pier.wav")
    desk.run("verify", published)
    found = chunks(published.read_bytes())
    equal([c[0] for c in found], ["bext", "fmt ", "fact", "mext", "data", "levl", "qlty"],
          "chunks of the MPEG publication")
    data = {name: content for name, _, content in found}
    equal(data["data"], takes[0] + takes[1], "the stored frames, unchanged")
    frames = len(data["data"]) // 384
    equal(struct.unpack("<I", data["fact"])[0], frames * 1152, "fact")
    stream = ffprobe(published)["streams"][0]
    equal((stream["codec_name"], stream["sample_rate"], stream["channels"]), ("mp2", "48000", 2),
          "ffprobe")
    equal(decoded_samples(published), frames * 1152 * 2, "samples that ffmpeg decodes")
    report = data["qlty"][8:].rstrip(b"\0").decode("cp1252").splitlines()
    equal(report[2:], ["C=N000, TS=00:00:02:0, T=pier00M0", "C=N001, TS=00:00:06:0, T=pier01",
                       "C=N002, TS=00:00:09:0, T=End"], "cue lines")

    info = json.loads(tool("mediainfo", "--Output=JSON", published))["media"]["track"]
    general = info[0]
    equal(general.get("Producer"), "PC", "originator as mediainfo reads it")
    check("Encoded_Date" in general or "Recorded_Date" in general, f"no date: {general}")

    # A range of one take carries just its frames.
    desk.run("publish", desk.path("pier.opr"), "--take", "pier00", "--from", "0:01", "--to", "0:03",
             "--to", "file")
    part = {name: content for name, _, content in chunks(published.read_bytes())}["data"]
    equal(part, takes[0][41 * 384:125 * 384], "frames of 0:01 to 0:03")


def main():
    with Desk() as desk:
        wav_project(desk)
        mp2_project(desk)
    print("recorded, published and checked")


if __name__ == "__main__":
    main()
