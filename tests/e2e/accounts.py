#!/usr/bin/env python3
"""The accounts that publishing offers, as the command line lists them."""

import json
import socket

from orma_e2e import Desk, check, equal


def accounts_are_listed_without_their_passwords(desk):
    equal(desk.json("accounts", "list")["ftp"], [], "destinations of fresh settings")
    desk.run("settings", "set",
             "FtpServer=upload.local", "FtpPassword=S3cret-0", "CurrentFtpName=studio",
             "Ftp[0].Name=studio", "Ftp[0].Server=upload.local", "Ftp[0].Security=1",
             "Ftp[1].Name=night", "Ftp[1].Server=other:2121", "Ftp[1].Folder=news",
             "Ftp[1].Password=S3cret-1",
             "SmtpServer=mail.local", "SmtpPassword=S3cret-2",
             "Smtp[2].Name=behind the gap", "Smtp[2].Server=gap.local")
    done = desk.run("accounts", "list")
    check("S3cret" not in done.stdout + done.stderr, "a password was printed")
    accounts = desk.json("accounts", "list")
    check("S3cret" not in str(accounts), "a password was printed as JSON")
    equal([a["name"] for a in accounts["ftp"]], ["studio", "night"], "destinations")
    equal(accounts["ftp"][1],
          {"name": "night", "server": "other:2121", "user": "", "password set": True,
           "folder": "news", "passive": False, "protection": "none"}, "the second destination")
    equal(accounts["ftp in use"]["protection"], "explicit TLS", "protection in use")
    equal([a["name"] for a in accounts["mail"]], ["mail.local"], "mail accounts")
    equal(accounts["mail in use"]["server"], "mail.local", "mail server in use")
    equal(accounts["mail in use"]["password set"], True, "its password")


def a_destination_that_nobody_serves_is_told(desk):
    done = desk.run("test-connection", expect=1)
    check("no FTP destination" in done.stderr, "nothing was said about the missing destination")
    with socket.socket() as taken:  # bound but not listening: nobody answers there
        taken.bind(("127.0.0.1", 0))
        desk.run("settings", "set", f"FtpServer=127.0.0.1:{taken.getsockname()[1]}",
                 "FtpPassword=S3cret")
        done = desk.run("--json", "test-connection", expect=1)
    check("Cannot connect" in done.stderr, f"another reason: {done.stderr}")
    equal(json.loads(done.stdout)["reachable"], False, "reachable")
    check("S3cret" not in done.stdout + done.stderr, "the password was printed")


with Desk() as desk:
    a_destination_that_nobody_serves_is_told(desk)
with Desk() as desk:
    accounts_are_listed_without_their_passwords(desk)
