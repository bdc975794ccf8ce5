#!/usr/bin/env python3
"""The external recorder and the S/PDIF card, played by files: what they deliver is what a take
holds, and what is wrong with them is told."""

import struct
import wave

from orma_e2e import SPEECH, Desk, check, equal, samples, speech_at, tool
from record_and_publish import input_processing


def says(done, *texts):
    """The lines on standard error, all of them."""
    equal(done.stderr.splitlines(), list(texts), "what was said")


def digital(path, rate):
    """The sample speech as 4 s of 24-bit stereo."""
    tool("sox", "-D", SPEECH, "-r", rate, "-c", 2, "-b", 24, "-t", "wavpcm", path, "repeat", "-",
         "trim", 0, 4)
    return path


def frames(path, count):
    with wave.open(str(path)) as file:
        return file.getparams()[:3], file.readframes(count)


def encoded(desk, heard, channels):
    """MP2 frames of 128 kbit/s, made by the twolame program of the upper 16 bits of 24-bit stereo."""
    words = struct.unpack(f"<{len(heard) // 3}h", b"".join(
        heard[i + 1:i + 3] for i in range(0, len(heard), 3)))
    sides = [list(words[side::2]) for side in range(channels)]
    mixed = [sample for frame in zip(*sides) for sample in frame]
    raw, frames_file = desk.path("side.raw"), desk.path("side.mp2")
    raw.write_bytes(struct.pack(f"<{len(mixed)}h", *mixed))
    tool("twolame", "--quiet", "-r", "-s", 48000, "-N", channels, "-m", "sm"[channels == 1], "-b",
         128, raw, frames_file)
    return frames_file.read_bytes()


def from_card(desk, sound, *arguments, extra="", **more):
    return desk.run("--hardware", f"simulated:card={sound},pace=fast{extra}", "record", *arguments,
                    **more)


def listing(desk):
    sound = digital(desk.path("a.wav"), 48000)
    attached = desk.json("--hardware", f"simulated:recorder={sound},version=4,card={sound}",
                         "devices")
    name = "MAYCOM simulated recorder"
    equal(attached["external recorder"], {"name": name, "number": 1, "version": 5}, "recorder")
    equal(attached["digital input"], f"PSI1: {sound}", "card")
    equal([i["name"] for i in attached["inputs"]], [name], "inputs")
    bare = desk.json("--hardware", "alsa:card=hw:77", "devices", audio=f"virtual:in={sound}")
    equal(bare["external recorder"], "none", "recorder without one")
    desk.run("--hardware", "alsa:card=hw:0,rate=x", "devices", expect=2)


def recorder(desk):
    """A take at 48000 Hz, whose gain and configuration are the recorder's own."""
    desk.set(RecorderConfig1=17, RecorderConfig2=4000000000, RecorderConfig3=255)
    sound = speech_at(desk.path("voice.wav"), 48000, 1, 4)
    hardware = ("--hardware", f"simulated:recorder={sound}", "--trace", desk.path("trace"))
    audio = f"virtual:in={sound},pace=fast"
    for kind in ("wav", "mp2"):
        take = desk.json(*hardware, "record", desk.path(f"{kind}.opr"), f"--{kind}", "--mono",
                         "--seconds", 3, audio=audio)
        equal((take["periods"], take["lost samples"]), (60, 0), f"{kind} take")
    check("simulated recorder: configuration 17 4000000000 255" in desk.path("trace").read_text(),
          "the recorder has its configuration")
    # The first buffer starts the take and is not in it; its DC blocker has run all the same.
    taken = samples(desk.path("wav00.wav"))
    heard = input_processing(samples(sound))
    equal(taken, tuple(heard[2400:2400 + len(taken)]), "the take")

    desk.run(*hardware, "record", desk.path("wav.opr"), "--gain", -12, "--seconds", 2, audio=audio)
    quiet = input_processing([round(s * 10 ** (-12 / 20)) for s in samples(sound)])
    taken = samples(desk.path("wav01.wav"))
    equal(taken, tuple(quiet[2400:2400 + len(taken)]), "the take at -12 dB")
    equal(desk.json("settings", "get", "MaycomGain")["MaycomGain"], 168, "the gain that is remembered")
    desk.run(*hardware, "record", desk.path("wav.opr"), "--gain", 32, "--seconds", 2, audio=audio,
             expect=2)
    publish(desk, "wav", "mp2")


def card(desk):
    """Takes of 24 bits hold the bits of the signal; MP2 takes are encoded from 16 of them."""
    desk.set(SpdifInput=1)
    for rate, channels in ((44100, 1), (48000, 2), (96000, 2)):
        sound = digital(desk.path(f"{rate}.wav"), rate)
        name = f"bits{rate}"
        from_card(desk, sound, desk.path(f"{name}.opr"), "--wav",
                  "--mono" if channels == 1 else "--stereo", "--seconds", 2)
        form, taken = frames(desk.path(f"{name}00.wav"), 2 * rate)
        equal(form, (channels, 3, rate), "the take's format")
        _, heard = frames(sound, 3 * rate)
        first = rate // 20 * 6
        heard = heard[first:first + 2 * rate * 6]
        if channels == 1:
            heard = b"".join(heard[at:at + 3] for at in range(0, len(heard), 6))
        check(taken == heard, f"the take at {rate} Hz is not what came in")
    _, heard = frames(desk.path("48000.wav"), 4 * 48000)
    for channels, mode in ((1, "mono"), (2, "stereo")):
        from_card(desk, desk.path("48000.wav"), desk.path(f"{mode}.opr"), "--mp2", f"--{mode}",
                  "--bitrate", 128, "--seconds", 3)
        taken = desk.path(f"{mode}00.mp2").read_bytes()
        equal(len(taken), -(-61 * 2400 // 1152) * 384, "bytes of the take")
        # The buffer that the stop came into is there, without sound.
        sound = heard[14400:61 * 14400] + bytes(3 * 14400)
        check(encoded(desk, sound, channels).startswith(taken),
              f"the {mode} take is not what came in, encoded")
    publish(desk, "bits48000", "mono", "stereo")


def publish(desk, *projects):
    for name in projects:
        desk.run("publish", desk.path(f"{name}.opr"), "--cliplist", "--to", "file")
        desk.run("verify", desk.path(f"pub_{name}.wav"))


def failures(desk):
    desk.set(SpdifInput=1)
    sound = digital(desk.path("a.wav"), 48000)
    take = (desk.path("a.opr"), "--wav", "--mono", "--seconds", 3)
    says(from_card(desk, sound, *take, extra=",fault=no-signal", expect=1),
         "PDAudio: Record Fail no S/PDIF input ", "Error: No valid digital input signal")
    other = digital(desk.path("32000.wav"), 32000)
    says(from_card(desk, other, *take, expect=1), "Error: No valid digital input signal")
    says(from_card(desk, desk.path("none.wav"), *take, expect=1), "Error: No driver installed")
    says(desk.run("--hardware", "none", "record", *take, audio=f"virtual:in={sound},pace=fast",
                  expect=1), "Error: No driver installed")
    equal(list(desk.folder.glob("a0*")), [], "files of takes that were not made")
    says(from_card(desk, sound, *take, extra=",stall=2", expect=1), "Error: Time-out",
         "Error: Sound input lost Recorded and kept: 00:02")
    equal(desk.json("show", desk.path("a00.wav"))["length in periods"], 40, "what was kept")


def main():
    for part in (listing, recorder, card, failures):
        with Desk() as desk:
            part(desk)
        print(f"hardware: {part.__name__}")


if __name__ == "__main__":
    main()
