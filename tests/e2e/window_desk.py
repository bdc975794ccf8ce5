"""A display without a screen, and the window of orma-edit on it, driven as a user does."""

import contextlib
import ctypes
import os
import re
import signal
import struct
import subprocess
import time
from pathlib import Path

from orma_e2e import ORMA, ROOT, check, fail, tool, wait_for

EDIT = str(Path(ORMA).with_name("orma-edit"))
PORTRAIT = ROOT / "assets/skin/Portrait"

# The menus and their lines in the editor.
MENUS = {
    "File": ["Publish Clip...", "Open project", "New project", "Open clip", "Save selection",
             "Copy to clip-editor...", "Delete", "Recent projects", "Exit"],
    "Publish": ["Clip", "Cliplist", "Image", "Clip to File", "Cliplist to File"],
    "Edit": ["Crop begin", "Crop end", "Cut begin", "Cut end", "Mark"],
    "View": ["Record", "Editor", "Clip editor", "Edit Text", "About"],
}


@contextlib.contextmanager
def display(base=os.environ):
    """An X server of our own; yields the environment for programs on it, with what `base` has."""
    read, write = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-noreset", "-screen", "0",
                               "1280x1024x24", "-nolisten", "tcp"],
                              pass_fds=[write], stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL)
    os.close(write)
    try:
        number = os.read(read, 16).decode().strip()
        check(number, "Xvfb did not start")
        environment = dict(base, DISPLAY=f":{number}", QT_QPA_PLATFORM="xcb")
        environment.pop("WAYLAND_DISPLAY", None)
        yield environment
    finally:
        os.close(read)
        server.terminate()
        server.wait(20)


def layout(folder):
    """Element name to (x, y, w, h) in design pixels: the built-in ones, and a skin's over them."""
    elements = {}
    source = (ROOT / "src/ui/skin/layout_elements.inc").read_text()
    for name, *numbers in re.findall(r"ELEMENT\((\w+), (\d+), (\d+), (\d+), (\d+)\)", source):
        elements[name] = [int(n) for n in numbers]
    for line in (folder / "pos.txt").read_text().splitlines():
        if line.startswith("["):
            section = line.strip("[] \t")
        elif "=" in line and section in elements:
            key, value = line.split("=")
            elements[section]["xywh".index(key.strip())] = int(value)
    return elements


def ask_to_close(display, window):
    """What a window manager does when the user closes the window."""
    x = ctypes.CDLL("libX11.so.6")
    x.XOpenDisplay.restype = ctypes.c_void_p
    server = ctypes.c_void_p(x.XOpenDisplay(display.encode()))
    protocols, delete = (x.XInternAtom(server, name, 0)
                         for name in (b"WM_PROTOCOLS", b"WM_DELETE_WINDOW"))
    message = struct.pack("iLiPLLi5l96x", 33, 0, 0, 0, window, protocols, 32, delete, 0, 0, 0, 0)
    x.XSendEvent(server, ctypes.c_ulong(window), 0, ctypes.c_long(0), message)
    x.XCloseDisplay(server)


