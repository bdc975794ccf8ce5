"""vsftpd, pure-ftpd, proftpd and pyftpdlib, each with one account that may write.

    with Proftpd(rest="stor-refused") as server:
        ... server.account() ...; server.root / "file"

rest: "on"; "refused" (REST is answered with an error: vsftpd, pyftpdlib); "stor-refused" (REST is
accepted, the STOR that follows is not: proftpd). tls: None, "explicit", "implicit" (vsftpd and
proftpd), with a `certificate` (certificates.Certificate).
"""

import subprocess
from typing import NamedTuple

from .process import GID, HOST, UID, Server


class Account(NamedTuple):
    """What a client is told. `folder` is the remote folder, absolute."""
    host: str
    port: int
    user: str
    password: str
    folder: str


class FtpServer(Server):
    def __init__(self, rest="on", tls=None, certificate=None):
        super().__init__(certificate)
        self.rest, self.tls = rest, tls
        self.greets_first = tls != "implicit"
        self.passive = self.ports[1:]
        self.root = self.home / "root"
        self.preload()

    def account(self, port=None, **changes):
        """The account, at the port of a proxy if one is given."""
        return Account(HOST, port or self.port, self.user, self.password,
                       str(self.root))._replace(**changes)


class Vsftpd(FtpServer):
    """Without privileges vsftpd knows anonymous alone; a list of passwords makes it an account."""
    user = "anonymous"

    def settings(self):
        options = {
            "listen": "YES", "listen_address": HOST, "listen_port": self.port,
            "background": "NO", "run_as_launching_user": "YES", "seccomp_sandbox": "NO",
            "isolate": "NO", "isolate_network": "NO", "secure_chroot_dir": self.home / "bin",
            "ftp_username": "nobody", "nopriv_user": "nobody",
            "anonymous_enable": "YES", "local_enable": "NO", "secure_email_list_enable": "YES",
            "email_password_file": self.write("passwords", self.password + "\n"),
            "anon_root": self.root, "write_enable": "YES", "anon_upload_enable": "YES",
            "anon_mkdir_write_enable": "YES", "anon_other_write_enable": "YES",
            "anon_world_readable_only": "NO", "anon_umask": "022", "chown_uploads": "NO",
            "pasv_min_port": self.passive[0], "pasv_max_port": self.passive[-1],
            "xferlog_enable": "YES", "vsftpd_log_file": self.log, "log_ftp_protocol": "YES",
            "delay_failed_login": "0",
        }
        if self.rest == "refused":
            options["cmds_denied"] = "REST"
        if self.tls:
            options |= {"ssl_enable": "YES", "allow_anon_ssl": "YES", "require_ssl_reuse": "YES",
                        "force_anon_logins_ssl": "YES", "force_anon_data_ssl": "YES",
                        "implicit_ssl": "YES" if self.tls == "implicit" else "NO",
                        "rsa_cert_file": self.home / "certificate.pem",
                        "rsa_private_key_file": self.home / "key.pem"}
        self.write("conf", "".join(f"{key}={value}\n" for key, value in options.items()))

    def command(self):
        program = self.home / "bin/vsftpd"
        return [program if program.exists() else self.program("usr/sbin/vsftpd"),
                self.home / "conf"]


def password_hash(password):
    return subprocess.run(["openssl", "passwd", "-6", "-stdin"], input=password, text=True,
                          capture_output=True, check=True).stdout.strip()


class PureFtpd(FtpServer):
    """The slowest to refuse a log-in: it waits for seconds."""

    def settings(self):
        passwd = self.write("passwd", f"{self.user}:{password_hash(self.password)}:{UID}:{GID}::"
                                      f"{self.root}" + ":" * 12 + "\n")
        self.program("usr/sbin/pure-ftpd")
        subprocess.run([self.program("usr/bin/pure-pw"), "mkdb", self.home / "users.pdb", "-f",
                        passwd], check=True)

    def command(self):
        return [self.home / "bin/pure-ftpd", "-S", f"{HOST},{self.port}", "-4", "-H", "-E", "-d",
                "-l", f"puredb:{self.home}/users.pdb", "-u", "1", "-f", "none",
                "-g", self.home / "pid", "-O", f"clf:{self.log}",
                "-p", f"{self.passive[0]}:{self.passive[-1]}", "-Y", "0"]


class Proftpd(FtpServer):
    def settings(self):
        self.program("usr/sbin/proftpd")
        self.preload("libnss_wrapper.so")
        self.pretend_users({"root": 0, "server": UID})  # it must be told a user by name
        self.write("passwd", f"{self.user}:{password_hash(self.password)}:{UID}:{GID}::"
                             f"{self.root}:/bin/sh\n").chmod(0o600)
        text = f"""
ServerName test
ServerType standalone
DefaultAddress {HOST}
Port {self.port}
User server
Group server
UseReverseDNS off
UseIPv6 off
WtmpLog off
DelayEngine off
AuthUserFile {self.home}/passwd
AuthOrder mod_auth_file.c
RequireValidShell off
AllowOverwrite on
AllowStoreRestart {"off" if self.rest == "stor-refused" else "on"}
PassivePorts {self.passive[0]} {self.passive[-1]}
PidFile {self.home}/pid
ScoreboardFile {self.home}/score
ScoreboardMutex {self.home}/score.lock
SystemLog {self.log}
TransferLog none
<IfModule mod_ctrls.c>
ControlsSocket {self.home}/control
</IfModule>
"""
        if self.tls:
            self.program("usr/lib/proftpd/mod_tls.so")
            text = f"ModulePath {self.home}/bin\nLoadModule mod_tls.c\n" + text + f"""
TLSEngine on
TLSRequired on
{"TLSOptions UseImplicitSSL" if self.tls == "implicit" else ""}
TLSRSACertificateFile {self.home}/certificate.pem
TLSRSACertificateKeyFile {self.home}/key.pem
"""
            (self.home / "key.pem").chmod(0o600)
        self.write("conf", text)

    def command(self):
        return [self.home / "bin/proftpd", "-n", "-c", self.home / "conf"]


PYTHON_SERVER = """
import logging, sys
from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.servers import FTPServer
host, port, first, last, root, user, password, log, rest = sys.argv[1:]
logging.basicConfig(filename=log, level=logging.INFO)
authorizer = DummyAuthorizer()
authorizer.add_user(user, password, root, perm="elradfmwMT")
FTPHandler.authorizer = authorizer
FTPHandler.auth_failed_timeout = 1
FTPHandler.passive_ports = range(int(first), int(last) + 1)
if rest == "refused":
    del FTPHandler.proto_cmds["REST"]
FTPServer((host, int(port)), FTPHandler).serve_forever()
"""


class Pyftpdlib(FtpServer):
    """Shows its root as `/`."""

    def settings(self):
        self.program("usr/lib/python3/dist-packages/pyftpdlib")
        self.environment["PYTHONPATH"] = str(self.home / "bin")

    def account(self, port=None, **changes):
        return super().account(port, **({"folder": "/"} | changes))

    def command(self):
        return ["/usr/bin/python3", "-W", "ignore", "-c", PYTHON_SERVER, HOST, self.port,
                self.passive[0], self.passive[-1], self.root, self.user, self.password, self.log,
                self.rest]


FTP_SERVERS = (Vsftpd, PureFtpd, Proftpd, Pyftpdlib)
