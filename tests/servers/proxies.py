"""Proxies between client and server that break at an exact byte.

    with FtpProxy(server.port) as proxy:
        proxy.when(100_000, proxy.cut_data)      # once, after that many uploaded bytes
        ... client at proxy.port ...
        proxy.check_fired()

FtpProxy follows one plain FTP server: it rewrites the replies to EPSV and counts the bytes of the
data connections. TcpProxy passes one connection after another through untouched (SMTP) and counts
the bytes to the server. Actions for `when`: cut_data (reset), end_data (a clean end), drop_control
(data goes on), drop_all, freeze (until thaw), or any callable; they run in the thread that forwards,
when exactly so many bytes went through. Only uploads count.
"""

import re
import select
import socket
import struct
import threading

from .process import HOST


class TcpProxy:
    def __init__(self, port):
        self.server_port = port
        self.uploaded = 0  # bytes that went to the server since the start
        self.armed = []  # (byte, action), the next one first
        self.timers = []
        self.running = threading.Event()
        self.running.set()
        self.ended = False
        self.pairs = {"control": [], "data": []}
        self.broken = set()  # connections that must end with a reset
        self.lock = threading.Lock()
        self.listener = socket.create_server((HOST, 0))
        self.port = self.listener.getsockname()[1]

    def __enter__(self):
        self._accept(self.listener, self._serve)
        return self

    def __exit__(self, *_):
        for timer in self.timers:
            timer.join()
        self.ended = True
        self.listener.close()
        self.running.set()
        self.drop_all()

    def when(self, byte, action):
        """Arms an action at a byte count from now on."""
        with self.lock:
            self.armed = sorted([*self.armed, (self.uploaded + byte, action)], key=lambda a: a[0])

    def later(self, seconds, action):
        """Does so in that time, while the proxy lives."""
        self.timers.append(threading.Timer(seconds, action))
        self.timers[-1].start()

    def check_fired(self):
        """An accident that did not happen proves nothing."""
        if self.armed:
            raise AssertionError(f"only {self.uploaded} bytes were sent, the accident was to come "
                                 f"at {self.armed[0][0]}")

    def cut_data(self):
        self._close("data", reset=True)

    def end_data(self):
        self._close("data", reset=False)

    def drop_control(self):
        self._close("control", reset=True)

    def drop_all(self):
        self.cut_data()
        self.drop_control()

    def freeze(self):
        self.running.clear()

    def thaw(self):
        self.running.set()

    def _close(self, kind, reset):
        """Only wakes the threads that forward: they close, since nobody else safely can."""
        with self.lock:
            links = self.pairs[kind]
            self.broken |= set(links) if reset else set()
            for link in links:
                try:
                    link.shutdown(socket.SHUT_RD if reset else socket.SHUT_RDWR)
                except OSError:
                    pass

    def _accept(self, listener, serve, once=False):
        # A stalled network holds little: without this the kernel alone would take megabytes.
        listener.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 65536)

        def loop():
            while not self.ended:
                try:
                    if not select.select([listener], [], [], 0.1)[0]:
                        continue
                    client, _ = listener.accept()
                except (OSError, ValueError):
                    return
                threading.Thread(target=serve, args=(client,), daemon=True).start()
                if once:
                    listener.close()
                    return
        threading.Thread(target=loop, daemon=True).start()

    def _serve(self, client):
        self._join(client, self.server_port, "data")

    def _join(self, client, port, kind, rewrite=None):
        """Forwards both ways until either side ends."""
        try:
            server = socket.create_connection((HOST, port), 10)
        except OSError:
            client.close()
            return
        server.settimeout(None)
        for link in (client, server):  # small, so that counts here and bytes there stay close
            link.setsockopt(socket.SOL_SOCKET, socket.SO_SNDBUF, 65536)
        with self.lock:
            self.pairs[kind] += [client, server]
        count = kind == "data"
        up = threading.Thread(target=self._forward, args=(client, server, count, None), daemon=True)
        up.start()
        self._forward(server, client, False, rewrite)
        up.join()
        with self.lock:
            self.pairs[kind] = [l for l in self.pairs[kind] if l not in (client, server)]
            for link in (client, server):
                if link in self.broken:  # lingering for no time at all is a reset
                    self.broken.remove(link)
                    link.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
                link.close()

    def _forward(self, source, target, count, rewrite):
        try:
            while (data := source.recv(65536)) and source not in self.broken:
                self.running.wait()
                if rewrite:
                    data = rewrite(data)
                while count and self.armed and self.uploaded + len(data) >= self.armed[0][0]:
                    at, action = self.armed[0]
                    target.sendall(data[:at - self.uploaded])
                    data, self.uploaded = data[at - self.uploaded:], at
                    del self.armed[0]
                    action()
                    self.running.wait()
                if source in self.broken:
                    return
                target.sendall(data)
                self.uploaded += len(data) if count else 0
            if source not in self.broken:
                target.shutdown(socket.SHUT_WR)
        except OSError:  # one side is gone: the other is told, and so is its thread
            with self.lock:
                self.broken |= {source, target}
            for link in (source, target):
                try:
                    link.shutdown(socket.SHUT_RD)
                except OSError:
                    pass


class FtpProxy(TcpProxy):
    def _serve(self, client):
        left = b""

        def rewrite(data):
            nonlocal left
            whole, newline, left = (left + data).rpartition(b"\n")
            return b"".join(map(self._reply, (whole + newline).splitlines(keepends=True)))

        self._join(client, self.server_port, "control", rewrite)

    def _reply(self, line):
        if not (passive := re.match(rb"229 .*\(\|\|\|(\d+)\|\)", line)):
            return line
        listener = socket.create_server((HOST, 0))
        self._accept(listener, lambda client: self._join(client, int(passive[1]), "data"), once=True)
        return b"229 Extended Passive Mode (|||%d|)\r\n" % listener.getsockname()[1]
