"""A test authority and its certificates, made with the openssl tool for one test run."""

import subprocess
from pathlib import Path
from typing import NamedTuple


class Certificate(NamedTuple):
    certificate: Path
    key: Path


class Certificates:
    """`ca` is the file to trust; `good` is for localhost and 127.0.0.1, `wrong_host` for another
    name, `expired` ended yesterday."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self.ca = self.folder / "ca.pem"
        self._openssl("req", "-x509", *self._new_key("ca"), "-out", self.ca, "-days", 2,
                      "-subj", "/CN=Test authority")
        here = "DNS:localhost,IP:127.0.0.1"
        self.good = self._issue("good", here, 2)
        self.wrong_host = self._issue("wrong_host", "DNS:elsewhere.example", 2)
        self.expired = self._issue("expired", here, -1)

    def _new_key(self, name):
        return ("-newkey", "rsa:2048", "-nodes", "-keyout", self.folder / f"{name}.key")

    def _issue(self, name, alternatives, days):
        request, key = self.folder / f"{name}.csr", self.folder / f"{name}.key"
        extensions = self.folder / f"{name}.ext"
        extensions.write_text(f"subjectAltName={alternatives}\nbasicConstraints=CA:FALSE\n")
        self._openssl("req", "-new", *self._new_key(name), "-out", request,
                      "-subj", f"/CN={alternatives.partition(',')[0][4:]}")
        made = self.folder / f"{name}.pem"
        self._openssl("x509", "-req", "-in", request, "-CA", self.ca, "-CAkey",
                      self.folder / "ca.key", "-CAcreateserial", "-days", days, "-extfile",
                      extensions, "-out", made)
        return Certificate(made, key)

    @staticmethod
    def _openssl(*arguments):
        subprocess.run(["openssl", *map(str, arguments)], check=True, capture_output=True)
