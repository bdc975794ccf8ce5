#!/usr/bin/env python3
"""Recorded speech is marked, cut, cropped, saved in parts and published by the command line."""

import struct

from orma_e2e import Desk, check, chunks, equal, samples, tool

PERIOD = 2205  # samples of 50 ms at 44100 Hz
FRAME = 192  # bytes at 64 kbit/s


def marks_and_cuts(desk, take):
    equal([m["period"] for m in desk.json("mark", take, "add", "0:02", "3.5", "#20")["marks"]],
          [20, 40, 70], "marks")
    desk.json("mark", take, "add", "#20")  # it is there
    left = desk.json("mark", take, "remove", "#20")["marks"]
    equal([m["time"] for m in left], ["0:02.00", "0:03.50"], "marks after removing one")
    for wrong in ("#20", "1:00"):
        before = desk.json("mark", take, "list")
        desk.run("mark", take, "remove", "#40", wrong, expect=1)
        equal(desk.json("mark", take, "list"), before, "marks after a refusal")
    desk.run("mark", take, "add", "soon", expect=2)

    desk.json("cut", take, "add", "1", "1.5")
    cuts = desk.json("cut", take, "add", "4", "5")
    equal([(c["begin"], c["end"]) for c in cuts["cuts"]],
          [("0:01.00", "0:01.50"), ("0:04.00", "0:05.00")], "cuts")
    equal(cuts["left by cuts"], "0:06.50", "what the cuts leave")
    desk.run("cut", take, "remove", "1", "2", expect=1)
    equal(len(desk.json("cut", take, "remove", "1", "1.5")["cuts"]), 1, "cuts after removing one")


def publish(desk, project, extension="wav"):
    desk.run("publish", desk.path(f"{project}.opr"), "--cliplist", "--to", "file")
    published = desk.path(f"pub_{project}.{extension}")
    desk.run("verify", published)
    return {name: content for name, _, content in chunks(published.read_bytes())}


def wav(desk):
    project, take = desk.path("harbour.opr"), desk.path("harbour00.wav")
    desk.record("harbour.opr", "--wav", "--mono", "--seconds", "8")
    spoken = samples(take)
    marks_and_cuts(desk, take)
    cropped = desk.json("crop", take, "1", "6")
    equal((cropped["clip"], cropped["plays"]), (1, "0:04.00"), "cropped clip")
    equal(samples(take), spoken, "sound after marks, cuts and crop")
    levl = publish(desk, "harbour")["levl"]
    equal(struct.unpack_from("<I", levl, 20)[0], 80, "published periods: 5 s less 1 s")

    # A part as a take of its own, then the same part as the take itself.
    part = desk.path("part.wav")
    desk.run("save-selection", take, "1", "6", part)
    equal(samples(part), spoken[20 * PERIOD:120 * PERIOD], "saved part")
    levels = desk.json("show", desk.path("part.jvu"))
    equal([m["period"] for m in levels["marks"]], [20, 50], "marks of the part")
    equal([(c["begin"], c["end"]) for c in levels["removed ranges"]], [(60, 80)], "its cuts")
    check("pcm_s16le" in tool("ffprobe", "-v", "error", "-show_streams", part), "ffprobe")
    desk.run("save-selection", take, "1", "6", take, expect=1)
    equal(samples(take), spoken, "take without --overwrite")
    desk.run("save-selection", take, "1", "6", take, "--overwrite")
    equal(take.read_bytes(), part.read_bytes(), "take cut to the part")
    equal(desk.path("harbour00.jvu").read_bytes(), desk.path("part.jvu").read_bytes(), "levels")
    equal(publish(desk, "harbour")["levl"], levl, "the clip is the whole take now: the same levels")

    desk.run("clips", project, "add", part, "#10", "#30")
    desk.run("clips", project, "rename", "2", "Häfen")
    clips = desk.json("clips", project, "move", "2", "1")
    equal([(c["title"], c["name"]) for c in clips["clips"]],
          [("Häfen", "part"), ("", "harbour00")], "clip list")
    equal(clips["total length"], "0:05.00", "its length")
    desk.run("clips", project, "add", desk.home / "x.wav", expect=1)
    desk.run("clips", project, "remove", "3", expect=1)
    desk.run("clips", project, "move", "1", expect=2)
    report = publish(desk, "harbour")["qlty"][8:].decode("cp1252")
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
    desk.record("pier.opr", "--mp2", "--bitrate", "64", "--mono", "--seconds", "8")
    frames = take.read_bytes()
    desk.run("mark", take, "add", "3")
    desk.run("save-selection", take, "#7", "#101", desk.path("shore.mp2"))
    equal(desk.path("shore.mp2").read_bytes(), frames[14 * FRAME:210 * FRAME], "frames of the part")
    desk.run("save-selection", take, "#7", "#101", desk.path("shore.wav"), expect=2)
    desk.run("save-selection", take, "#7", "#101", take, "--overwrite")
    desk.run("save-selection", take, "#0", "#90", take, "--overwrite")
    equal(take.read_bytes(), frames[14 * FRAME:(14 + 187) * FRAME], "frames after two cuts")
    equal([m["period"] for m in desk.json("mark", take, "list")["marks"]], [53], "mark moved along")
    data = publish(desk, "pier")["data"]
    equal(data, take.read_bytes(), "published frames")
    desk.run("delete", project, "--yes")
    check(not take.exists() and not project.exists(), "the project is still there")


def main():
    with Desk() as desk:
        wav(desk)
        mp2(desk)
    print("edited, published and checked")


if __name__ == "__main__":
    main()
