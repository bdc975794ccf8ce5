"""What a reporter does in the window besides pressing its buttons: menus by their words, dialogs,
boxes, closing the window."""

import ctypes
import subprocess
import time

from orma_e2e import ROOT, check, fail
from window_desk import Window

SKIN = ROOT / "assets/skin/Portrait"

# Where each menu's title stands, pixels from the left, and its lines in the editor.
MENUS = {
    "File": (27, ["Publish Clip...", "Open project", "New project", "Open clip", "Save selection",
                  "Copy to clip-editor...", "Delete", "Recent projects", "Exit"]),
    "Publish": (88, ["Clip", "Cliplist", "Image", "Clip to File", "Cliplist to File"]),
    "Edit": (150, ["Crop begin", "Crop end", "Cut begin", "Cut end", "Mark"]),
    "View": (207, ["Record", "Editor", "Clip editor", "Edit Text", "About"]),
}


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5), ("pad", ctypes.c_long * 12)]


def ask_to_close(display, window):
    """What a window manager does when the user closes the window."""
    x = ctypes.CDLL("libX11.so.6")
    x.XOpenDisplay.restype = ctypes.c_void_p
    x.XInternAtom.restype = ctypes.c_ulong
    x.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    x.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long,
                             ctypes.c_void_p]
    x.XCloseDisplay.argtypes = [ctypes.c_void_p]
    server = x.XOpenDisplay(display.encode())
    message = _ClientMessage(type=33, window=window, format=32,
                             message_type=x.XInternAtom(server, b"WM_PROTOCOLS", 0))
    message.data[0] = x.XInternAtom(server, b"WM_DELETE_WINDOW", 0)
    x.XSendEvent(server, window, 0, 0, ctypes.byref(message))
    x.XCloseDisplay(server)


class User(Window):
    """The window and who works with it. `grey` are the menu lines that cannot be chosen now."""

    def __init__(self, environment, home, *arguments):
        super().__init__(environment, home, *arguments, skin=SKIN)

    def choose(self, menu, line, grey=()):
        place, lines = MENUS[menu]
        lines = [name for name in lines if name not in grey]
        self.menu(place, *["Down"] * (lines.index(line) + 1), "Return")

    def shown(self):
        """The windows on the display and their titles."""
        windows = self.tool("search", "--onlyvisible", "--name", ".").split()
        return {window: self.tool("getwindowname", window) for window in windows}

    def dialog(self, title, seconds=20):
        """Waits for a dialog or box of that title and goes to it."""
        for _ in range(seconds * 10):
            found = self.tool("search", "--onlyvisible", "--name", f"^{title}( . Orma Edit)?$").split()
            found = [window for window in found if window != self.id]
            if found or self.program.poll() is not None:
                break
            time.sleep(0.1)
        if not found:
            fail(f"no dialog '{title}', but {self.shown()}")
        found = found[-1]
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
        for _ in range(seconds * 10):
            if window not in self.shown():
                break
            time.sleep(0.1)
        else:
            fail(f"'{title}' stays")
        self.tool("windowfocus", "--sync", self.id)

    def no_box(self):
        """Nothing but the window itself is on the display."""
        check(list(self.shown()) == [self.id], f"on the display: {self.shown()}")

    def close(self):
        ask_to_close(self.environment["DISPLAY"], int(self.id))

    def cursor(self, share):
        """Puts the editor's cursor there, as a share of the graph's width."""
        x, y = self.page_place("EditRecGraph")
        width = self.elements["EditRecGraph"][2] * self.scale
        self.tool("mousemove", "--window", self.id, int(x + (share - 0.5) * width), y, "click", 1)
        time.sleep(0.3)

    def looks(self, desk, name):
        return self.picture(desk.path(f"{name}.png")).read_bytes()


def wait_for(condition, what, seconds=20):
    for _ in range(seconds * 10):
        if condition():
            return
        time.sleep(0.1)
    fail(f"{what}: not within {seconds} s")


def say(environment, voice):
    """Somebody speaks into the microphone."""
    return subprocess.Popen(["paplay", "--device=mic", str(voice)], env=environment)
