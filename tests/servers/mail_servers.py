"""Exim and Postfix as they come from Debian: one account, one mailbox, everything on high ports.

    with Postfix(certificate=certificates.good) as server:
        ... server.port (plain, STARTTLS), server.tls_port (TLS from the first byte) ...
        message = server.wait_for_messages(1)[0]

Log-in is by CRAM-MD5 or LOGIN as reporter, secret. Only reporter@desk.localhost is known; other
recipients are refused.
"""

import email
import email.policy
import subprocess
import tempfile
import time
from pathlib import Path

from .process import GID, HOST, UID, Server, ServerFailed


class MailServer(Server):
    def __init__(self, certificate=None):
        super().__init__(certificate)
        self.tls_port = self.ports[1]
        self.mailbox = self.home / "mail"
        self.mailbox.mkdir()

    def messages(self):
        """The delivered messages, byte for byte, oldest first."""
        files = sorted((self.mailbox / "new").glob("*"), key=lambda p: p.stat().st_mtime_ns)
        return [file.read_bytes() for file in files]

    def wait_for_messages(self, count, seconds=20):
        end = time.monotonic() + seconds
        while len(found := self.messages()) < count:
            if time.monotonic() > end:
                raise ServerFailed(f"{len(found)} of {count} messages arrived\n" + "".join(
                    p.read_text() for p in (self.log, self.home / "output") if p.is_file()))
            time.sleep(0.02)
        return found


class Exim(MailServer):
    def settings(self):
        self.pretend_users({"root": 0, "Debian-exim": UID})
        self.preload("libnss_wrapper.so")
        self.program("usr/sbin/exim4")
        tls = f"""
tls_advertise_hosts = *
tls_certificate = {self.home}/certificate.pem
tls_privatekey = {self.home}/key.pem
tls_on_connect_ports = {self.tls_port}
""" if self.certificate else "tls_advertise_hosts =\n"
        authenticators = f"""
cram:
  driver = cram_md5
  public_name = CRAM-MD5
  server_secret = ${{if eq{{$auth1}}{{{self.user}}}{{{self.password}}}fail}}
login:
  driver = plaintext
  public_name = LOGIN
  server_prompts = Username:: : Password::
  server_condition = ${{if and{{{{eq{{$auth1}}{{{self.user}}}}}{{eq{{$auth2}}{{{self.password}}}}}}}}}
"""
        ports = f"{HOST}.{self.port}" + (f" : {HOST}.{self.tls_port}" if self.certificate else "")
        self.write("conf", f"""
primary_hostname = localhost
qualify_domain = localhost
exim_user = {UID}
exim_group = {GID}
never_users =
deliver_drop_privilege = true
keep_environment = LD_PRELOAD : NSS_WRAPPER_PASSWD : NSS_WRAPPER_GROUP
add_environment = PATH=/usr/bin
spool_directory = {self.home}/spool
log_file_path = {self.home}/%slog
pid_file_path = {self.home}/pid
local_interfaces = {ports}
host_lookup =
rfc1413_hosts =
message_size_limit = 500M
{tls}
acl_smtp_rcpt = recipient
begin acl
recipient:
  deny condition = ${{if !eq{{$local_part@$domain}}{{reporter@desk.localhost}}}}
       message = no such user here
  deny !authenticated = *
  accept
begin routers
all:
  driver = accept
  transport = maildir
begin transports
maildir:
  driver = appendfile
  directory = {self.mailbox}
  user = {UID}
  group = {GID}
  maildir_format
begin authenticators
{authenticators}""").chmod(0o644)
        (self.home / "spool").mkdir()
        self.log = self.home / "mainlog"

    def command(self):
        return [self.home / "bin/exim4", "-C", self.home / "conf", "-bdf"]


