"""What happens to a delivery: each scenario calls `publish(account)` while the accident happens.

`publish` runs the client against a ftp_servers.Account and returns whatever it likes, which the
scenario returns; judging that and `server.root` is the test's part. `at` counts uploaded bytes. An
accident that never came (too few bytes) raises AssertionError. The server is whole again afterwards.
"""

import threading

from .proxies import FtpProxy


def _through_proxy(server, publish, at, choose):
    with FtpProxy(server) as proxy:
        proxy.when(at, choose(proxy))
        result = publish(server.account(proxy.port))
        proxy.check_fired()
        return result


def cut_data(server, publish, at):
    """The data connection is reset; control stays."""
    return _through_proxy(server, publish, at, lambda proxy: proxy.cut_data)


def end_data(server, publish, at):
    """The data connection ends cleanly: to the server the file looks complete."""
    return _through_proxy(server, publish, at, lambda proxy: proxy.end_data)


def drop_control(server, publish, at):
    """The control connection is reset, data still flows."""
    return _through_proxy(server, publish, at, lambda proxy: proxy.drop_control)


def drop_all(server, publish, at):
    return _through_proxy(server, publish, at, lambda proxy: proxy.drop_all)


def _later(seconds, action):
    timer = threading.Timer(seconds, action)
    timer.start()
    return timer


def kill_and_restart(server, publish, at, pause=0.5):
    """The server is killed with all its sessions and back on its port after `pause` seconds."""
    timers = []

    def accident():
        server.kill()
        timers.append(_later(pause, server.start))
    try:
        return _through_proxy(server, publish, at, lambda _: accident)
    finally:
        for timer in timers:
            timer.join()


def freeze(server, publish, at, seconds):
    """The server stops for so long; connections stay open, nothing answers."""
    timers = []

    def accident():
        server.freeze()
        timers.append(_later(seconds, server.thaw))
    try:
        return _through_proxy(server, publish, at, lambda _: accident)
    finally:
        for timer in timers:
            timer.cancel()
        server.thaw()


def stall(server, publish, at, seconds):
    """The network stops for so long, the server does not."""
    def choose(proxy):
        def accident():
            proxy.freeze()
            _later(seconds, proxy.thaw)
        return accident
    return _through_proxy(server, publish, at, choose)


def full_disk(server, publish, at, free_after=None):
    """No file grows beyond `at` bytes, for ever or until `free_after` seconds from now."""
    server.fill_disk(at)
    timer = _later(free_after, server.free_disk) if free_after else None
    try:
        return publish(server.account())
    finally:
        if timer:
            timer.cancel()
        server.free_disk()


def wrong_password(server, publish):
    return publish(server.account(password="not " + server.password))


def missing_folder(server, publish):
    return publish(server.account(folder=server.account().folder.rstrip("/") + "/no/such/folder"))


def read_only(server, publish):
    server.read_only()
    try:
        return publish(server.account())
    finally:
        server.read_only(False)


def refuse_rest(server_class, publish, at, **options):
    """The data connection is cut, and REST is then answered with an error."""
    with server_class(rest="refused", **options) as server:
        return cut_data(server, publish, at)


def rest_then_stor_refused(server_class, publish, at, **options):
    """The data connection is cut; then REST is accepted and the STOR after it is not."""
    with server_class(rest="stor-refused", **options) as server:
        return cut_data(server, publish, at)
