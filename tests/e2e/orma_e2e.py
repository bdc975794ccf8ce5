"""What the end-to-end tests share: running the built program, speech to record, faults to tell."""

import json
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import wave
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
ORMA = os.environ.get("ORMA", str(ROOT / "build/dev/bin/orma"))
SPEECH = ROOT / "assets/speech/reporter.wav"


class Desk:
    """A folder of its own with a program folder in it; removed at the end."""

    def __enter__(self):
        self.folder = Path(tempfile.mkdtemp(prefix="orma-e2e-"))
        self.home = self.folder / "home"
        self.home.mkdir()
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder, ignore_errors=True)

    def path(self, name):
        return self.folder / name

    def command(self, *arguments, audio=None):
        sound = ["--audio", audio] if audio else []
        return [str(a) for a in (ORMA, "--home", self.home, *sound, *arguments)]

    def start(self, *arguments, audio=None, wrapper=(), **options):
        """Starts orma, by way of another program if one is given."""
        options = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options}
        return subprocess.Popen([*wrapper, *self.command(*arguments, audio=audio)], text=True, **options)

    def run(self, *arguments, audio=None, expect=0, **options):
        """Runs orma; its exit code must be the expected one. Returns the finished process."""
        command = self.command(*arguments, audio=audio)
        done = subprocess.run(command, capture_output=True, text=True, timeout=240, **options)
        if done.returncode != expect:
            fail(f"{' '.join(command)} ended with {done.returncode}, not {expect}\n"
                 f"{done.stdout}{done.stderr}")
        return done

    def json(self, *arguments, **options):
        return json.loads(self.run("--json", *arguments, **options).stdout)

    def set(self, values=(), **more):
        """Changes settings."""
        self.run("settings", "set", *(f"{name}={value}" for name, value in dict(values, **more).items()))

    def use(self, account, security=0, ca="", **more):
        """Makes an FTP account of the servers the destination in use."""
        server = f"{account.host}:{account.port}"
        self.set({"FtpServer": server, "FtpUser": account.user, "FtpPassword": account.password,
                  "FtpFolder": account.folder, "FtpPassive": 1, "CurrentFtpName": "studio",
                  "Ftp[0].Name": "studio", "Ftp[0].Server": server, "Ftp[0].Security": security,
                  "CaFile": ca}, **more)

    def use_mail(self, host, port, user="", password="", security=0, ca="", **more):
        """Makes a mail account the one in use; with a user it logs in."""
        self.set({"Smtp[0].Name": "desk", "CurrentSmtpName": "desk", "SmtpServer": host,
                  "SmtpUser": user, "SmtpPassword": password, "SmtpAuth": 1 if user else 0,
                  "Smtp[0].Port": port, "Smtp[0].Security": security, "CaFile": ca}, **more)

    def record(self, project, *options, speech=None, expect=0, **more):
        return self.run("record", self.path(project), *options, expect=expect,
                        audio=f"virtual:in={speech or SPEECH},pace=fast", **more)


def run_each(*parts):
    """Runs each on a desk of its own; only those that the command line names, if it does."""
    for part in parts:
        if len(sys.argv) < 2 or part.__name__ in sys.argv[1:]:
            with Desk() as desk:
                part(desk)
            print(f"{part.__name__}: whole")


def wait_for(condition, what, seconds=20):
    """Waits for something true and returns it."""
    end = time.monotonic() + seconds
    while not (found := condition()):
        check(time.monotonic() < end, f"{what}: not within {seconds} s")
        time.sleep(0.05)
    return found


def fail(text):
    print("FAILED:", text, file=sys.stderr)
    sys.exit(1)


def check(condition, text):
    if not condition:
        fail(text)


def equal(got, wanted, what):
    check(got == wanted, f"{what}: {repr(got)[:300]}, expected {repr(wanted)[:300]}")


def tool(*command):
    """Runs an independent checker and returns what it printed."""
    done = subprocess.run([str(c) for c in command], capture_output=True, text=True, timeout=240)
    check(done.returncode == 0, f"{command[0]} refused the file:\n{done.stdout}{done.stderr}")
    return done.stdout


def speech_at(path, rate, channels, seconds):
    """The sample speech as a 16-bit WAV of exactly this format and length, repeated as needed."""
    tool("sox", SPEECH, "-r", rate, "-c", channels, "-b", 16, path, "repeat", "-", "trim", 0,
         seconds)
    return path


def samples(path):
    """The interleaved 16-bit samples of a WAV file."""
    with wave.open(str(path)) as file:
        data = file.readframes(file.getnframes())
    return struct.unpack(f"<{len(data) // 2}h", data)


def chunks(data):
    """The chunks of a RIFF file's bytes as (identifier, offset of its data, data), in order."""
    equal(data[:4] + data[8:12], b"RIFFWAVE", "form")
    equal(struct.unpack_from("<I", data, 4)[0], len(data) - 8, "RIFF size")
    found, at = [], 12
    while at < len(data):
        size = struct.unpack_from("<I", data, at + 4)[0]
        check(at + 8 + size <= len(data), f"the chunk at {at} reaches past the file's end")
        found.append((data[at:at + 4].decode(), at + 8, data[at + 8:at + 8 + size]))
        at += 8 + size
    return found