class Postfix(MailServer):
    """Postfix insists on root and on users of its own: both are pretended."""

    def settings(self):
        self.pretend_users({"root": 0, "postfix": UID, "other": 65533, "postdrop": 65532})
        self.preload("libnss_wrapper.so", "libuid_wrapper.so")
        libraries = self.program("usr/lib/postfix")
        options = {
            "compatibility_level": "3.6", "queue_directory": self.home / "queue",
            "data_directory": self.home / "data", "daemon_directory": libraries / "sbin",
            "command_directory": libraries / "sbin", "shlib_directory": "no",
            "meta_directory": self.home / "etc", "mail_owner": "postfix",
            "setgid_group": "postdrop", "default_privs": "other", "inet_interfaces": HOST,
            "inet_protocols": "ipv4", "myhostname": "localhost", "mydestination": "",
            "mynetworks": "", "alias_maps": "", "alias_database": "",
            "virtual_mailbox_domains": "desk.localhost", "virtual_mailbox_base": self.home,
            "virtual_mailbox_maps": f"inline:{{ reporter@desk.localhost=mail/ }}",
            "virtual_uid_maps": f"static:{UID}", "virtual_gid_maps": f"static:{GID}",
            "virtual_minimum_uid": "1", "virtual_mailbox_limit": "0", "message_size_limit": "0",
            "maillog_file": self.log, "maillog_file_prefixes": self.home,
            "smtpd_sasl_auth_enable": "yes",
            "smtpd_sasl_local_domain": "localhost",
            "smtpd_recipient_restrictions": "permit_sasl_authenticated, reject",
            "smtpd_tls_security_level": "may" if self.certificate else "none",
            "smtpd_tls_cert_file": self.home / "certificate.pem",
            "smtpd_tls_key_file": self.home / "key.pem",
            "import_environment": "MAIL_CONFIG MAIL_LOGTAG TZ LD_PRELOAD LD_LIBRARY_PATH "
                                  "UID_WRAPPER UID_WRAPPER_ROOT NSS_WRAPPER_PASSWD "
                                  "NSS_WRAPPER_GROUP",
        }
        self.write("etc/main.cf", "".join(f"{k} = {v}\n" for k, v in options.items()))
        smtps = f"{HOST}:{self.tls_port} inet n - n - - smtpd -o smtpd_tls_wrappermode=yes\n"
        self.write("etc/master.cf", f"""
{HOST}:{self.port} inet n - n - - smtpd
{smtps if self.certificate else ""}
cleanup unix n - n - 0 cleanup
qmgr unix n - n 300 1 qmgr
rewrite unix - - n - - trivial-rewrite
bounce unix - - n - 0 bounce
defer unix - - n - 0 bounce
trace unix - - n - 0 bounce
virtual unix - n n - - virtual
error unix - - n - - error
anvil unix - - n - 1 anvil
tlsmgr unix - - n 1000? 1 tlsmgr
proxymap unix - - n - - proxymap
postlog unix-dgram n - n - 1 postlogd
""")
        self.write("etc/sasl/smtpd.conf", f"""pwcheck_method: auxprop
auxprop_plugin: sasldb
sasldb_path: {self.home}/users.db
mech_list: CRAM-MD5 LOGIN
""")
        subprocess.run([self.program("usr/sbin/saslpasswd2"), "-p", "-c", "-f",
                        self.home / "users.db", "-u", "localhost", self.user],
                       input=self.password.encode(), check=True)
        for name in ("active bounce corrupt defer deferred flush hold incoming maildrop pid private "
                     "public saved trace").split():
            (self.home / "queue" / name).mkdir(parents=True)
        (self.home / "data").mkdir()
        self.environment |= {"MAIL_CONFIG": str(self.home / "etc"), "UID_WRAPPER": "1",
                             "UID_WRAPPER_ROOT": "1", "LD_LIBRARY_PATH": str(libraries)}

    def command(self):
        return [self.home / "bin/postfix/sbin/master", "-c", self.home / "etc", "-d"]


MAIL_SERVERS = (Exim, Postfix)


def attachments(message):
    """The attachments of a message as [(name, bytes)], as two independent parsers agree on them:
    Python's and ripmime. Raises ValueError where they do not."""
    parsed = email.message_from_bytes(message, policy=email.policy.default)
    found = [(part.get_filename(), part.get_payload(decode=True))
             for part in parsed.walk() if part.get_filename()]
    with tempfile.TemporaryDirectory() as folder:
        mail = Path(folder, "message")
        mail.write_bytes(message)
        out = Path(folder, "out")
        out.mkdir()
        subprocess.run(["ripmime", "-i", mail, "-d", out, "--no-nameless"], check=True,
                       capture_output=True)
        other = sorted(p.read_bytes() for p in out.iterdir())
    if sorted(data for _, data in found) != other:
        raise ValueError(f"Python finds {[(n, len(d)) for n, d in found]}, ripmime "
                         f"{[len(d) for d in other]} bytes")
    return found
