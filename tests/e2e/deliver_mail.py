#!/usr/bin/env python3
"""Publications by mail: through a real server, to a scripted one that misbehaves at every step, and
into the outbox. Two independent parsers take the attachment out of what arrived.

Names of steps as arguments run these alone; ORMA_BREAKS sets how many mails break off (4)."""

import os
import random

from delivery import SEED, Reporter, certificates, mail_servers, proxies, run_all, scripted, \
    without_ticks
from orma_e2e import check, equal

NO_ANSWER = "Info: Server found, but doesn't respond."
INTERRUPTED = "Error: Publishing interrupted!"
WRONG_LOG_IN = "Info: Wrong username or password."
RECIPIENT = "reporter@desk.localhost"

PLAIN, STARTTLS, IMPLICIT = 0, 1, 2
BREAKS = int(os.environ.get("ORMA_BREAKS", "4"))


def send(reporter, *options, to="mail", recipient=RECIPIENT, **more):
    return reporter.publish(None, "--recipient", recipient, *options, to=to, **more)


def check_message(reporter, message, what):
    """The message holds the published file and nothing else attached."""
    (name, content), *others = mail_servers.attachments(message)
    equal((name, others), ("talk.wav", []), what)
    check(without_ticks(content) == reporter.wanted, f"{what}: another file is attached")
    received = reporter.path("received.wav")
    received.write_bytes(content)
    reporter.run("verify", received)


def real_server(kind, certs):
    with Reporter() as reporter, kind(certificate=certs.good) as server:
        # A server that wants EHLO before a log-in gets none without TLS.
        plain = () if kind is mail_servers.Exim else (("127.0.0.1", server.port, PLAIN),)
        ways = (*plain, ("localhost", server.port, STARTTLS), ("localhost", server.tls_port, IMPLICIT))
        for host, port, security in ways:
            reporter.use_mail(host, port, server.user, server.password, security, certs.ca)
            equal(send(reporter), "", f"{security}")
            equal(send(reporter, recipient="nobody@desk.localhost", expect=1),
                  "Error: recipient mailbox unavailable", f"{security}, nobody")
            reporter.use_mail(host, port, server.user, "not the secret one", security, certs.ca)
            equal(send(reporter, expect=1), WRONG_LOG_IN, f"{security}, wrong password")
        for message in server.wait_for_messages(len(ways)):
            check_message(reporter, message, kind.__name__)


def companions():
    """Each image is a mail of its own."""
    with Reporter(seconds=6) as reporter, mail_servers.Postfix() as server:
        pictures = [reporter.path("quay.jpg"), reporter.path("bridge.png")]
        for picture, size in zip(pictures, (70_001, 57)):
            picture.write_bytes(random.Random(size).randbytes(size))
        reporter.use_mail("127.0.0.1", server.port, server.user, server.password)
        equal(send(reporter, "--subject", "From the harbour", "--image", pictures[0], "--image",
                   pictures[1]), "", "images")
        arrived = server.wait_for_messages(3)
        check(all(b"\nSubject: From the harbour\n" in m for m in arrived), "the subject")
        found = {name: content for m in arrived for name, content in mail_servers.attachments(m)}
        check(without_ticks(found.pop("talk.wav")) == reporter.wanted, "the sound")
        equal(found, {"talk_01.jpg": pictures[0].read_bytes(),
                      "talk_02.png": pictures[1].read_bytes()}, "the images")


def refused_protection(certs):
    with Reporter(seconds=6) as reporter:
        for certificate, ca, said in (
                (certs.wrong_host, certs.ca, "Info: Certificate is for another server name."),
                (certs.expired, certs.ca, "Info: Certificate of the server is expired."),
                (certs.good, "", "Info: Certificate of the server is not trusted."),
                (None, certs.ca, "Info: Server offers no TLS.")):
            with mail_servers.Postfix(certificate=certificate) as server:
                for port, security in ((server.port, STARTTLS), (server.tls_port, IMPLICIT)):
                    if certificate is None and security == IMPLICIT:
                        port, said = server.port, "Info: No TLS connection with the server."
                    reporter.use_mail("localhost", port, server.user, server.password, security, ca)
                    equal(send(reporter, expect=1), said, f"security {security}")
                equal(server.messages(), [], "mail over a refused connection")


def told_by(reporter, answers, log_in=(), expect=0):
    """What is said when the server answers so, and the server."""
    with scripted.ScriptedSmtp(answers) as server:
        reporter.use_mail("127.0.0.1", server.port, *log_in)
        return send(reporter, expect=expect), server


