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

from orma_e2e import ROOT, Desk, check, chunks, equal, fail

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

    def __init__(self, seconds=40, wav=False):
        self.seconds, self.wav = seconds, wav

    def __enter__(self):
        super().__enter__()
        kind = ["--wav", "--mono"] if self.wav else ["--mp2", "--stereo", "--bitrate", 256]
        self.record("talk.opr", *kind, "--seconds", self.seconds * 2 // 3, "--mark", "0:02")
        self.record("talk.opr", "--seconds", self.seconds - self.seconds * 2 // 3)
        self.project = self.path("talk.opr")
        self.run("publish", self.project, "--cliplist", "--to", "file")
        self.file = self.path("pub_talk.wav")
        self.wanted = without_ticks(self.file.read_bytes())
        self.size = len(self.wanted)
        return self

    def start_publishing(self, *options, to="ftp", stdin=subprocess.DEVNULL, env=None):
        """Starts to publish the clip list, with memory for that work and no more."""
        return self.start("--trace", self.path("trace"), "publish", self.project, "--cliplist",
                          "--to", to, *options, stdin=stdin, env=env,
                          wrapper=("/usr/bin/prlimit", f"--data={MOST_MEMORY}"))

    def publish(self, account=None, *options, to="ftp", expect=0, seconds=120, env=None, **settings):
        """Publishes the clip list and returns what was said on standard error; a job that does not
        end within `seconds`, or runs out of memory, is a fault."""
        if account:
            self.use(account, **settings)
        job = self.start_publishing(*options, to=to, env=env)
        try:
            said = job.communicate(timeout=seconds)[1]
        except subprocess.TimeoutExpired:
            job.kill()
            fail(f"the job did not end within {seconds} s; it said:\n{job.communicate()[1]}")
        equal(job.returncode, expect, f"exit code, {said!r}")
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
