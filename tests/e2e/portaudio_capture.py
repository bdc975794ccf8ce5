#!/usr/bin/env python3
"""Speech through a real sound server: PulseAudio plays a file into a null sink, whose monitor is the
microphone that `orma record` takes. The take is, sample by sample, what was played.

ORMA_CAPTURE_SECONDS sets how much speech is played (20)."""

import contextlib
import os
import subprocess
import time

from orma_e2e import Desk, check, equal, samples, speech_at, wait_for
from record_and_publish import input_processing

SECONDS = int(os.environ.get("ORMA_CAPTURE_SECONDS", "20"))
LEAD = 2  # seconds of silence that are recorded before the speech


@contextlib.contextmanager
def sound_server(folder):
    """A PulseAudio of our own, with one null sink whose monitor is the only microphone."""
    runtime = folder / "pulse"
    runtime.mkdir(mode=0o700)
    alsa = folder / "asound.conf"
    alsa.write_text("</usr/share/alsa/alsa.conf>\npcm.!default { type pulse }\n"
                    "ctl.!default { type pulse }\n")
    environment = dict(os.environ, HOME=str(folder), XDG_RUNTIME_DIR=str(runtime),
                       PULSE_RUNTIME_PATH=str(runtime), PULSE_STATE_PATH=str(runtime),
                       ALSA_CONFIG_PATH=str(alsa), PULSE_SERVER=f"unix:{runtime}/native")
    server = subprocess.Popen(
        ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disallow-exit",
         "-L", "module-native-protocol-unix auth-anonymous=1",
         "-L", "module-null-sink sink_name=mic norewinds=1 rate=44100 format=s16le channels=1"],
        env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        wait_for(lambda: server.poll() is not None or subprocess.run(
            ["pactl", "info"], env=environment, capture_output=True).returncode == 0, "pulseaudio")
        check(server.poll() is None, "pulseaudio ended")
        yield environment
    finally:
        server.terminate()
        server.wait(20)


def sounding(heard):
    """From the first sample that is no silence, of which a server may put some before."""
    begin = next((i for i, sample in enumerate(heard) if sample != 0), None)
    check(begin is not None, "nothing was heard")
    return heard[begin:]


def check_heard(heard, wanted):
    """Every sample that sounds is there, in its place."""
    wanted = sounding(wanted)
    heard = sounding(heard)[:len(wanted)]
    equal(len(heard), len(wanted), "samples that were heard")
    first = next((i for i, pair in enumerate(zip(heard, wanted)) if pair[0] != pair[1]), None)
    check(first is None, f"sample {first} of {len(wanted)} differs")


def capture(desk, environment, voice, length):
    """Records `length` seconds while the voice is played; returns what orma reports."""
    recorder = desk.start("--json", "record", desk.path("live.opr"), "--wav", "--mono", "--seconds",
                          length, env=environment)
    time.sleep(LEAD)
    player = subprocess.run(["paplay", "--device=mic", str(voice)], env=environment,
                            capture_output=True, text=True, timeout=length + 60)
    check(player.returncode == 0, f"paplay: {player.stderr}")
    out, err = recorder.communicate(timeout=length + 60)
    equal(recorder.returncode, 0, f"exit code ({out}{err})")
    return out


def main():
    with Desk() as desk, sound_server(desk.folder) as environment:
        voice = speech_at(desk.path("voice.wav"), 44100, 1, SECONDS)
        report = capture(desk, environment, voice, SECONDS + LEAD + 3)
        check('"lost samples": 0' in report, f"samples were lost: {report}")

        spoken = input_processing(samples(voice))
        check_heard(samples(desk.path("live00.wav")), spoken)
        print(f"{len(spoken)} samples ({SECONDS} s) through PulseAudio: all equal, none lost")


if __name__ == "__main__":
    main()
