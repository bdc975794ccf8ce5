"""What the delivery tests share: a reporter with an MP2 project, who publishes to servers.

The published file is the same by FTP, by mail and to file but for the two tick bytes of the
identifier, so the publication to file is the measure of the others.
"""

import base64
import os
import random
import subprocess
import sys
import traceback
from concurrent.futures import ThreadPoolExecutor, as_completed

from orma_e2e import ORMA, ROOT, Desk, check, chunks, equal, fail

sys.path.insert(0, str(ROOT / "tests"))
from servers import certificates, ftp_servers, mail_servers, proxies, scripted  # noqa: E402, F401

SEED = int(os.environ.get("ORMA_SEED", random.SystemRandom().randrange(1 << 32)))
TICKS = (348 + 24, 348 + 26)  # in the bext chunk, whose identifier begins at 348
SECRETS = ("secret", base64.b64encode(b"secret").decode())
MOST_MEMORY = 60_000_000  # bytes of data, everything but code


def without_ticks(published):
    """The bytes of a published file with its tick bytes zeroed."""
    name, start, _ = chunks(published)[0]
    equal(name, "bext", "first chunk")
    first, end = start + TICKS[0], start + TICKS[1]
    return published[:first] + bytes(end - first) + published[end:]


class Reporter(Desk):
    """A desk with the project talk: two takes, three clips, a text."""

    def __init__(self, seconds=40, bitrate=256, wav=False):
        self.seconds, self.bitrate, self.wav = seconds, bitrate, wav

    def __enter__(self):
        super().__enter__()
        kind = ["--wav", "--mono"] if self.wav else ["--mp2", "--stereo", "--bitrate", self.bitrate]
        self.record("talk.opr", *kind, "--seconds", self.seconds * 2 // 3, "--mark", "0:02")
        self.record("talk.opr", "--seconds", self.seconds - self.seconds * 2 // 3)
        self.project = self.path("talk.opr")
        self.run("publish", self.project, "--cliplist", "--to", "file")
        self.file = self.path("pub_talk.wav")
        self.wanted = without_ticks(self.file.read_bytes())
        self.size = len(self.wanted)
        return self

    def use(self, account, security=0, ca="", **more):
        """Makes an FTP account of the servers the destination in use."""
        server = f"{account.host}:{account.port}"
        self.set({"FtpServer": server, "FtpUser": account.user, "FtpPassword": account.password,
                  "FtpFolder": account.folder, "FtpPassive": 1, "CurrentFtpName": "studio",
                  "Ftp[0].Name": "studio", "Ftp[0].Server": server, "Ftp[0].Security": security,
                  "CaFile": ca}, **more)

    def use_mail(self, host, port, user="", password="", security=0, ca="", **more):
        """Makes a mail account the one in use; with a user it logs in."""
        self.set({"Smtp[0].Name": "desk", "CurrentSmtpName": "desk", "SmtpServer": host,
                  "SmtpUser": user, "SmtpPassword": password, "SmtpAuth": 1 if user else 0,
                  "Smtp[0].Port": port, "Smtp[0].Security": security, "CaFile": ca}, **more)

    def start(self, *arguments, stdin=subprocess.DEVNULL, environment=None):
        """Starts the program, with memory for its work and no more."""
        return subprocess.Popen(["/usr/bin/prlimit", f"--data={MOST_MEMORY}", ORMA, "--home",
                                 str(self.home), "--trace", str(self.path("trace")),
                                 *map(str, arguments)], stdin=stdin,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                env=environment)

    def publish(self, account=None, *options, to="ftp", expect=0, seconds=120, environment=None,
                **settings):
        """Publishes the clip list and returns what was said on standard error; a job that does not
        end within `seconds`, or runs out of memory, is a fault."""
        if account:
            self.use(account, **settings)
        job = self.start("publish", self.project, "--cliplist", "--to", to, *options,
                         environment=environment)
        try:
            said = job.communicate(timeout=seconds)[1]
        except subprocess.TimeoutExpired:
            job.kill()
            fail(f"the job did not end within {seconds} s; it said:\n{job.communicate()[1]}")
        check(job.returncode in (0, 1) if expect is None else job.returncode == expect,
              f"exit code {job.returncode}, expected {expect}; {said!r}")
        told = said + self.path("trace").read_text(errors="replace")
        self.path("trace").unlink()
        for form in SECRETS:
            check(form not in told, f"the password was told: {told}")
        return said.strip()

    def check_arrived(self, path, what):
        """The stored file is the published one, and the program itself finds it sound."""
        got = path.read_bytes()
        equal(len(got), self.size, f"{what}: stored bytes")
        check(without_ticks(got) == self.wanted, f"{what}: other bytes are stored")
        self.run("verify", path)


def run_all(steps, workers=6):
    """Runs (name, function, arguments...) side by side and prints what each returns; exits with 1
    if one fails."""
    print(f"seed {SEED}", flush=True)
    failed = False
    with ThreadPoolExecutor(workers) as pool:
        running = {pool.submit(step[1], *step[2:]): step[0] for step in steps
                   if len(sys.argv) < 2 or step[0] in sys.argv[1:]}
        for step in as_completed(running):
            error = step.exception()
            print(f"{running[step]}: {(step.result() or 'whole') if error is None else 'FAILED'}",
                  flush=True)
            if error is not None:
                failed = True
                traceback.print_exception(error)
    sys.exit(1 if failed or not running else 0)
