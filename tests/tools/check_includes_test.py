#!/usr/bin/env python3
"""Breaks every rule of tools/check-includes once, in a small tree of its own."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECKER = Path(__file__).resolve().parents[2] / "tools" / "check-includes"

SOUND_TREE = {
    "base/text.h": "#include <string>\n",
    "platform/wave.h": '#include "base/text.h"\n',
    "platform/posix/poller.cpp": '#include <poll.h>\n#include "platform/wave.h"\n#ifdef __linux__\n',
    "platform/portaudio/sound.h": '#include "platform/wave.h"\n',
    "platform/portaudio/sound.cpp": '#include <portaudio.h>\n#include "platform/posix/event.h"\n',
    "platform/posix/event.h": "#include <sys/eventfd.h>\n",
    "stream/jstream.h": '#include "platform/wave.h"\n',
    "audio/files/encoder.cpp": '#include <twolame.h>\n#include "stream/jstream.h"\n',
    "cli/main.cpp": '#include <CLI/CLI.hpp>\n#include "platform/portaudio/sound.h"\n',
    "base/CMakeLists.txt": "orma_library(orma_base)\n",
    "stream/CMakeLists.txt": "orma_library(orma_stream USES orma_base)\n",
}


def check(changes):
    """Runs the checker on the sound tree with `changes` on top; returns exit code and messages."""
    with tempfile.TemporaryDirectory() as root:
        for name, content in {**SOUND_TREE, **changes}.items():
            path = Path(root, "src", name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(content, encoding="utf-8")
        run = subprocess.run([sys.executable, CHECKER, "--root", root], text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
        return run.returncode, run.stderr.splitlines()


class CheckIncludes(unittest.TestCase):
    def test_a_sound_tree_passes(self):
        self.assertEqual((0, []), check({}))

    def test_each_broken_rule_is_the_one_fault_reported(self):
        faults = {
            "src/base/up.h:2: base may not use stream":
                {"base/up.h": '#include <vector>\n#include "stream/jstream.h"\n'},
            "src/platform/posix/other.cpp:1: platform/posix may not use platform/portaudio":
                {"platform/posix/other.cpp": '#include "platform/portaudio/sound.h"\n'},
            "src/stream/adapter.cpp:1: stream may not use platform/portaudio":
                {"stream/adapter.cpp": '#include "platform/portaudio/sound.h"\n'},
            "src/platform/port.h:1: <portaudio.h> may not be included here":
                {"platform/port.h": "#include <portaudio.h>\n"},
            "src/platform/portaudio/leak.h:1: <portaudio.h> may not be included here":
                {"platform/portaudio/leak.h": "#include <portaudio.h>\n"},
            "src/audio/files/encoder.h:1: <twolame.h> may not be included here":
                {"audio/files/encoder.h": "#include <twolame.h>\n"},
            "src/stream/socket.cpp:1: <sys/socket.h> may not be included here":
                {"stream/socket.cpp": "#include <sys/socket.h>\n"},
            "src/stream/system.cpp:1: a condition on the operating system outside platform/":
                {"stream/system.cpp": "#  if defined(_WIN32)\n"},
            'src/stream/near.cpp:1: "jstream.h" is no path from src/':
                {"stream/near.cpp": '#include "jstream.h"\n'},
            "src/extra/new.h:1: the folder extra has no place in the order of layers":
                {"extra/new.h": "\n"},
            "src/base/b.h:1: circle: base/a.h -> base/b.h -> base/a.h":
                {"base/a.h": '#include "base/b.h"\n', "base/b.h": '#include "base/a.h"\n'},
            "src/base/CMakeLists.txt:2: base may not link stream":
                {"base/CMakeLists.txt": "# foundation\norma_library(orma_base USES orma_stream)\n"},
        }
        for fault, changes in faults.items():
            with self.subTest(fault):
                self.assertEqual((1, [fault]), check(changes))


if __name__ == "__main__":
    unittest.main()
