"""Fresh SoftHSM tokens for tests, and a look at them from outside."""

import os
import subprocess
import tempfile

from stage import ProgramTestCase, wait_until

SOFTHSM = "/usr/lib/softhsm/libsofthsm2.so"
PIN, SO_PIN = "2468", "87654321"


def run(*command, code=0, **environment):
    """What a command printed that ends with that code."""
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            env={**os.environ, **environment})
    if result.returncode != code:
        raise AssertionError(f"{' '.join(command)}: exit code {result.returncode}\n"
                             + result.stdout.decode(errors="replace"))
    return result.stdout.decode(errors="replace")


class TokenTestCase(ProgramTestCase):
    """A test with a fresh token in a folder of its own, and what looks at it from outside."""

    def setUp(self):
        super().setUp()
        scratch = tempfile.TemporaryDirectory(prefix="zeldlg-p11-")
        self.addCleanup(scratch.cleanup)
        self.folder = scratch.name
        self.tokens = os.path.join(self.folder, "tokens")
        os.mkdir(self.tokens)
        self.softhsm = {"SOFTHSM2_CONF": os.path.join(self.folder, "conf")}
        with open(self.softhsm["SOFTHSM2_CONF"], "w") as file:
            file.write(f"directories.tokendir = {self.tokens}\n")
        # What SoftHSM logs goes nowhere but there; p11-kit's modules of the machine are not ours.
        self.environment = {**self.softhsm, "ZEL_HOME": self.folder, "HOME": self.folder}
        self.make_token("Identity card")

    def make_token(self, label):
        run("softhsm2-util", "--init-token", "--free", "--label", label, "--so-pin", SO_PIN,
            "--pin", PIN, **self.softhsm)

    def tool(self, *words, pin=PIN, code=0):
        """OpenSC's tool on SoftHSM itself, with the PIN."""
        login = ("--login", "--pin", pin) if pin else ()
        return run("pkcs11-tool", "--module", SOFTHSM, "--token-label", "Identity card", *login,
                   *words, code=code, **self.softhsm)

    def assert_pin(self, pin):
        """That it is the user's PIN."""
        self.tool("--list-objects", pin=pin)

    def path(self, name, content=None):
        """A file in the test's folder, with that content."""
        path = os.path.join(self.folder, name)
        if content is not None:
            with open(path, "wb") as file:
                file.write(content)
        return path

    def let_go(self):
        """Of what a token of the tests holds, once it does."""
        wait_until(lambda: os.path.exists(self.path("held")), what="the token at work")
        self.path("go", b"")

    def token_settings(self, **told):
        """The environment of a token of the tests: what it is told, without the prefix."""
        return {"TEST_TOKEN_BEHIND": SOFTHSM, "TEST_TOKEN_STATE": self.folder,
                **{f"TEST_TOKEN_{name}": str(value) for name, value in told.items()}}
