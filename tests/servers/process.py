"""A server program in a temporary home: started, watched, killed, frozen, ended.

Servers never run as root: a test that is root runs them as nobody, any other as itself. Programs
come from build/servers, where tools/setup unpacks them, and are copied to the home, because nobody
may not be allowed to look into the source tree.
"""

import os
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from . import supervisor

ROOT = Path(__file__).resolve().parents[2]
UNPACKED = ROOT / "build/servers"
UID = 65534 if os.geteuid() == 0 else os.getuid()
GID = 65534 if os.geteuid() == 0 else os.getgid()
HOST = "127.0.0.1"


class ServerFailed(Exception):
    """A server that did not start; carries what it printed and logged."""


def claim_ports(count=40):
    """Ports away from those that the system gives to clients, and the bound name that keeps every
    other test process from them until it is closed."""
    for first in range(10000, 32000, count):
        claim = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        try:
            claim.bind(f"\0orma-test-ports-{first}")
            for port in range(first, first + count):
                with socket.socket() as probe:
                    probe.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
                    probe.bind((HOST, port))
        except OSError:
            claim.close()
            continue
        return range(first, first + count), claim
    raise ServerFailed("every port is taken")


class Server:
    """Base of every real server; use as a context manager. A subclass has settings(), which writes
    the configuration into home, and command(), which stays in the foreground."""

    LIMIT = 3600  # seconds that end it in any case
    user = "reporter"
    password = "secret"
    greets_first = True

    def __init__(self, certificate=None):
        self.certificate = certificate
        self.environment = {}
        self.process = None
        self.ports, self.claim = claim_ports()
        self.port = self.ports[0]
        self.home = Path(tempfile.mkdtemp(prefix="orma-server-"))
        self.home.chmod(0o755)
        self.log = self.home / "log"
        self.disk_limit = self.home / "disk-limit"
        for name in ("bin", "root"):
            (self.home / name).mkdir()
        if certificate:
            shutil.copy(certificate.certificate, self.home / "certificate.pem")
            shutil.copy(certificate.key, self.home / "key.pem")

    def __enter__(self):
        try:
            self.settings()
            self.start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.kill()
        self.claim.close()
        shutil.rmtree(self.home, ignore_errors=True)

    def program(self, path):
        """Copies a program, or a whole folder, from the unpacked packages; returns the copy."""
        source, copy = UNPACKED / path, self.home / "bin" / Path(path).name
        if not source.exists():
            raise ServerFailed(f"{path} is not unpacked, run: tools/setup servers")
        shutil.copytree(source, copy) if source.is_dir() else shutil.copy2(source, copy)
        return copy

    def preload(self, *libraries):
        """The libraries loaded into the server, preload.c always among them."""
        built = self.home / "bin/preload.so"
        subprocess.run(["cc", "-shared", "-fPIC", "-O1", "-o", built,
                        Path(__file__).with_name("preload.c"), "-ldl"], check=True)
        self.environment["LD_PRELOAD"] = " ".join([*libraries, str(built)])
        self.environment["TEST_DISK_LIMIT"] = str(self.disk_limit)

    def pretend_users(self, names):
        """The users, with groups of the same names, that the server finds instead of the
        machine's; wants libnss_wrapper.so among the preloaded libraries."""
        def lines(form):
            return "".join(form.format(n, i, GID if i == UID else i) for n, i in names.items())
        self.environment |= {
            "NSS_WRAPPER_PASSWD": str(self.write("names", lines("{0}:x:{1}:{2}::/:/bin/sh\n"))),
            "NSS_WRAPPER_GROUP": str(self.write("groups", lines("{0}:x:{2}:\n")))}

    def write(self, name, text):
        path = self.home / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return path

    def own(self):
        """Gives all of home to the user of the server."""
        if os.geteuid() == 0:
            for path in [self.home, *self.home.rglob("*")]:
                os.chown(path, UID, GID, follow_symlinks=False)

    def start(self):
        """Starts on the same ports as before; returns when it greets."""
        self.own()
        with open(self.home / "output", "ab") as output:
            self.process = subprocess.Popen(
                [sys.executable, supervisor.__file__, str(self.LIMIT), str(UID),
                 *map(str, self.command())],
                stdin=subprocess.PIPE, start_new_session=True, stdout=output, stderr=output,
                cwd=self.home,
                env={"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C", **self.environment})
        end = time.monotonic() + 15
        while not self.greets():
            if self.process.poll() is not None or time.monotonic() > end:
                said = [p.read_text(errors="replace")
                        for p in (self.home / "output", self.log) if p.is_file()]
                raise ServerFailed(f"{type(self).__name__} does not start:\n" + "\n".join(said))
            time.sleep(0.02)

    def greets(self):
        try:
            with socket.create_connection((HOST, self.port), 1) as link:
                link.settimeout(5)
                return not self.greets_first or link.recv(3) == b"220"
        except OSError:
            return False

    def kill(self):
        """Ends the server and all its sessions at once, as a power cut does."""
        if self.process:
            supervisor.signal_all(self.process.pid, signal.SIGKILL)
            self.process.stdin.close()
            self.process.wait(20)
            self.process = None

    def freeze(self):
        """Stops every process of the server: connections stay, nothing answers."""
        supervisor.signal_all(self.process.pid, signal.SIGSTOP)

    def thaw(self):
        if self.process:
            supervisor.signal_all(self.process.pid, signal.SIGCONT)

    def fill_disk(self, size):
        """No file of the server can grow beyond `size` bytes any more."""
        staged = self.home / "disk-limit.new"
        staged.write_text(str(size))
        staged.chmod(0o644)
        staged.rename(self.disk_limit)

    def free_disk(self):
        self.disk_limit.unlink(missing_ok=True)
