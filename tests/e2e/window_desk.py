"""A display without a screen, and the window of orma-edit on it, driven as a user does."""

import contextlib
import os
import re
import signal
import subprocess
import time
from pathlib import Path

from orma_e2e import ORMA, ROOT, check, fail, tool

EDIT = os.environ.get("ORMA_EDIT", str(Path(ORMA).with_name("orma-edit")))


@contextlib.contextmanager
def display(width=1280, height=1024):
    """An X server of our own; yields the environment for programs on it."""
    read, write = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-noreset", "-screen", "0",
                               f"{width}x{height}x24", "-nolisten", "tcp"],
                              pass_fds=[write], stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL)
    os.close(write)
    try:
        number = os.read(read, 16).decode().strip()
        check(number, "Xvfb did not start")
        environment = dict(os.environ, DISPLAY=f":{number}", QT_QPA_PLATFORM="xcb")
        environment.pop("WAYLAND_DISPLAY", None)
        yield environment
    finally:
        os.close(read)
        server.terminate()
        server.wait(20)


def layout(folder=None):
    """Element name to (x, y, w, h) in design pixels: the built-in ones, and a skin's over them."""
    elements = {}
    source = (ROOT / "src/ui/skin/layout_elements.inc").read_text()
    for name, *numbers in re.findall(r"ELEMENT\((\w+), (\d+), (\d+), (\d+), (\d+)\)", source):
        elements[name] = [int(n) for n in numbers]
    if folder and (folder / "pos.txt").exists():
        section = None
        for line in (folder / "pos.txt").read_text().splitlines():
            if line.startswith("["):
                section = line.strip("[] \t")
            elif "=" in line and section in elements:
                key, value = line.split("=")
                elements[section]["xywh".index(key.strip())] = int(value)
    return elements


class Window:
    """A running orma-edit. Leaves it by closing it, and fails when it does not end well."""

    def __init__(self, environment, home, *arguments, skin=None, scale=2, covered=()):
        self.environment = environment
        self.elements = layout(skin)
        self.scale = scale
        self.program = subprocess.Popen([EDIT, "--home", str(home), *map(str, arguments)],
                                        env=environment, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True)
        self.id = self.find("Orma Edit", others=covered)
        self.tool("windowfocus", "--sync", self.id)

    def tool(self, *arguments):
        done = subprocess.run(["xdotool", *map(str, arguments)], env=self.environment,
                              capture_output=True, text=True, timeout=60)
        return done.stdout.strip()

    def find(self, title, seconds=20, others=()):
        """The id of the visible window with that title, `others` left out."""
        for _ in range(seconds * 10):
            found = self.tool("search", "--onlyvisible", "--name", f"^{title}$").split()
            if found := [window for window in found if window not in others]:
                return found[-1]
            if self.program.poll() is not None:
                fail(f"orma-edit ended with {self.program.returncode}:\n"
                     f"{self.program.stdout.read()}")
            time.sleep(0.1)
        fail(f"no window '{title}' came up")

    def geometry(self, window=None):
        """x, y, width, height of the whole window."""
        text = self.tool("getwindowgeometry", "--shell", window or self.id)
        values = dict(line.split("=") for line in text.splitlines())
        return [int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT")]

    def key(self, *keys):
        self.tool("key", "--window", self.id, *keys)

    def menu(self, place, *keys):
        """Opens the menu whose title stands `place` pixels from the left; keys choose within."""
        self.tool("mousemove", "--window", self.id, place, 9, "click", 1)
        time.sleep(0.5)
        self.tool("key", *keys)
        time.sleep(0.7)

    def choose(self, title, *keys):
        """Opens a menu by its title, whatever the font; keys choose within. Of all but the first
        menu the first line is chosen already."""
        self.tool("mousemove", "--window", self.id, 14, 9, "click", 1)
        time.sleep(0.5)
        self.tool("key", *["Right"] * ["File", "Publish", "Edit", "View"].index(title), *keys)
        time.sleep(0.7)

    def page_place(self, element):
        """The middle of an element within the window, whose menu bar stands above the page."""
        x, y, w, h = self.elements[element]
        page = self.elements["MainWindow"][3] * self.scale
        bar = self.geometry()[3] - page
        return int((x + w / 2) * self.scale), int((y + h / 2) * self.scale) + bar

    def click(self, element, aside=0):
        """In the middle, or so many design pixels right of it."""
        x, y = self.page_place(element)
        self.tool("mousemove", "--window", self.id, int(x + aside * self.scale), y, "click", 1)

    def drag(self, element, dx, dy):
        x, y = self.page_place(element)
        self.tool("mousemove", "--window", self.id, x, y, "mousedown", 1)
        self.tool("mousemove", "--window", self.id, x + dx, y + dy)
        self.tool("mouseup", 1)

    def visible(self):
        """The ids of all windows of the program."""
        return set(self.tool("search", "--onlyvisible", "--pid", self.program.pid).split())

    def click_menu(self, place, line):
        """Opens the menu as `menu` does and clicks that line, counted from the last, which is 1."""
        before = self.visible()
        self.tool("mousemove", "--window", self.id, place, 9, "click", 1)
        for _ in range(50):
            time.sleep(0.1)
            if popup := self.visible() - before:
                break
        else:
            fail("no menu opened")
        popup = popup.pop()
        _, _, width, height = self.geometry(popup)
        self.tool("mousemove", "--window", popup, width // 2, height - 12 - (line - 1) * 22,
                  "click", 1)
        time.sleep(0.7)

    def picture(self, path, window=None):
        """What the display shows of the window, or of a dialog of it, as a PNG file."""
        x, y, width, height = self.geometry(window)
        tool("ffmpeg", "-y", "-v", "error", "-f", "x11grab", "-draw_mouse", "0", "-video_size",
             f"{width}x{height}", "-i", f"{self.environment['DISPLAY']}+{x},{y}", "-frames:v", "1",
             "-pred", "mixed", "-compression_level", "100", path)
        return path

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
