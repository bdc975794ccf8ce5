#!/usr/bin/env python3
"""What is installed is whole: the programs run from there with their skins, the desktop and the
manual know them, and every command stands in the manual."""

import gzip
import os
import re
import shutil
import socket
import subprocess
import tempfile
from pathlib import Path

from orma_e2e import SPEECH, check, equal

BUILD = Path(os.environ["ORMA_BUILD"])


def output(*words, **environment):
    return subprocess.run([str(word) for word in words], check=True, text=True, timeout=60,
                          env=dict(os.environ, **environment), capture_output=True).stdout


def commands_of(program):
    """Each command and option of the first level, from the program's own help."""
    text = output(program, "--help")
    part = text.partition("Subcommands:\n")
    commands = re.findall(r"^  ([a-z][a-z-]*) ", part[2], re.MULTILINE)
    return [*commands, *re.findall(r"--[a-z-]+", part[0])]


def network_is_beside_the_program(prefix, home):
    """The installed program loads what talks to servers; without it that alone is missing."""
    def told():
        done = subprocess.run([prefix / "bin/orma", "--home", home, "test-connection"], text=True,
                              timeout=60, capture_output=True)
        equal(done.returncode, 1, f"nobody listens there: {done.stdout}{done.stderr}")
        return done.stdout + done.stderr

    with socket.socket() as nobody:
        nobody.bind(("127.0.0.1", 0))
        server = "127.0.0.1:%d" % nobody.getsockname()[1]
        output(prefix / "bin/orma", "--home", home, "settings", "set", f"FtpServer={server}")
        whole = told()
        check("connect" in whole and "library" not in whole, f"not asked: {whole}")
        (prefix / "lib/orma-edit/network.so").unlink()
        check("shared library" in told(), f"the reason is not told: {told()}")


def main():
    with tempfile.TemporaryDirectory() as folder:
        prefix = Path(folder, "usr")
        output("cmake", "--install", BUILD, "--prefix", prefix)
        share = prefix / "share"

        commands = commands_of(prefix / "bin/orma")
        check(len(commands) > 15, f"the help names only {commands}")
        manual = gzip.decompress((share / "man/man1/orma.1.gz").read_bytes()).decode()
        for command in commands:
            word = command.replace("--", "Fl -")
            check(re.search(rf"(?<![\w-]){re.escape(word)}\b", manual),
                  f"the manual does not know {command}")

        nowhere = {"DISPLAY": "", "WAYLAND_DISPLAY": "", "QT_QPA_PLATFORM": ""}
        for program in ("orma-edit", "orma-setup"):
            check("--home" in output(prefix / "bin" / program, "--help", **nowhere),
                  f"without a display {program} does not explain itself")
        picture = Path(folder, "window.png")
        home = Path(folder, "home")
        output(prefix / "bin/orma-edit", "--home", home, "--audio", f"virtual:in={SPEECH}", "--screenshot",
               picture, QT_QPA_PLATFORM="offscreen")
        check("--home" in output(prefix / "bin/orma-setup", "--help", QT_QPA_PLATFORM="offscreen"),
              "the installed set-up program does not run")
        check((share / "man/man1/orma-setup.1.gz").exists(), "it has no manual")
        check(picture.read_bytes().startswith(b"\x89PNG"), "the installed window shows nothing")
        network_is_beside_the_program(prefix, home)
        for shape in ("Portrait", "Square", "Landscape"):
            check((share / f"orma-edit/skin/{shape}/494@2x.bmp").exists(), f"no skin {shape}")
        sizes = {icon.parent.parent.name for icon in share.glob("icons/hicolor/*/apps/orma-edit.*")}
        equal(sizes, {f"{n}x{n}" for n in (16, 22, 24, 32, 48, 64, 128, 256, 512)} | {"scalable"},
              "sizes of the icon")

        for checker, files in ((["desktop-file-validate"], share.glob("applications/*.desktop")),
                               (["appstreamcli", "validate", "--no-net"],
                                share.glob("metainfo/*.xml"))):
            for file in files:
                output(*checker, file)
        shutil.copytree(share / "mime", Path(folder, "mime"))
        output("update-mime-database", Path(folder, "mime"))
        magic = Path(folder, "mime/magic").read_bytes()
        check(b"application/x-orma-project" in magic, "projects are not known by their magic")

        output("bash", "-euc", f". {share}/bash-completion/completions/orma\n"
               f"PATH={prefix}/bin:$PATH COMP_WORDS=(orma publish --fa) COMP_CWORD=2\n"
               '_orma orma; [[ ${COMPREPLY[*]} == --fast ]]')


if __name__ == "__main__":
    main()
