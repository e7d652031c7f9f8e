#!/usr/bin/python3
"""Where the settings file is found, with the places that the library ships with.

Each run gets file systems of its own: nothing of the machine's is read or written.
"""

import os
import shutil
import stat
import subprocess
import tempfile
import unittest

from stage import require_private_mounts, scaled

PROGRAM = os.environ["ZELDLG_SETTINGS"]
SHIPPED = "/usr/share/tessaly/registry"
SYSTEM = "/etc/tessaly/registry"


def registry(value, stamp=None):
    stamp_line = f'"RegistryHash"="{stamp}"\r\n' if stamp else ""
    return f'REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\K]\r\n{stamp_line}"V"="{value}"\r\n\r\n'


class Places(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        require_private_mounts()

    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="places-")
        self.addCleanup(shutil.rmtree, self.directory)
        self.home = os.path.join(self.directory, "home")
        # The odd temporary directories are names beside /tmp: they are looked at as a file system
        # root of their own.
        self.root = os.path.join(self.directory, "root")
        os.mkdir(self.home)
        os.mkdir(self.root)
        for name in ("lib", "lib64", "bin"):
            if os.path.islink("/" + name):
                os.symlink(os.readlink("/" + name), os.path.join(self.root, name))

    def run_settings(self, *words, files=None, home="/home/user", user="user", read_only_home=False,
                     environment=None):
        command = ["bwrap", "--bind", self.root, "/"]
        for name in ("usr", "lib", "lib64", "bin"):
            if not os.path.islink("/" + name):
                command += ["--ro-bind", "/" + name, "/" + name]
        command += ["--dev", "/dev", "--proc", "/proc", "--dir", "/tmp", "--tmpfs", "/usr/share", "--tmpfs", "/etc",
                    "--ro-bind" if read_only_home else "--bind", self.home, "/home/user",
                    "--ro-bind", PROGRAM, "/run/zeldlg-settings"]
        for path, text in (files or {}).items():
            source = os.path.join(self.directory, path.replace("/", "_"))
            with open(source, "w", newline="") as file:
                file.write(text)
            command += ["--ro-bind", source, path]
        variables = {"ZEL_HOME": home, "USER": user, **(environment or {})}
        command += ["--clearenv"]
        for name, value in variables.items():
            if value is not None:
                command += ["--setenv", name, value]
        result = subprocess.run([*command, "/run/zeldlg-settings", *words], text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=scaled(60))
        return result.returncode, result.stdout.strip() or result.stderr.strip()

    def get(self, **options):
        return self.run_settings("get", "K", "V", **options)

    def write_user_file(self, text):
        os.makedirs(os.path.join(self.home, ".tessaly"), exist_ok=True)
        with open(os.path.join(self.home, ".tessaly", "registry"), "w", newline="") as file:
            file.write(text)

    def read_user_file(self):
        with open(os.path.join(self.home, ".tessaly", "registry"), newline="") as file:
            return file.read()

    def test_a_missing_user_file_is_made_from_the_shipped_one(self):
        self.assertEqual((0, "string shipped"), self.get(files={SHIPPED: registry("shipped")}))
        self.assertEqual(registry("shipped"), self.read_user_file())
        mode = os.stat(os.path.join(self.home, ".tessaly")).st_mode
        self.assertEqual(0o700, stat.S_IMODE(mode))

    def test_the_shipped_example_holds_every_setting_at_its_default(self):
        example = os.path.join(os.path.dirname(__file__), "..", "..", "..", "packaging",
                               "registry")
        with open(example, newline="") as file:
            code, listed = self.run_settings("list", files={SHIPPED: file.read()})
        self.assertEqual(0, code, listed)
        self.assertNotIn("not set", listed)
        for line in ("LimitPinToAscii  number 1", "ShowEnrolmentHint  number 1",
                     "Automatic retry timeout  number 0",
                     "Automatic default selection timeout  number 5",
                     "Policies\\Example  P2MinLen  number 6"):
            self.assertIn(line, listed)

    def test_a_user_file_is_kept_unless_the_stamps_differ(self):
        self.write_user_file(registry("mine", "1"))
        for shipped, value in ((registry("shipped"), "mine"), (registry("shipped", "1"), "mine"),
                               (registry("shipped", "2"), "shipped")):
            self.assertEqual((0, f"string {value}"), self.get(files={SHIPPED: shipped}))

    def test_without_a_home_the_shipped_file_is_read_in_place(self):
        for environment in ({}, {"HOMEDRIVE": "/home"}):
            self.assertEqual((0, "string shipped"),
                             self.get(home=None, files={SHIPPED: registry("shipped")},
                                      environment=environment))

    def test_home_variables_are_tried_in_their_order(self):
        self.write_user_file(registry("mine"))
        self.assertEqual((0, "string mine"), self.get(environment={"HOME": "/nowhere"}))
        self.assertEqual((0, "string mine"),
                         self.get(home=None, environment={"HOME": "/home/user"}))
        self.assertEqual((0, "string mine"),
                         self.get(home=None, environment={"HOMEDRIVE": "/home",
                                                          "HOMEPATH": "/user"}))

    def test_the_system_file_is_the_last_that_is_read(self):
        self.assertEqual((0, "string system"),
                         self.get(home=None, files={SYSTEM: registry("system")}))
        self.assertEqual((0, "string shipped"),
                         self.get(home=None, files={SYSTEM: registry("system"),
                                                    SHIPPED: registry("shipped")}))

    def test_the_users_temporary_file_comes_before_the_shipped_one(self):
        os.mkdir(os.path.join(self.root, "tmptmpregistry-user"))
        path = os.path.join(self.root, "tmptmpregistry-user", "registry")
        with open(path, "w", newline="") as file:
            file.write(registry("temporary"))
        files = {SHIPPED: registry("shipped")}
        self.assertEqual((0, "string temporary"), self.get(home=None, files=files))
        self.assertEqual((0, "string shipped"), self.get(home=None, user="other", files=files))

    def test_without_any_file_one_is_made(self):
        for home, user, place in (("/home/user", "user", "home/user/.tessaly"),
                                  (None, "user", "tmptmpregistry-user"),
                                  (None, None, "tmptmpregistry-nobody")):
            with self.subTest(place=place):
                code, text = self.run_settings("set", "K", "V", "string", "new", home=home,
                                               user=user)
                self.assertEqual((0, ""), (code, text))
                base = self.directory if place.startswith("home/") else self.root
                place = place.replace("home/user", "home")
                with open(os.path.join(base, place, "registry"), newline="") as file:
                    self.assertEqual('REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\K]\r\n"V"="new"\r\n\r\n',
                                     file.read())

    def test_a_home_that_cannot_be_written_is_passed_over(self):
        code, text = self.run_settings("set", "K", "V", "string", "new", read_only_home=True)
        self.assertEqual((0, ""), (code, text))
        self.assertEqual((0, "string new"), self.get(read_only_home=True))
        self.assertFalse(os.path.exists(os.path.join(self.home, ".tessaly")))


if __name__ == "__main__":
    unittest.main()