class Window:
    """A running orma-edit and who works with it. Leaves it by closing it, and fails when it does not
    end well."""

    PROGRAM = EDIT
    TITLE = "Orma Edit"

    def __init__(self, environment, home, *arguments, skin=PORTRAIT, scale=2, covered=()):
        self.environment = environment
        self.elements = layout(skin)
        self.scale = scale
        self.program = subprocess.Popen([self.PROGRAM, "--home", str(home), *map(str, arguments)],
                                        env=environment, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True)
        self.id = self.find(self.TITLE, others=covered)
        self.tool("windowfocus", "--sync", self.id)

    def tool(self, *arguments):
        done = subprocess.run(["xdotool", *map(str, arguments)], env=self.environment,
                              capture_output=True, text=True, timeout=60)
        return done.stdout.strip()

    def shown(self, name="."):
        """The ids of the windows on the display whose titles match."""
        return self.tool("search", "--onlyvisible", "--name", name).split()

    def find(self, title, seconds=20, others=()):
        """The id of the visible window with that title, `others` left out."""
        def look():
            check(self.program.poll() is None, f"the program ended before '{title}' came up")
            found = self.shown(f"^{title}( . Orma Edit)?$")
            return [window for window in found if window not in others]
        return wait_for(look, f"a window '{title}'", seconds)[-1]

    def geometry(self, window=None):
        """x, y, width, height of the whole window."""
        text = self.tool("getwindowgeometry", "--shell", window or self.id)
        values = dict(line.split("=") for line in text.splitlines())
        return [int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT")]

    def key(self, *keys):
        self.tool("key", "--window", self.id, *keys)

    def write(self, text):
        """Types into the window itself."""
        self.tool("type", "--window", self.id, text)

    def menu(self, place, *keys):
        """Opens the menu whose title stands `place` pixels from the left; keys choose within."""
        self.tool("mousemove", "--window", self.id, place, 9, "click", 1)
        time.sleep(0.5)
        self.tool("key", *keys)
        time.sleep(0.7)

    def choose(self, title, *keys):
        """Opens a menu by its title, whatever the font; keys choose within. Of all but the first
        menu the first line is chosen already."""
        self.menu(14, *["Right"] * list(MENUS).index(title), *keys)

    def pick(self, title, line, grey=()):
        """Picks a line of a menu; `grey` are those that cannot be chosen now."""
        lines = [name for name in MENUS[title] if name not in grey]
        self.choose(title, *["Down"] * (lines.index(line) + (title == "File")), "Return")

    def click(self, element, aside=0):
        """In the middle of an element, or so many design pixels right of it."""
        x, y, w, h = self.elements[element]
        bar = self.geometry()[3] - self.elements["MainWindow"][3] * self.scale  # above the page
        self.tool("mousemove", "--window", self.id, int((x + w / 2 + aside) * self.scale),
                  int((y + h / 2) * self.scale) + bar, "click", 1)

    def cursor(self, share):
        """Puts the editor's cursor there, as a share of the graph's width."""
        self.click("EditRecGraph", (share - 0.5) * self.elements["EditRecGraph"][2])
        time.sleep(0.3)

    def dialog(self, title, seconds=20):
        """Waits for a dialog or box of that title and goes to it."""
        found = self.find(title, seconds, others=[self.id])
        self.tool("windowfocus", "--sync", found)
        time.sleep(0.2)
        return found

    def answer(self, title, *keys, text=None, seconds=20):
        """Types into the dialog of that title, which is gone then."""
        window = self.dialog(title, seconds)
        if text is not None:
            self.tool("key", "ctrl+a")
            self.tool("type", "--delay", "5", text)
        self.tool("key", *keys)
        self.wait_gone(window, title)

    def wait_gone(self, window, title, seconds=20):
        wait_for(lambda: window not in self.shown(), f"the end of '{title}'", seconds)
        self.tool("windowfocus", "--sync", self.id)

    def no_box(self):
        """Nothing but the window itself is on the display."""
        names = {window: self.tool("getwindowname", window) for window in self.shown()}
        check(list(names) == [self.id], f"on the display: {names}")

    def close(self):
        ask_to_close(self.environment["DISPLAY"], int(self.id))

    def picture(self, path, window=None):
        """What the display shows of the window, or of a dialog of it, as a PNG file."""
        x, y, width, height = self.geometry(window)
        tool("ffmpeg", "-y", "-v", "error", "-f", "x11grab", "-draw_mouse", "0", "-video_size",
             f"{width}x{height}", "-i", f"{self.environment['DISPLAY']}+{x},{y}", "-frames:v", "1",
             "-pred", "mixed", "-compression_level", "100", path)
        return path

    def looks(self, desk):
        return self.picture(desk.path("looks.png")).read_bytes()

    def wait_end(self, seconds=30):
        """Waits until the program has ended; it must have done so well."""
        try:
            out, _ = self.program.communicate(timeout=seconds)
        except subprocess.TimeoutExpired:
            self.program.send_signal(signal.SIGABRT)
            fail(f"orma-edit did not end:\n{self.program.communicate()[0]}")
        check(self.program.returncode == 0, f"orma-edit ended with {self.program.returncode}:\n{out}")
        return out

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        if self.program.poll() is None:
            self.program.kill() if kind else self.program.terminate()
            self.program.wait(20)
