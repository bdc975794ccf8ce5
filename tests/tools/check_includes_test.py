#!/usr/bin/env python3
"""Breaks every rule of tools/check-includes once, in a copy of the sources."""

import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
# A file, what is wrong in it, and the fault that is reported behind its name.
FAULTS = [
    ("base/up.h", '#include <vector>\n#include "stream/jstream.h"\n', "2: base may not use stream"),
    ("stream/sideways.h", '#include "settings/settings_record.h"\n',
     "1: stream may not use settings"),
    ("stream/os.cpp", "#include <string>\n#if defined(_WIN32)\n#endif\n",
     "2: a condition on the operating system outside platform/"),
    ("base/beside.cpp", '#include "text.h"\n', '1: "text.h" is no path from src/'),
    ("attic/old.h", "", "1: the folder attic has no place in the order of layers"),
    ("publish/socket.cpp", "#include <sys/socket.h>\n",
     "1: <sys/socket.h> may not be included here"),
    ("publish/direct.cpp", '#include "platform/curl/ftp_reply.h"\n',
     "1: publish may not use platform/curl"),
    ("platform/curl/above.cpp", '#include "stream/jstream.h"\n',
     "1: platform/curl may not use stream"),
    ("platform/posix/other.cpp", '#include "platform/curl/ftp_reply.h"\n',
     "1: platform/posix may not use platform/curl"),
    ("platform/portaudio/leak.h", "#include <portaudio.h>\n",
     "1: <portaudio.h> may not be included here"),
    ("audio/files/leak.h", "#include <twolame.h>\n", "1: <twolame.h> may not be included here"),
    ("base/round.h", '#include "base/round.h"\n', "1: circle: base/round.h -> base/round.h"),
    ("base/CMakeLists.txt", "# foundation\norma_library(orma_base USES orma_stream)\n",
     "2: base may not link stream"),
]

DRAWING = "docs/architecture.md"


def expect(copy, fault):
    run = subprocess.run([ROOT / "tools/check-includes", "--root", copy], text=True,
                         capture_output=True, check=False)
    if (run.returncode, run.stderr) != (1, fault + "\n"):
        sys.exit(f"{fault} is found as {run.returncode}:\n{run.stderr}")


with tempfile.TemporaryDirectory() as copy:
    shutil.copytree(ROOT / "src", Path(copy, "src"))
    for name, content, fault in FAULTS:
        wrong = Path(copy, "src", name)
        wrong.parent.mkdir(exist_ok=True)
        wrong.write_text(content, encoding="utf-8")
        expect(copy, f"src/{name}:{fault}")
        wrong.unlink()
    drawing = Path(copy, DRAWING)
    drawing.parent.mkdir()
    drawn = (ROOT / DRAWING).read_text(encoding="utf-8")
    drawing.write_text(drawn.replace("  platform --> base\n", "", 1), encoding="utf-8")
    expect(copy, f"{DRAWING} draws another graph than --mermaid prints")