REFUSED = {550: "recipient mailbox unavailable", 551: "user not local",
           552: "recipient mailbox full", 553: "recipient not allowed, relaying denied",
           450: "recipient unavailable or busy", 451: "recipient not allowed, relaying denied",
           554: "recipient error", 421: "recipient error"}

# What is said when a step gets no answer, or none that can be read.
AT_STEP = {"greeting": NO_ANSWER, "HELO": NO_ANSWER, "AUTH": WRONG_LOG_IN,
           "MAIL": "Error: sender not accepted", "RCPT": "Error: recipient error",
           "DATA": "Error: message not accepted",
           "body": "Info: Message not confirmed by the server.\nError: The publication is not "
                   "verified: the server does not confirm it."}


def odd_replies():
    with Reporter(seconds=6) as reporter:
        for code, text in REFUSED.items():
            said, server = told_by(reporter, {"RCPT": b"%d 5.1.1 no\r\n" % code}, expect=1)
            equal((said, server.messages), (f"Error: {text}", []), f"{code} for the recipient")
        several = {"greeting": b"220-desk\r\n220-says\r\n220 hello\r\n",
                   "HELO": b"250-desk\r\n250 hello\r\n", "MAIL": b"250-well\r\n250 yes\r\n",
                   "RCPT": b"550 not 250\r\n", "DATA": b"354-go\r\n354 on\r\n",
                   "body": b"250-have\r\n250 it\r\n"}
        said, server = told_by(reporter, several)
        equal((said, len(server.messages)), ("", 1), "replies of several lines")
        said, server = told_by(reporter, {"password": [b"535 not so\r\n", b"235 in\r\n"]},
                               ("reporter", "secret"))
        equal((said, len(server.messages)), ("", 1), "LOGIN after CRAM-MD5 was refused")
        for step, text in AT_STEP.items():
            log_in = ("reporter", "secret") if step == "AUTH" else ()
            ways = [scripted.drop, scripted.split(b"250 220 354 235 ok\r\n", 0.2)]
            for way in ways + [scripted.silence] * (step in ("greeting", "body")):
                said, _ = told_by(reporter, {step: way}, log_in, expect=1)
                equal(said, text, f"{way} at {step}")


def unsafe_upgrade():
    """What stands behind the reply to STARTTLS was put there by somebody else."""
    with Reporter(seconds=3) as reporter, scripted.ScriptedSmtp(
            {"STARTTLS": b"220 go on\r\n250-desk\r\n250 AUTH LOGIN\r\n"},
            extensions=("STARTTLS",)) as server:
        reporter.use_mail("localhost", server.port, "reporter", "secret", STARTTLS)
        equal(send(reporter, expect=1),
              "Info: Clear text after STARTTLS: connection not safe.", "an unsafe upgrade")
        check(not any("AUTH" in line for line in server.said), f"what followed: {server.said}")


def broken_mails():
    """A mail that breaks off within its attachment reaches nobody, and the user knows."""
    with Reporter(seconds=60) as reporter:
        places = random.Random(SEED)
        for at in (places.randrange(2000, reporter.size * 4 // 3) for _ in range(BREAKS)):
            with scripted.ScriptedSmtp() as server, proxies.TcpProxy(server.port) as proxy:
                proxy.when(at, proxy.drop_all)
                reporter.use_mail("127.0.0.1", proxy.port)
                said = send(reporter, expect=1)
                proxy.check_fired()
                # Which of the two depends on how much the system had taken by then.
                check(said in (INTERRUPTED, AT_STEP["body"]), f"dropped at {at}: {said!r}")
                equal(server.messages, [], "half a mail")


def outbox():
    """Without a mail program the mail is a file of the outbox."""
    with Reporter(seconds=6) as reporter:
        said = send(reporter, to="outbox", env={"PATH": str(reporter.home)})
        letters = list((reporter.home / "outbox").iterdir())
        equal([letter.suffix for letter in letters], [".eml"], "the outbox")
        check(said.startswith("Info: ") and str(letters[0]) in said, f"where it is: {said!r}")
        check_message(reporter, letters[0].read_bytes(), "the outbox")


def main():
    with Reporter(seconds=3) as folder:
        certs = certificates.Certificates(folder.path("certificates"))
        run_all([(kind.__name__, real_server, kind, certs) for kind in mail_servers.MAIL_SERVERS] +
                [("companions", companions), ("protection", refused_protection, certs),
                 ("odd replies", odd_replies), ("broken", broken_mails),
                 ("upgrade", unsafe_upgrade), ("outbox", outbox)])


if __name__ == "__main__":
    main()
