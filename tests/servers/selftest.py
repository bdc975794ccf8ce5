#!/usr/bin/env python3
"""Every server starts, takes a file or a message, and breaks as it is told to.

The client here is Python's own; what fails here is not the product.
"""

import ftplib
import random
import shutil
import smtplib
import socket
import ssl
import subprocess
import sys
import tempfile
import threading
import time
import traceback
from concurrent.futures import ThreadPoolExecutor
from email.message import EmailMessage
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
from servers import certificates, ftp_servers, mail_servers, proxies, scenarios, scripted  # noqa: E402
from servers.ftp_servers import Account  # noqa: E402
from servers.process import HOST  # noqa: E402

BYTES = random.Random(1).randbytes(1_500_000)
NAME = "take.bin"


def check(condition, text):
    if not condition:
        raise AssertionError(text)


def connect(account):
    ftp = ftplib.FTP(timeout=6)
    ftp.connect(account.host, account.port)
    ftp.login(account.user, account.password)
    ftp.cwd(account.folder)
    ftp.voidcmd("TYPE I")
    return ftp


class Piece:
    """The part of BYTES from an offset on, slow enough that an accident meets the transfer."""

    def __init__(self, offset):
        self.at = offset

    def read(self, count):
        piece = BYTES[self.at:self.at + count]
        self.at += len(piece)
        time.sleep(0.001)
        return piece


def upload(account, offset=0):
    with connect(account) as ftp:
        try:
            return ftp.storbinary(f"STOR {NAME}", Piece(offset), rest=offset or None)
        except ConnectionError:
            ftp.voidresp()  # why the data connection broke, where the server still tells
            raise


def upload_and_resume(account):
    """Uploads; after a break goes on at what the server has, until it is whole."""
    breaks, offset = 0, 0
    for _ in range(40):
        try:
            upload(account, offset)
            return breaks
        except (OSError, EOFError, ftplib.error_temp):
            breaks += 1
        time.sleep(0.1)
        try:
            with connect(account) as ftp:
                offset = min(ftp.size(NAME), len(BYTES))
        except (OSError, EOFError, ftplib.Error):
            continue
    raise AssertionError("the upload never got through")


def refused(call):
    """The reply code with which the server refuses."""
    try:
        call()
    except ftplib.Error as error:
        return int(str(error)[:3])
    raise AssertionError("the server accepted it")


