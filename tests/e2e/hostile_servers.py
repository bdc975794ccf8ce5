#!/usr/bin/env python3
"""Servers that mean harm: lines without an end, NULs, replies of gigabytes, one byte a second. The
job ends with an error within its time-outs, and its memory does not grow (both looked at by
Reporter.publish).

ORMA_PATIENCE=1 adds the cases that last for more than one time-out (`./dev soak delivery`)."""

import os
import time

from delivery import Reporter, run_all, scripted
from orma_e2e import check

PATIENT = bool(os.environ.get("ORMA_PATIENCE"))
KINDS = {"lines": scripted.ENDLESS_LINES, "line": scripted.ENDLESS_LINE,
         "NULs": scripted.ENDLESS_NULS, "final lines": scripted.endless(b"220 250 350 hello\r\n")}


def job(what, server, to, options=(), limit=40, least=0):
    with Reporter(seconds=3) as reporter, server:
        if to == "ftp":
            reporter.use(server.account())
        else:
            reporter.use_mail("127.0.0.1", server.port, "any", "secret")
        began = time.monotonic()
        said = reporter.publish(None, *options, to=to, expect=1, seconds=limit)
        lasted = time.monotonic() - began
        check("Error: " in said or "Info: " in said, f"{what}: {said!r}")
        check(lasted >= least, f"{what}: gave up after {lasted:.0f} s")
        return f"ended after {lasted:.1f} s"


def steps():
    stop, mail = ("--on-break", "stop"), ("--recipient", "reporter@desk.localhost")
    for name, kind in KINDS.items():
        for step in ("greeting", "PASS", "STOR", "stored", "QUIT"):
            if step == "QUIT" or (name, step) == ("final lines", "PASS"):
                continue
            yield f"FTP {step}: {name}", scripted.ScriptedFtp({step: kind}), "ftp", stop
        for step in ("greeting", "AUTH", "RCPT", "body"):
            if name == "final lines" and step != "AUTH":
                continue  # these say what was hoped for
            yield f"SMTP {step}: {name}", scripted.ScriptedSmtp({step: kind}), "mail", mail
    # The log-in has 30 s, however busy the server looks.
    yield "FTP a byte a second", scripted.ScriptedFtp({"greeting": scripted.BYTE_A_SECOND}), \
        "ftp", stop, 60, 20
    yield "SMTP a byte a second", scripted.ScriptedSmtp({"greeting": scripted.BYTE_A_SECOND}), \
        "mail", mail
    if PATIENT:
        for step in ("STOR", "stored"):  # a reply may take a minute
            for name, kind in (("silence", scripted.silence),
                               ("a byte a second", scripted.BYTE_A_SECOND)):
                yield f"FTP {step}: {name}", scripted.ScriptedFtp({step: kind}), "ftp", stop, 150, 20


if __name__ == "__main__":
    run_all([(step[0], job, *step) for step in steps()], workers=12)
