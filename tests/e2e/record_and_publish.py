#!/usr/bin/env python3
"""Speech from the virtual microphone is recorded, marked, cut, cropped, saved in parts and published
as WAV and as MP2, looked at by programs that know nothing of this one."""

import json
import struct
import subprocess

from orma_e2e import check, chunks, equal, run_each, samples, speech_at, tool

PERIOD = 2205  # samples of 50 ms at 44100 Hz
FRAME = 384  # bytes at 128 kbit/s


def input_processing(voice):
    """The DC blocker, the only thing that gain 0 dB without equaliser does to a sample."""
    out, held = [], 0
    for sample in voice:
        value = sample - (held >> 10)
        held += value
        out.append(max(-32767, min(32767, value)))
    return out


def stream(path):
    """Codec, rate and channels by ffprobe, and the samples that ffmpeg gets out of it unasked."""
    probed = json.loads(tool("ffprobe", "-v", "error", "-of", "json", "-show_streams", path))
    found = probed["streams"][0]
    done = subprocess.run(["ffmpeg", "-v", "error", "-i", str(path), "-f", "s16le", "-"],
                          capture_output=True, timeout=240)
    check(done.returncode == 0 and not done.stderr, f"ffmpeg on {path}: {done.stderr.decode()}")
    return (found["codec_name"], found["sample_rate"], found["channels"]), len(done.stdout) // 2


def publish(desk, project, *what):
    """The chunks of the file in order, and its path."""
    desk.run("publish", desk.path(f"{project}.opr"), *(what or ["--cliplist"]), "--to", "file")
    published = desk.path(f"pub_{project}.wav")
    desk.run("verify", published)
    return {name: content for name, _, content in chunks(published.read_bytes())}, published


def marks_and_cuts(desk, take):
    equal([m["period"] for m in desk.json("mark", take, "add", "0:02", "3.5", "#20")["marks"]],
          [20, 40, 70], "marks")
    left = desk.json("mark", take, "remove", "#20")["marks"]
    equal([m["time"] for m in left], ["0:02.00", "0:03.50"], "marks after removing one")
    before = desk.json("mark", take, "list")
    desk.run("mark", take, "remove", "#40", "#20", expect=1)
    equal(desk.json("mark", take, "list"), before, "marks after a refusal")
    desk.run("mark", take, "add", "soon", expect=2)

    desk.json("cut", take, "add", "1", "1.5")
    cuts = desk.json("cut", take, "add", "4", "5")
    equal([(c["begin"], c["end"]) for c in cuts["cuts"]],
          [("0:01.00", "0:01.50"), ("0:04.00", "0:05.00")], "cuts")
    equal(cuts["left by cuts"], "0:06.50", "what the cuts leave")
    desk.run("cut", take, "remove", "1", "2", expect=1)
    equal(len(desk.json("cut", take, "remove", "1", "1.5")["cuts"]), 1, "cuts after removing one")


