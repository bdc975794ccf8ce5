"""FTP and SMTP servers that say exactly what a test wants, hostile things too.

    with ScriptedFtp({"REST": b"502 no\r\n"}) as server: ... server.port, server.files, server.said
    with ScriptedSmtp({"RCPT": b"450 later\r\n", "QUIT": silence}) as server: ... server.messages

A reply is bytes, or a callable that gets the Link (below are some), or a list: one for each time
the command comes, the last for ever. Without a reply of its own a command gets the usual one.
FTP: by verb, "greeting", and "stored" (the reply after the data). SMTP: "greeting", the verbs,
"password" (the last line after AUTH), "body" (after the message). `said` holds all lines of the
client.
"""

import base64
import socket
import threading

from .ftp_servers import Account
from .process import HOST


class Gone(Exception):
    """The client, or the test, has ended."""


class Link:
    """One control connection."""

    def __init__(self, server, connection):
        self.server, self.connection = server, connection
        self.input = connection.makefile("rb")

    def send(self, data):
        try:
            self.connection.sendall(data)
        except OSError:
            raise Gone from None

    def line(self):
        try:
            line = self.input.readline(65536)
        except (OSError, ValueError):
            raise Gone from None
        if not line:
            raise Gone
        self.server.said.append(line.rstrip(b"\r\n").decode("latin-1"))
        return line

    def wait(self, seconds):
        """Sleeps, but ends with the test."""
        if self.server.ended.wait(seconds):
            raise Gone


def silence(link):
    link.wait(3600)


def drop(link):
    raise Gone


def split(reply, pause=1.0):
    """One byte at a time."""
    def play(link):
        for byte in reply:
            link.send(bytes([byte]))
            link.wait(pause)
    return play


def endless(piece):
    """The same bytes for ever: reply lines, NULs, a line without an end. Twice the gigabyte that a
    client could want to keep, then the end."""
    def play(link):
        block = piece * (65536 // len(piece) + 1)
        for _ in range(2 * 1024 ** 3 // len(block)):
            link.send(block)
        raise Gone
    return play


ENDLESS_LINES = endless(b"220-still talking\r\n")
ENDLESS_NULS = endless(b"\0")
ENDLESS_LINE = endless(b"220 word ")
BYTE_A_SECOND = split(b"220 " + b"slow " * 1000 + b"\r\n")


class Scripted:
    def __init__(self, replies=None):
        self.replies = {key: list(reply) if isinstance(reply, list) else [reply]
                        for key, reply in (replies or {}).items()}
        self.said = []
        self.ended = threading.Event()
        self.links = []
        self.listener = socket.create_server((HOST, 0))
        self.port = self.listener.getsockname()[1]

    def __enter__(self):
        threading.Thread(target=self._accept, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.ended.set()
        for link in [self.listener, *self.links]:
            try:
                link.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass
            link.close()

    def _accept(self):
        while not self.ended.is_set():
            try:
                connection, _ = self.listener.accept()
            except OSError:
                return
            self.links.append(connection)
            threading.Thread(target=self._run, args=(connection,), daemon=True).start()

    def _run(self, connection):
        link = Link(self, connection)
        try:
            self.session(link)
        except (Gone, OSError):
            pass
        link.input.close()
        connection.close()

    def play(self, link, step, usual):
        """Gives the reply of a step; true if it is the usual one or as good (below 400)."""
        own = self.replies.get(step)
        reply = usual if own is None else own.pop(0) if len(own) > 1 else own[0]
        if callable(reply):
            reply(link)
            return False
        link.send(reply)
        return reply < b"4"


class ScriptedFtp(Scripted):
    """Takes any log-in; stores in `files`, by name as sent. No TLS."""

    def __init__(self, replies=None):
        super().__init__(replies)
        self.files = {}

    def account(self, host=HOST):
        return Account(host, self.port, "any", "secret", "")

    def session(self, link):
        self.play(link, "greeting", b"220 ready\r\n")
        rest, data = 0, None
        usual = {"USER": b"331 password\r\n", "PASS": b"230 in\r\n", "PWD": b'257 "/"\r\n',
                 "TYPE": b"200 ok\r\n", "CWD": b"250 ok\r\n", "NOOP": b"200 ok\r\n",
                 "REST": b"350 go on\r\n", "QUIT": b"221 bye\r\n"}
        while True:
            verb, _, argument = link.line().decode("latin-1").strip().partition(" ")
            verb = verb.upper()
            if verb == "EPSV":
                data = socket.create_server((HOST, 0))
                data.settimeout(20)
                self.play(link, verb, b"229 here (|||%d|)\r\n" % data.getsockname()[1])
            elif verb == "SIZE":
                known = argument in self.files
                self.play(link, verb, b"213 %d\r\n" % len(self.files[argument]) if known else
                          b"550 no such file\r\n")
            elif verb == "STOR":
                if self.play(link, verb, b"150 send it\r\n"):
                    self.receive(data, self.files.setdefault(argument, bytearray()), rest)
                    self.play(link, "stored", b"226 stored\r\n")
                data.close()
                rest, data = 0, None
            else:
                done = self.play(link, verb, usual.get(verb, b"502 unknown\r\n"))
                if verb == "REST" and done:
                    rest = int(argument)
                if verb == "QUIT":
                    return

    @staticmethod
    def receive(listener, file, offset):
        connection, _ = listener.accept()
        del file[offset:]
        file += bytes(offset - len(file))  # a resume behind the end leaves a hole, as on a disk
        with connection:
            try:
                while piece := connection.recv(65536):
                    file += piece
            except ConnectionError:
                pass


class ScriptedSmtp(Scripted):
    """Stores what follows DATA, dots as sent, in `messages`."""

    def __init__(self, replies=None, extensions=("AUTH CRAM-MD5 LOGIN",)):
        super().__init__(replies)
        self.extensions, self.messages = extensions, []

    def session(self, link):
        self.play(link, "greeting", b"220 localhost ready\r\n")
        lines = ["localhost", *self.extensions]
        ehlo = "".join(f"250{'-' if i < len(lines) - 1 else ' '}{line}\r\n"
                       for i, line in enumerate(lines)).encode()
        usual = {"EHLO": ehlo, "HELO": b"250 localhost\r\n", "QUIT": b"221 bye\r\n",
                 "DATA": b"354 go on\r\n", **dict.fromkeys(("MAIL", "RCPT", "RSET"), b"250 ok\r\n")}
        while True:
            verb, _, argument = link.line().decode("latin-1").strip().partition(" ")
            verb = verb.upper()
            if verb == "AUTH":
                self.log_in(link, argument.upper())
            else:
                done = self.play(link, verb, usual.get(verb, b"500 unknown\r\n"))
                if verb == "DATA" and done:
                    self.body(link)
                if verb == "QUIT":
                    return

    def log_in(self, link, mechanism):
        login = mechanism.startswith("LOGIN")
        challenge = base64.b64encode(b"Username:" if login else b"<1.2@localhost>")
        if not self.play(link, "AUTH", b"334 " + challenge + b"\r\n"):
            return
        link.line()
        if login:
            link.send(b"334 " + base64.b64encode(b"Password:") + b"\r\n")
            link.line()
        self.play(link, "password", b"235 in\r\n")

    def body(self, link):
        data = bytearray()
        while (line := link.input.readline()) != b".\r\n":
            if not line:
                raise Gone
            data += line
        self.messages.append(bytes(data))
        self.play(link, "body", b"250 taken\r\n")
