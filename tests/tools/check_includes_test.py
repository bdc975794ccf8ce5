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
    ("platform/posix/other.cpp", '#include "platform/curl/ftp_reply.h"\n',
     "1: platform/posix may not use platform/curl"),
    ("platform/portaudio/leak.h", "#include <portaudio.h>\n",
     "1: <portaudio.h> may not be included here"),
    ("audio/files/leak.h", "#include <twolame.h>\n", "1: <twolame.h> may not be included here"),
    ("base/round.h", '#include "base/round.h"\n', "1: circle: base/round.h -> base/round.h"),
    ("base/CMakeLists.txt", "# foundation\norma_library(orma_base USES orma_stream)\n",
     "2: base may not link stream"),
]

with tempfile.TemporaryDirectory() as copy:
    shutil.copytree(ROOT / "src", Path(copy, "src"))
    for name, content, fault in FAULTS:
        wrong = Path(copy, "src", name)
        wrong.parent.mkdir(exist_ok=True)
        wrong.write_text(content, encoding="utf-8")
        run = subprocess.run([ROOT / "tools/check-includes", "--root", copy], text=True,
                             capture_output=True, check=False)
        if (run.returncode, run.stderr) != (1, f"src/{name}:{fault}\n"):
            sys.exit(f"src/{name}:{fault} is found as {run.returncode}:\n{run.stderr}")
        wrong.unlink()
