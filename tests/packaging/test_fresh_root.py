#!/usr/bin/python3
"""The Debian packages in fresh systems: installed, used on a real screen, removed without a trace.

Started by script/test-packages.
"""

import glob
import os
import subprocess
import tempfile
import unittest

from fresh_root import FreshRoot, run, say
from stage import scaled, wait_until
from stage.x11 import X11

PACKAGES = os.environ["ZELDLG_PACKAGES"]
CACHE = os.environ["ZELDLG_FRESH_CACHE"]
SUITE = os.environ["ZELDLG_SUITE"]
LIBRARY, DEVELOPMENT = "libzeldlglib3", "libzeldlglib-dev"
DEMO, SETTINGS = "zeldlg-demo", "zeldlg-settings"
PYTHON, PKCS11 = "python3-zeldlg", "zeldlg-p11"
COMPILERS = ["gcc", "g++", "libc6-dev", "cmake", "make", "pkg-config", "python3",
             "libp11-kit-dev", "libssl-dev"]
HOME = "/tmp/home"


def path_of(package):
    paths = glob.glob(os.path.join(PACKAGES, f"{package}_*.deb"))
    if len(paths) != 1:
        raise AssertionError(f"not one file of {package}: {paths}")
    return paths[0]


def dependencies(*packages):
    """Names of what the packages depend on, without these packages themselves."""
    fields = [run("dpkg-deb", "--field", path_of(package), "Depends").strip()
              for package in packages]
    return {entry.split()[0].removesuffix(":any") for field in fields if field
            for entry in field.split(", ")} - set(packages)


class InFreshRoot(unittest.TestCase):
    def make_root(self, name, packages, tools=()):
        place = tempfile.mkdtemp(prefix="zeldlg-root-", dir=os.environ["ZELDLG_STAGE"])
        self.root = FreshRoot(CACHE, place, name, [*dependencies(*packages), *tools], SUITE)
        self.addCleanup(run, "umount", "--recursive", place)
        self.x11 = X11(os.environ["DISPLAY"])
        self.addCleanup(self.x11.close)
        before = self.root.state()
        self.root.run("install", "-d", "-o", "nobody", HOME)
        say(f"installing {' and '.join(packages)}")
        self.root.install(*map(path_of, packages))
        self.assertEqual("", self.root.run("dpkg", "--audit") + self.root.run(
            "dpkg", "--verify", *packages))
        self.assertIn("libzeldlglib.so.3 ", self.root.run("ldconfig", "-p"))
        return before

    def end(self, before, packages):
        say("removing them")
        self.root.run("rm", "-r", HOME)
        self.root.purge(*packages)
        after = self.root.state()
        self.assertEqual([], sorted(path for path in {*before, *after}
                                    if before.get(path) != after.get(path)))

    def use(self, *command, title, keys, code=0, **environment):
        """Runs a program as a user without an own desktop session; types into its window."""
        process = self.root.start_as_user(*command, HOME=HOME, DISPLAY=os.environ["DISPLAY"],
                                          NO_AT_BRIDGE="1", **environment)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)

        def window_with_keyboard():
            if process.poll() is not None:
                raise AssertionError(f"ended with {process.returncode}: {process.stdout.read()}")
            return any(each == title and self.x11.holds_focus(number)
                       for number, _, each in self.x11.windows())
        wait_until(window_with_keyboard, 30, f"the window {title!r}", seen=self.x11.windows)
        self.x11.type_text(keys)
        try:
            output, _ = process.communicate(timeout=scaled(30))
        except subprocess.TimeoutExpired:
            raise AssertionError(f"{command} does not end; windows {self.x11.windows()}") from None
        self.assertEqual(code, process.returncode, output)
        return output


class User(InFreshRoot):
    def test_the_programs_work_and_leave_nothing_behind(self):
        packages = [LIBRARY, DEMO, SETTINGS]
        before = self.make_root("user", packages)
        say("help, manual pages, settings, dialogs")
        self.assertIn("Commands:\n  pin ", self.root.run_as_user("zeldlg-demo", "--help"))
        for program in (DEMO, SETTINGS):
            self.assertTrue(os.path.exists(f"{self.root.path}/usr/share/man/man1/{program}.1.gz"))
        listed = self.root.run_as_user("zeldlg-settings", "list", HOME=HOME)
        self.assertIn("2.0  LimitPinToAscii  number 1\n", listed)
        with open(f"{self.root.path}/usr/share/tessaly/registry", "rb") as shipped, \
                open(f"{self.root.path}{HOME}/.tessaly/registry", "rb") as copy:
            self.assertEqual(shipped.read(), copy.read())
        self.assertEqual(
            "result 0x00000000 (confirmed)\nPIN of 4 bytes\n",
            self.use("zeldlg-demo", "pin", title="Enter PIN", keys="2468\n"))
        self.use("zeldlg-demo", "message", "question", title="Question", keys="\n")
        self.assertIn("\n0 problems found\n", self.root.run_as_user(
            "zeldlg-settings", "doctor", HOME=HOME, DISPLAY=os.environ["DISPLAY"]))
        say("a dialog in German")
        # The minimal system has no German locale: the language comes behind its own, C.
        self.assertIn("PIN of 4 bytes\n", self.use("zeldlg-demo", "pin", title="PIN eingeben",
                                                   keys="2468\n", LANGUAGE="de"))
        self.end(before, packages)