def wav(desk):
    project, take = desk.path("harbour.opr"), desk.path("harbour00.wav")
    voice = speech_at(desk.path("voice.wav"), 44100, 1, 10)
    desk.record("harbour.opr", "--wav", "--mono", "--seconds", "8", speech=voice)
    spoken = samples(take)
    # Saving begins with the second buffer.
    equal(spoken, tuple(input_processing(samples(voice))[PERIOD:161 * PERIOD]), "the take")
    marks_and_cuts(desk, take)
    cropped = desk.json("crop", take, "1", "6")
    equal((cropped["clip"], cropped["plays"]), (1, "0:04.00"), "cropped clip")
    equal(samples(take), spoken, "sound after marks, cuts and crop")
    found, published = publish(desk, "harbour")
    equal(list(found), ["bext", "fmt ", "fact", "data", "levl", "qlty"], "chunks of PCM")
    levl = found["levl"]
    equal(struct.unpack_from("<I", levl, 20)[0], 80, "published periods: 5 s less 1 s")
    form, heard = stream(published)
    equal(form, ("pcm_s16le", "48000", 1), "ffprobe")
    check(heard >= 4 * 48000, "published sound is missing")

    # A part as a take of its own, then the same part as the take itself.
    part = desk.path("part.wav")
    desk.run("save-selection", take, "1", "6", part)
    equal(samples(part), spoken[20 * PERIOD:120 * PERIOD], "saved part")
    levels = desk.json("show", desk.path("part.jvu"))
    equal([m["period"] for m in levels["marks"]], [20, 50], "marks of the part")
    equal([(c["begin"], c["end"]) for c in levels["removed ranges"]], [(60, 80)], "its cuts")
    equal(len(levels["levels"]) * PERIOD, len(samples(part)), "one level for every buffer")
    equal(stream(part)[0], ("pcm_s16le", "44100", 1), "ffprobe")
    desk.run("save-selection", take, "1", "6", take, expect=1)
    equal(samples(take), spoken, "take without --overwrite")
    desk.run("save-selection", take, "1", "6", take, "--overwrite")
    equal(take.read_bytes(), part.read_bytes(), "take cut to the part")
    equal(desk.path("harbour00.jvu").read_bytes(), desk.path("part.jvu").read_bytes(), "levels")
    equal(publish(desk, "harbour")[0]["levl"], levl, "the clip is the whole take now: the same levels")

    desk.run("clips", project, "add", part, "#10", "#30")
    desk.run("clips", project, "rename", "2", "Häfen")
    clips = desk.json("clips", project, "move", "2", "1")
    equal([(c["title"], c["name"]) for c in clips["clips"]],
          [("Häfen", "part"), ("", "harbour00")], "clip list")
    equal(clips["total length"], "0:05.00", "its length")
    desk.run("clips", project, "add", desk.home / "x.wav", expect=1)
    desk.run("clips", project, "remove", "3", expect=1)
    desk.run("clips", project, "move", "1", expect=2)
    report = publish(desk, "harbour")[0]["qlty"][8:].decode("cp1252")
    check(", T=harbour00\r\n" in report, f"cue of the second clip: {report}")
    equal(len(desk.json("clips", project, "remove", "1")["clips"]), 1, "clips left")

    desk.run("delete", take, expect=1)
    check(take.exists(), "deleted without --yes")
    desk.run("delete", take, "--yes")
    check(not take.exists() and not desk.path("harbour00.jvu").exists(), "the take is still there")
    check(not project.exists(), "a project without clips has no file")
    check(part.exists(), "another recording went too")


def mp2(desk):
    project, take = desk.path("pier.opr"), desk.path("pier00.mp2")
    desk.record("pier.opr", "--mp2", "--bitrate", "128", "--stereo", "--seconds", "6",
                "--mark", "0:02")
    desk.record("pier.opr", "--seconds", "3")
    takes = [desk.path(f"pier{n:02}.mp2").read_bytes() for n in (0, 1)]
    found, published = publish(desk, "pier")
    equal(list(found), ["bext", "fmt ", "fact", "mext", "data", "levl", "qlty"], "chunks of MPEG")
    equal(found["data"], takes[0] + takes[1], "the stored frames, unchanged")
    count = len(found["data"]) // FRAME
    equal(struct.unpack("<I", found["fact"])[0], count * 1152, "fact")
    equal(stream(published), (("mp2", "48000", 2), count * 1152 * 2), "ffprobe and ffmpeg")
    report = found["qlty"][8:].rstrip(b"\0").decode("cp1252").splitlines()
    equal(report[2:], ["C=N000, TS=00:00:02:0, T=pier00M0", "C=N001, TS=00:00:06:0, T=pier01",
                       "C=N002, TS=00:00:09:0, T=End"], "cue lines")
    general = json.loads(tool("mediainfo", "--Output=JSON", published))["media"]["track"][0]
    equal(general.get("Producer"), "PC", "originator as mediainfo reads it")
    check("Encoded_Date" in general or "Recorded_Date" in general, f"no date: {general}")

    # A range of one take carries just its frames, and so does a part that is saved.
    part, _ = publish(desk, "pier", "--take", "pier00", "--from", "0:01", "--to", "0:03")
    equal(part["data"], takes[0][41 * FRAME:125 * FRAME], "frames of 0:01 to 0:03")
    desk.run("save-selection", take, "#7", "#101", desk.path("shore.mp2"))
    equal(desk.path("shore.mp2").read_bytes(), takes[0][14 * FRAME:210 * FRAME], "a saved part")
    desk.run("save-selection", take, "#7", "#101", desk.path("shore.wav"), expect=2)
    desk.run("save-selection", take, "#7", "#101", take, "--overwrite")
    desk.run("save-selection", take, "#0", "#90", take, "--overwrite")
    equal(take.read_bytes(), takes[0][14 * FRAME:(14 + 187) * FRAME], "frames after two cuts")
    equal([m["period"] for m in desk.json("mark", take, "list")["marks"]], [33], "mark moved along")
    desk.run("delete", project, "--yes")
    check(not take.exists() and not project.exists(), "the project is still there")


if __name__ == "__main__":
    run_each(wav, mp2)