def ftp_server(kind):
    with kind() as server:
        stored = server.root / NAME
        for scenario in (scenarios.cut_data, scenarios.drop_control, scenarios.drop_all,
                         scenarios.kill_and_restart):
            stored.unlink(missing_ok=True)
            breaks = scenario(server, upload_and_resume, 1_234_567 // 2)
            check(breaks, f"{scenario.__name__} broke nothing")
            check(stored.read_bytes() == BYTES, f"resume after {scenario.__name__}")
        stored.write_bytes(b"")
        check(scenarios.freeze(server, upload_and_resume, 500_000, 0.5) == 0, "half a second frozen")
        check(stored.read_bytes() == BYTES, "the file after a freeze")
        stored.unlink()
        code = refused(lambda: scenarios.full_disk(server, upload, 1_000_000))
        check(code in (426, 451, 452), f"full disk: {code}")
        scenarios.wait_for_size(stored, 1_000_000)
        stored.unlink()
        check(refused(lambda: scenarios.wrong_password(server, upload)) == 530, "wrong password")
        check(refused(lambda: scenarios.missing_folder(server, upload)) == 550, "missing folder")
        check(refused(lambda: scenarios.read_only(server, upload)) in (550, 553), "read only")
        check(not stored.exists(), "a refused upload left a file")
        scenarios.end_data(server, lambda account: refused_or_not(account), 100_000)
        scenarios.wait_for_size(stored, 100_000)
    for rest, codes in (("refused", range(500, 560)), ("stor-refused", (451,))):
        if rest in kind.rest_choices:
            with kind(rest=rest) as server:
                (server.root / NAME).write_bytes(BYTES[:1000])
                server.own()
                check(refused(lambda: upload(server.account(), 1000)) in codes, f"REST {rest}")


def refused_or_not(account):
    try:
        return upload(account)
    except (OSError, EOFError, ftplib.Error):
        return None


def ftp_with_tls(kind, certs, folder):
    source = folder / kind.__name__
    source.write_bytes(BYTES)
    for mode in kind.tls_choices[1:]:
        for certificate, result in ((certs.good, 0), (certs.wrong_host, 60), (certs.expired, 60)):
            with kind(tls=mode, certificate=certificate) as server:
                scheme = "ftps" if mode == "implicit" else "ftp"
                done = subprocess.run(
                    ["curl", "-sS", "--ssl-reqd", "--tls-max", "1.2", "--cacert", certs.ca, "-T",
                     source, "-u", f"{server.user}:{server.password}",
                     f"{scheme}://localhost:{server.port}/{NAME}"], capture_output=True, text=True)
                check(done.returncode == result, f"{mode} with {certificate.certificate.name}: curl "
                      f"ends with {done.returncode}, {done.stderr}{server.log.read_text()[-2000:]}")
                check(result or (server.root / NAME).read_bytes() == BYTES, f"{mode}: the bytes")


def message():
    made = EmailMessage()
    made["Subject"], made["From"] = "a take", "desk@localhost"
    made["To"] = mail_servers.MailServer.recipient
    made.set_content("See the attachment.")
    made.add_attachment(BYTES, maintype="audio", subtype="wav", filename="take.wav")
    return made


def mail_server(kind, certs):
    trust = ssl.create_default_context(cafile=certs.ca)
    with kind(certificate=certs.good) as server:
        for mechanism, security in (("CRAM-MD5", None), ("LOGIN", "start"), ("LOGIN", "implicit")):
            client = smtplib.SMTP_SSL("localhost", server.tls_port, context=trust, timeout=20) \
                if security == "implicit" else smtplib.SMTP("localhost", server.port, timeout=20)
            with client:
                if security == "start":
                    client.starttls(context=trust)
                client.ehlo()
                try:
                    client.sendmail("desk@localhost", [server.recipient], b"no")
                    check(False, "mail was taken without a log-in")
                except smtplib.SMTPRecipientsRefused:
                    client.rset()
                client.user, client.password = server.user, server.password
                method = getattr(client, "auth_" + mechanism.lower().replace("-", "_"))
                client.auth(mechanism, method, initial_response_ok=False)
                client.send_message(message())
        for received in server.wait_for_messages(3):
            check(mail_servers.attachments(received) == [("take.wav", BYTES)], "the attachment")


def proxies_between():
    with ftp_servers.Pyftpdlib() as server, proxies.FtpProxy(server) as proxy:
        with tempfile.NamedTemporaryFile() as source:
            Path(source.name).write_bytes(BYTES)
            proxy.when(1_000, lambda: (proxy.freeze(), threading.Timer(0.3, proxy.thaw).start()))
            start = time.monotonic()
            subprocess.run(["curl", "-sS", "-T", source.name, "-u",  # asks for EPSV
                            f"{server.user}:{server.password}", f"ftp://{HOST}:{proxy.port}/{NAME}"],
                           check=True)
            check(time.monotonic() - start >= 0.3, "the stall")
            check(proxy.uploaded == len(BYTES), "every byte goes through the proxy")
        check((server.root / NAME).read_bytes() == BYTES, "the file through EPSV")
    with scripted.ScriptedSmtp() as server, proxies.TcpProxy(server.port) as proxy:
        proxy.when(10_000, proxy.drop_all)
        try:
            with smtplib.SMTP(HOST, proxy.port, timeout=5) as client:
                client.send_message(message())
            check(False, "a message of 2 MB passed a proxy that ends after 10 kB")
        except (OSError, smtplib.SMTPException):
            pass
        proxy.check_fired()


def end_with_the_test():
    test = subprocess.Popen(
        [sys.executable, "-c", "import sys; sys.path.insert(0, sys.argv[1])\n"
         "from servers.ftp_servers import PureFtpd\n"
         "with PureFtpd() as server: print(server.port, server.home, flush=True); input()",
         Path(__file__).resolve().parents[1]], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    port, home = test.stdout.readline().split()
    socket.create_connection((HOST, int(port))).close()
    test.kill()
    test.communicate()
    end = time.monotonic() + 5
    while time.monotonic() < end:
        try:
            socket.create_connection((HOST, int(port))).close()
            time.sleep(0.02)
        except ConnectionError:
            break
    else:
        check(False, "the server survived its test")
    shutil.rmtree(home)


def scripted_servers():
    with scripted.ScriptedFtp({"STOR": [b"150 go\r\n", b"451 no\r\n"]}) as server:
        account = Account(HOST, server.port, "any", "any", "/")
        upload(account)
        check(server.files[NAME] == BYTES, "the scripted server's file")
        check(refused(lambda: upload(account, 1000)) == 451, "REST, then STOR refused")
    for reply, least in ((scripted.ENDLESS_LINES, 10_000_000), (scripted.ENDLESS_NULS, 10_000_000),
                         (scripted.BYTE_A_SECOND, 1), (scripted.silence, 0), (scripted.drop, 0)):
        with scripted.ScriptedFtp({"greeting": reply}) as server:
            with socket.create_connection((HOST, server.port)) as link:
                link.settimeout(0.2)
                got, ended = 0, False
                try:
                    while got < 10_000_000 and not ended:
                        got += len(piece := link.recv(65536))
                        ended = not piece
                except TimeoutError:
                    pass
                check(got >= least and ended == (reply is scripted.drop), "a hostile greeting")
    with scripted.ScriptedSmtp({"RCPT": b"450 later\r\n"}) as server:
        with smtplib.SMTP(HOST, server.port, timeout=5) as client:
            client.login("reporter", "secret")
            try:
                client.sendmail("a@localhost", ["b@localhost"], b"x")
                check(False, "RCPT was to be refused")
            except smtplib.SMTPRecipientsRefused as error:
                check(error.recipients["b@localhost"][0] == 450, "the scripted reply")


def main():
    with tempfile.TemporaryDirectory() as name, ThreadPoolExecutor(8) as pool:
        folder = Path(name)
        certs = certificates.Certificates(folder / "certificates")
        steps = [(k.__name__, ftp_server, k) for k in ftp_servers.FTP_SERVERS]
        steps += [(f"{k.__name__} TLS", ftp_with_tls, k, certs, folder)
                  for k in ftp_servers.FTP_SERVERS if k.tls_choices[1:]]
        steps += [(k.__name__, mail_server, k, certs) for k in mail_servers.MAIL_SERVERS]
        steps += [("proxies", proxies_between), ("scripted", scripted_servers),
                  ("end", end_with_the_test)]
        running = [(s[0], pool.submit(s[1], *s[2:])) for s in steps
                   if len(sys.argv) < 2 or s[0] in sys.argv[1:]]
        failed = 0
        for title, step in running:
            error = step.exception()
            print(f"{title}: {'whole' if error is None else 'FAILED'}", flush=True)
            if error is not None:
                failed += 1
                traceback.print_exception(error)
        sys.exit(1 if failed or not running else 0)


if __name__ == "__main__":
    main()
