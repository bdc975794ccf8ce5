#!/usr/bin/env python3
"""The external recorder and the S/PDIF card, played by files: what they deliver is what a take
holds, and what is wrong with them is told."""

import wave

from orma_e2e import SPEECH, check, equal, run_each, samples, speech_at, tool
from record_and_publish import input_processing


def says(done, *texts):
    """The lines on standard error, all of them."""
    equal(done.stderr.splitlines(), list(texts), "what was said")


def digital(path, rate):
    """The sample speech as 4 s of 24-bit stereo, whose right channel is the quieter one."""
    tool("sox", "-D", SPEECH, "-r", rate, "-b", 24, "-t", "wavpcm", path, "repeat", "-", "trim", 0, 4,
         "remix", 1, "1v0.7")
    return path


def frames(path):
    with wave.open(str(path)) as file:
        return file.getparams()[:3], file.readframes(10**6)


def encoded(desk, heard, channels):
    """MP2 frames of 128 kbit/s, made by the twolame program of the upper 16 bits of 24-bit stereo;
    mono is its left channel."""
    raw, mp2 = desk.path("heard.raw"), desk.path("heard.mp2")
    step = 6 // channels
    raw.write_bytes(b"".join(heard[at + 1:at + 3] for at in range(0, len(heard), step)))
    tool("twolame", "--quiet", "-r", "-s", 48000, "-N", channels, "-m", "ms"[channels - 1], "-b", 128,
         raw, mp2)
    return mp2.read_bytes()


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
    desk.run("--hardware", "alsa:card=hw:0,rate=x", "devices", expect=2)


def recorder(desk):
    """A take at 48000 Hz, whose gain and configuration are the recorder's own."""
    desk.set(RecorderConfig1=17, RecorderConfig2=4000000000, RecorderConfig3=255)
    voice = speech_at(desk.path("voice.wav"), 48000, 1, 4)
    for number, gain in enumerate((0, -12)):
        desk.run("--hardware", f"simulated:recorder={voice}", "--trace", desk.path("trace"),
                 "record", desk.path("voice.opr"), "--wav", "--mono", "--gain", gain, "--seconds", 3,
                 audio=f"virtual:in={voice},pace=fast")
        heard = input_processing([round(s * 10 ** (gain / 20)) for s in samples(voice)])
        # The first buffer starts the take and is not in it; its DC blocker has run all the same.
        equal(samples(desk.path(f"voice{number:02}.wav")), tuple(heard[2400:2400 * 61]),
              f"the take at {gain} dB")
    check("simulated recorder: configuration 17 4000000000 255" in desk.path("trace").read_text(),
          "the recorder has its configuration")
    equal(desk.json("settings", "get", "MaycomGain")["MaycomGain"], 168, "the gain that is remembered")
    publish(desk, "voice")


def card(desk):
    """Takes of 24 bits hold the bits of the signal; MP2 takes are encoded from 16 of them."""
    desk.set(SpdifInput=1)
    for rate, channels in ((44100, 1), (48000, 2), (96000, 2)):
        sound = digital(desk.path(f"{rate}.wav"), rate)
        from_card(desk, sound, desk.path(f"bits{rate}.opr"), "--wav",
                  "--mono" if channels == 1 else "--stereo", "--seconds", 2)
        form, taken = frames(desk.path(f"bits{rate}00.wav"))
        equal(form, (channels, 3, rate), "the take's format")
        heard = frames(sound)[1][rate // 20 * 6:]
        if channels == 1:
            heard = b"".join(heard[at:at + 3] for at in range(0, len(heard), 6))
        size = 2 * rate * 3 * channels
        check(taken[:size] == heard[:size], f"the take at {rate} Hz is not what came in")
    # The buffer that the stop came into is there, without sound.
    sound = frames(desk.path("48000.wav"))[1][14400:61 * 14400] + bytes(3 * 14400)
    for channels, mode in ((1, "mono"), (2, "stereo")):
        from_card(desk, desk.path("48000.wav"), desk.path(f"{mode}.opr"), "--mp2", f"--{mode}",
                  "--bitrate", 128, "--seconds", 3)
        taken = desk.path(f"{mode}00.mp2").read_bytes()
        equal(len(taken), -(-61 * 2400 // 1152) * 384, f"bytes of the {mode} take")
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
    for fault, *texts in (("no-card", "Error: No PDAudio card present"),
                          ("no-signal", "PDAudio: Record Fail no S/PDIF input ",
                           "Error: No valid digital input signal")):
        says(from_card(desk, sound, *take, extra=f",fault={fault}", expect=1), *texts)
    for rate, kind, text in ((88200, "--wav", "No valid digital input signal"),
                             (32000, "--wav", "No valid digital input signal"),
                             (96000, "--mp2", "Sample rate not supported at mp2-recording")):
        other = digital(desk.path(f"{rate}.wav"), rate)
        says(from_card(desk, other, take[0], kind, *take[2:], expect=1), f"Error: {text}")
    says(from_card(desk, desk.path("none.wav"), *take, expect=1), "Error: No driver installed")
    says(desk.run("--hardware", "none", "record", *take, audio=f"virtual:in={sound},pace=fast",
                  expect=1), "Error: No driver installed")
    equal(list(desk.folder.glob("a0*")), [], "files of takes that were not made")
    says(from_card(desk, sound, *take, extra=",stall=2", expect=1), "Error: Time-out",
         "Error: Sound input lost Recorded and kept: 00:02")
    equal(desk.json("show", desk.path("a00.wav"))["length in periods"], 40, "what was kept")


if __name__ == "__main__":
    run_each(listing, recorder, card, failures)