class Developer(InFreshRoot):
    def build(self):
        self.root.run_as_user("cp", "-r", f"/usr/share/doc/{DEVELOPMENT}/examples", HOME)
        # Debian's /bin is /usr/bin: the package is to be found by either name.
        self.root.run_as_user("env", "PATH=/bin:/usr/bin", "cmake", "-S", f"{HOME}/examples", "-B",
                              f"{HOME}/found-by-cmake")
        self.assertIn("zeldlg_DIR:PATH=/lib/", self.root.run(
            "grep", "zeldlg_DIR", f"{HOME}/found-by-cmake/CMakeCache.txt"))
        self.root.run_as_user("cmake", "--build", f"{HOME}/found-by-cmake")
        self.assertIn("Commands:\n  list ", self.root.run_as_user(
            f"{HOME}/found-by-cmake/pkcs11/zeldlg-p11", "--help"))
        flags = self.root.run("pkg-config", "--cflags", "--libs", "zeldlg").split()
        self.root.run_as_user("gcc", f"{HOME}/examples/login.c", *flags, "-o", f"{HOME}/login")
        self.root.run_as_user("g++", "-std=c++17", f"{HOME}/examples/change_pin.cpp", *flags, "-o",
                              f"{HOME}/change_pin")

    def test_hosts_are_built_and_work_and_nothing_is_left_behind(self):
        packages = [LIBRARY, DEVELOPMENT, PYTHON]
        before = self.make_root("developer", packages, COMPILERS)
        say("building the examples with find_package and pkg-config")
        self.build()
        say("using the examples")
        for directory in ("", "found-by-cmake/"):
            self.assertEqual("logged in\n", self.use(f"{HOME}/{directory}login",
                                                     title="Enter PIN", keys="2468\n"))
            self.assertIn("4 bytes to 6 bytes", self.use(
                f"{HOME}/{directory}change_pin", title="Change transport PIN",
                keys="2468\tblue17\tblue17\n"))
        self.assertEqual("signing with a PIN of 6 bytes\n",
                         self.use("python3", f"{HOME}/examples/sign.py", title="Enter PIN",
                                  keys="975310\n"))
        self.end(before, packages)


class Tokens(InFreshRoot):
    """What knows nothing of the dialogs, on a token behind the module in front."""

    SOFTHSM = "/usr/lib/softhsm/libsofthsm2.so"

    def test_p11_kit_loads_the_module_and_nothing_is_left_behind(self):
        packages = [LIBRARY, PKCS11]
        before = self.make_root("token", packages, ["softhsm2", "opensc", "gnutls-bin", "p11-kit"])
        say("a token, and the module in front of it")
        self.root.run_as_user("mkdir", f"{HOME}/tokens")
        self.root.run_as_user("sh", "-c", f"echo directories.tokendir = {HOME}/tokens >{HOME}/conf")
        token = {"SOFTHSM2_CONF": f"{HOME}/conf"}
        self.root.run_as_user("softhsm2-util", "--init-token", "--free", "--label", "Card", "--pin",
                              "2468", "--so-pin", "87654321", **token)
        self.root.run_as_user("pkcs11-tool", "--module", self.SOFTHSM, "--login", "--pin", "2468",
                              "--keypairgen", "--key-type", "EC:prime256v1", **token)
        # It is there, and has no token as long as nothing is behind it.
        entry = "zeldlg-p11-module.so\n"
        self.assertNotIn("token:", self.root.run_as_user("p11-kit", "list-modules",
                                                         **token).split(entry)[1])
        self.root.run("mkdir", "/etc/zeldlg")
        self.root.run("sh", "-c", f"echo --module {self.SOFTHSM} --cache 60"
                                  " >/etc/zeldlg/p11-module.conf")
        self.assertIn("token: Card", self.root.run_as_user("p11-kit", "list-modules",
                                                           **token).split(entry)[1])
        say("p11tool, pkcs11-tool and zeldlg-p11 log in")
        module, = glob.glob(f"{self.root.path}/usr/lib/*/pkcs11/zeldlg-p11-module.so")
        module = module.removeprefix(self.root.path)
        for command in (("p11tool", "--provider", module, "--list-all", "--login",
                         "pkcs11:token=Card"),
                        ("pkcs11-tool", "--module", module, "--login", "--list-objects"),
                        ("zeldlg-p11", "--module", self.SOFTHSM, "login")):
            said = self.use(*command, title="Enter PIN", keys="2468\n", **token)
            self.assertRegex(said, "Private [Kk]ey|logged in to Card")
        self.assertTrue(os.path.exists(f"{self.root.path}/usr/share/man/man1/zeldlg-p11.1.gz"))
        self.root.run("rm", "-r", "/etc/zeldlg")
        self.end(before, packages)


if __name__ == "__main__":
    unittest.main(verbosity=2)
