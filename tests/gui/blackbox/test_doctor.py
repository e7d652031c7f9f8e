#!/usr/bin/python3
"""What the doctor command finds, with places and a home of its own for each run.

Every run is also held to its promise to change nothing.
"""

import os
import re
import shutil
import socket
import struct
import subprocess
import tempfile
import unittest

from stage import folder_with, make_locales, require_private_mounts, scaled

PROGRAM = os.environ["ZELDLG_SETTINGS"]
LIBRARY = os.environ["ZELDLG_LIBRARY"]
SHIPPED = "usr/share/tessaly/registry"
KEY = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Corvenna\\Tessaly\\2.0"
DAMAGED = b"\xde\x12\x04\x95" + b"\xff" * 40


def registry(*lines, stamp="1", catalogues=None):
    text = f'REGEDIT4\r\n\r\n[{KEY}]\r\n"RegistryHash"="{stamp}"\r\n'
    text += "".join(line + "\r\n" for line in lines) + "\r\n"
    if catalogues:
        text += f'[{KEY}\\Locales]\r\n"Path"="{catalogues}"\r\n\r\n'
    return text


def catalogue(texts):
    """The bytes of a .mo file."""
    pairs = sorted({"": "Content-Type: text/plain; charset=UTF-8\n", **texts}.items())
    place = 28 + 16 * len(pairs)  # of the next text
    tables = pool = b""
    for column in range(2):
        for pair in pairs:
            text = pair[column].encode()
            tables += struct.pack("<II", len(text), place + len(pool))
            pool += text + b"\0"
    return struct.pack("<7I", 0x950412de, 0, len(pairs), 28, 28 + 8 * len(pairs), 0,
                       place) + tables + pool


def snapshot(*directories):
    """Everything about each file that a run could change."""
    found = {}
    for directory in directories:
        for folder, folders, files in os.walk(directory):
            for name in [".", *folders, *files]:
                path = os.path.join(folder, name)
                status = os.lstat(path)
                found[path] = (status.st_mode, status.st_uid, status.st_size, status.st_mtime_ns,
                               status.st_ctime_ns, status.st_ino)
    return found


class Findings:
    def __init__(self, code, text, errors):
        self.code = code
        self.text = text
        self.errors = errors

    def section(self, title):
        found = re.search(rf"^{title}\n((?:  .*\n)*)", self.text, re.MULTILINE)
        return found.group(1) if found else None

    def problems(self):
        return re.findall(r"^  problem: (.*)$", self.text, re.MULTILINE)


class DoctorCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        require_private_mounts()

    def setUp(self):
        self.directory = tempfile.mkdtemp(prefix="doctor-")
        self.addCleanup(self._remove)
        self.temporary = tempfile.mkdtemp(prefix="doctor-")
        self.addCleanup(shutil.rmtree, self.temporary)
        self.home = os.path.join(self.directory, "home")
        self.shipped = os.path.join(self.directory, "usr-share-tessaly")
        self.system = os.path.join(self.directory, "etc-tessaly")
        for folder in (self.home, self.shipped, self.system):
            os.mkdir(folder)
        self.user_file = os.path.join(self.home, ".tessaly", "registry")
        self.shipped_file = os.path.join(self.shipped, "registry")

    def _remove(self):
        for folder, folders, _ in os.walk(self.directory):
            for name in folders:
                os.chmod(os.path.join(folder, name), 0o700)
        shutil.rmtree(self.directory)

    @staticmethod
    def write(path, text):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(text if isinstance(text, bytes) else text.encode())

    def healthy(self, **options):
        self.write(self.shipped_file, registry('"LimitPinToAscii"=dword:00000001', **options))
        self.write(self.user_file, registry('"LimitPinToAscii"=dword:00000000', **options))

    def run_doctor(self, *words, environment=None, without=(), read_only_home=False,
                   as_user=False, library=LIBRARY, keeps=()):
        before = snapshot(self.directory)
        command = ["bwrap", "--dev-bind", "/", "/"]
        for target, source in (("/usr/share", self.shipped), ("/etc", self.system)):
            command += folder_with(target, "tessaly", source)
        command += ["--ro-bind" if read_only_home else "--bind", self.home, self.home]
        if as_user:
            command += ["--unshare-user", "--uid", "1000", "--cap-drop", "ALL"]
        values = {"ZEL_HOME": self.home, "TMPDIR": self.temporary, "HOME": self.home, "XDG_CACHE_HOME": self.home + "/cache",
                  "XDG_CONFIG_HOME": self.home + "/config", **(environment or {})}
        variables = {name: value for name, value in {**os.environ, **values}.items()
                     if name not in ("USER", *without)}
        result = subprocess.run([*command, PROGRAM, "--library", library, "doctor", *words],
                                text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                env=variables, timeout=scaled(100))
        found = Findings(result.returncode, result.stdout, result.stderr)
        self.assertEqual(before, snapshot(self.directory), "the doctor changed something")
        self.assertEqual([os.path.basename(path) for path in keeps], os.listdir(self.temporary),
                         "the doctor left something behind")
        return found

    def assert_problems(self, found, *patterns):
        """Exactly these, in this order; and the last line and the exit code say so."""
        problems = found.problems()
        self.assertEqual(len(patterns), len(problems), found.text + found.errors)
        for pattern, problem in zip(patterns, problems):
            self.assertRegex(problem, pattern)
        noun = "problem" if len(patterns) == 1 else "problems"
        self.assertEqual(f"{len(patterns)} {noun} found", found.text.splitlines()[-1])
        self.assertEqual(1 if patterns else 0, found.code)
        self.assertEqual("", found.errors)


class Healthy(DoctorCase):
    def test_everything_is_said_and_nothing_is_wrong(self):
        self.healthy()
        found = self.run_doctor()
        self.assert_problems(found)
        for title in ("Settings file", "Settings", "Language", "Display", "Process",
                      "Library"):
            self.assertTrue(found.section(title).endswith("  ok\n"), found.text)
        for title, line in (
                ("Settings file", rf"place 1, user's +{self.user_file} \(used\)"),
                ("Settings file", r"place 2, shipped +/usr/share/tessaly/registry \(there\)"),
                ("Settings file", r"place 3, system's +/etc/tessaly/registry \(not there\)"),
                ("Settings file", r'stamp of the user\'s +"1"'),
                ("Settings file", "the next start +copies nothing"),
                ("Settings", "general +LimitPinToAscii = number 0"),
                ("Display", rf"opened +{os.environ['DISPLAY']} \(X11\)"),
                ("Display", r"screen +1024 by 768, scale 1"),
                ("Display", "theme +Adwaita"),
                ("Display", r"GTK +3\.\d+\.\d+"),
                ("Display", r"wxWidgets +made for 3\.2\.\d+, found /.*/libwx_baseu-3\.2\.so.*"),
                ("Process", "ZELDLG_PROCESS +not set"),
                ("Process", "windows are shown by +the host's process; a helper where that cannot"),
                ("Process", "because +that is the default"),
                ("Library", rf"file +{LIBRARY}"),
                ("Library", rf"helper +{os.path.dirname(LIBRARY)}/zeldlg/zeldlg-helper"),
                ("Library", "locale +en_US"),
                ("Library", r"started in +\d+ ms"),
                ("Library", r"ended in +\d+ ms")):
            self.assertRegex(found.section(title), rf"(?m)^  {line}$")

    def test_values_stand_below_each_other(self):
        self.healthy()
        for line in self.run_doctor().text.splitlines():
            if line.startswith("  ") and line != "  ok":
                self.assertRegex(line, r"^  \S.{20} {3}\S|^  \S.{21}  \S")

    def test_the_system_s_file_is_the_last_place(self):
        self.write(os.path.join(self.system, "registry"), registry())
        found = self.run_doctor()
        self.assert_problems(found)
        self.assertRegex(found.section("Settings file"), r"/etc/tessaly/registry \(used\)")


class SettingsFile(DoctorCase):
    def test_none_at_all(self):
        found = self.run_doctor()
        self.assert_problems(found, "There is no settings file")
        for whose in ("user's", "shipped"):
            self.assertRegex(found.section("Settings file"), f"stamp of the {whose} +no file\n")

    def test_one_that_would_be_made(self):
        self.write(self.shipped_file, registry('"LimitPinToAscii"=dword:00000000'))
        found = self.run_doctor()
        self.assert_problems(found)
        section = found.section("Settings file")
        self.assertRegex(section, rf"{self.user_file} \(not there\)")
        self.assertRegex(section, "stamp of the user's +no file\n")
        self.assertRegex(section, r"/usr/share/tessaly/registry \(used: it is going to be copied")
        self.assertIn(f"makes {self.user_file} of /usr/share/tessaly/registry", section)
        self.assertIn("LimitPinToAscii = number 0", found.section("Settings"))

    def test_one_that_would_be_written_over(self):
        self.write(self.shipped_file, registry('"LimitPinToAscii"=dword:00000000', stamp="new"))
        self.write(self.user_file, registry('"LimitPinToAscii"=dword:00000001', stamp="old"))
        found = self.run_doctor()
        self.assert_problems(found)
        section = found.section("Settings file")
        self.assertRegex(section, 'stamp of the user\'s +"old"')
        self.assertRegex(section, 'stamp of the shipped +"new"')
        self.assertRegex(section, f"copies /usr/share/tessaly/registry over {self.user_file}")
        self.assertNotIn("its end stays", section)
        self.assertIn("LimitPinToAscii = number 0", found.section("Settings"))

    def test_one_whose_end_would_stay_behind_the_copy(self):
        self.write(self.shipped_file, registry(stamp="new"))
        self.write(self.user_file, registry('"LimitPinToAscii"=dword:00000001', stamp="old"))
        self.assertIn("its end stays", self.run_doctor().section("Settings file"))

    def test_one_that_is_old_and_cannot_be_replaced(self):
        self.write(self.shipped_file, registry(stamp="new"))
        self.write(self.user_file, registry('"LimitPinToAscii"=dword:00000000', stamp="old"))
        found = self.run_doctor(read_only_home=True)
        self.assert_problems(found, "older than the shipped one and cannot be replaced")
        self.assertIn("LimitPinToAscii = number 0", found.section("Settings"))

    def test_a_copy_that_is_refused(self):
        self.write(self.shipped_file, registry())
        self.write(self.user_file, "[" + registry())
        # Its stamp is the shipped one's: it is not replaced.
        self.assert_problems(self.run_doctor(),
                             rf"{self.user_file} is refused with error 1017: .*REGEDIT4")

    def test_a_header_without_its_line_end(self):
        self.write(self.shipped_file, registry())
        self.write(self.user_file, registry() + "[HKEY_LOCAL_MACHINE\\K]")
        self.assert_problems(self.run_doctor(), "is refused with error 1015")

    def test_a_pipe_in_its_place(self):
        self.write(self.shipped_file, registry('"LimitPinToAscii"=dword:00000000'))
        os.mkdir(os.path.dirname(self.user_file))
        os.mkfifo(self.user_file)
        found = self.run_doctor()
        self.assert_problems(found, rf"{self.user_file}: it is no regular file")
        self.assertRegex(found.section("Settings file"), r"/usr/share/tessaly/registry \(used\)")
        self.assertIn("LimitPinToAscii = number 0", found.section("Settings"))

    def test_one_that_may_not_be_read(self):
        self.healthy()
        os.chmod(self.user_file, 0)
        found = self.run_doctor(as_user=True)
        self.assert_problems(found, rf"{self.user_file}: Permission denied")
        self.assertRegex(found.section("Settings file"),
                         "stamp of the user's +the file cannot be read\n")
        self.assertIn("LimitPinToAscii = number 1", found.section("Settings"))

    def test_a_stamp_whose_line_ends_with_lf_alone(self):
        self.write(self.shipped_file, registry().replace("\r", ""))
        self.assert_problems(self.run_doctor(), "does not end with CR LF")


class Settings(DoctorCase):
    def test_a_wrong_type_is_a_problem(self):
        self.healthy()
        self.write(self.user_file, registry('"LimitPinToAscii"="0"', '"ShowEnrolmentHint"=hex:01'))
        found = self.run_doctor()
        self.assert_problems(found, "LimitPinToAscii has the wrong type",
                             "ShowEnrolmentHint has the wrong type")
        self.assertIn("It has to be a number; its default is 1.", found.text)

    def test_a_wrong_type_in_a_policy_is_a_problem(self):
        self.healthy()
        self.write(self.user_file, registry() + f'[{KEY}\\Policies\\Bank]\r\n"P2MinLen"="6"\r\n'
                   '"P4CharList"="abc"\r\n"P4IsWhiteList"=dword:00000001\r\n\r\n')
        found = self.run_doctor()
        self.assert_problems(found, "P2MinLen has the wrong type")
        self.assertRegex(found.section("Settings"), r"Policies\\Bank +P4CharList = string abc")

    def test_a_list_of_characters_that_is_too_long_is_a_problem(self):
        self.healthy()
        for length, problems in ((64, ()), (65, ("P4CharList is too long",))):
            self.write(self.user_file, registry() + f'[{KEY}\\Policies\\Bank]\r\n'
                       f'"P4CharList"="{"x" * length}"\r\n\r\n')
            self.assert_problems(self.run_doctor(), *problems)

    def test_what_is_not_known_is_named_without_its_value(self):
        self.healthy()
        self.write(self.user_file, registry('"LimitPinsToAscii"=dword:00000000',
                                            '"Password"="geheim"') +
                   f'[{KEY}\\CSP]\r\n"Other"="verborgen"\r\n\r\n'
                   '[HKEY_LOCAL_MACHINE\\SOFTWARE\\Else]\r\n"Foreign"="x"\r\n\r\n')
        found = self.run_doctor()
        self.assert_problems(found)
        for line in ("LimitPinsToAscii", "Password", "Other in CSP"):
            self.assertRegex(found.section("Settings"), rf"not known +{line} \(the dialogs do not")
        for hidden in ("geheim", "verborgen", "Foreign"):
            self.assertNotIn(hidden, found.text)

    def test_a_line_that_is_no_value_is_a_problem(self):
        self.healthy()
        self.write(self.user_file, registry('; a comment', '"LimitPinToAscii"=0'))
        self.assert_problems(self.run_doctor(), 'A line cannot be understood.*"LimitPinToAscii"$')

    def test_nothing_in_a_file_moves_the_cursor(self):
        self.healthy()
        self.write(self.user_file, registry('"\x1b[2J"="x"'))
        found = self.run_doctor()
        self.assertIn("?[2J", found.section("Settings"))
        self.assertNotIn("\x1b", found.text)


class Language(DoctorCase):
    def setUp(self):
        super().setUp()
        self.catalogues = os.path.join(self.directory, "catalogues")
        os.mkdir(self.catalogues)
        self.healthy(catalogues=self.catalogues)
        self.german = os.path.join(self.catalogues, "de", "LC_MESSAGES", "tokenutils.mo")
        self.environment = {"LOCPATH": make_locales("de_DE"), "LC_ALL": "de_DE.UTF-8"}

    def run_doctor(self, *words, **options):
        return super().run_doctor(*words, environment=self.environment, **options)

    def test_a_good_catalogue(self):
        self.write(self.german, catalogue({"Cancel": "Abbrechen", "%d left": "%d \u00fcbrig"}))
        found = self.run_doctor()
        self.assert_problems(found)
        for line in (rf"catalogue +{self.german} \(used\)", "texts in it +2", "language +de",
                     "LC_ALL +de_DE.UTF-8", "locale of the system +de_DE.UTF-8",
                     f"folder of catalogues +{self.catalogues}"):
            self.assertRegex(found.section("Language"), rf"(?m)^  {line}$")
        self.assertRegex(found.section("Library"), "locale +de_DE")

    def test_a_translation_that_is_not_used(self):
        self.write(self.german, catalogue({"Cancel": "Abbrechen", "%d left": "%s \u00fcbrig"}))
        self.assert_problems(self.run_doctor(), 'A translation is not used.*"%d left"')

    def test_a_damaged_catalogue(self):
        self.write(self.german, DAMAGED)
        found = self.run_doctor()
        self.assert_problems(found, f"{self.german} is damaged")
        self.assertIn(f"{self.german} (passed over)", found.section("Language"))
        self.assertNotIn("(used)", found.section("Language"))

    def test_a_folder_that_is_not_there(self):
        os.rmdir(self.catalogues)
        self.assert_problems(self.run_doctor(), f"There is no folder {self.catalogues}")

    def test_a_locale_that_is_not_installed(self):
        self.environment = {"LC_ALL": "xx_XX.UTF-8"}
        self.assert_problems(self.run_doctor(), "locale .* is not installed")


class Process(DoctorCase):
    def expect(self, found, who, why):
        self.assertRegex(found.section("Process"), f"windows are shown by +{who}\n")
        self.assertRegex(found.section("Process"), f"because +{why}\n")

    def choose(self, word):
        self.healthy()
        self.write(self.user_file, registry(f'"DialogProcess"="{word}"'))

    def test_the_environment_goes_before_the_setting(self):
        self.choose("helper")
        found = self.run_doctor()
        self.assert_problems(found)
        self.expect(found, "always a helper process", "the setting DialogProcess says so")
        found = self.run_doctor(environment={"ZELDLG_PROCESS": "own"})
        self.assert_problems(found)
        self.expect(found, "the host's process, or none", "ZELDLG_PROCESS says so")

    def test_a_word_that_is_none_of_them_counts_as_missing(self):
        self.choose("both")
        found = self.run_doctor(environment={"ZELDLG_PROCESS": "mine"})
        self.assert_problems(found, "ZELDLG_PROCESS has an unknown value",
                             "DialogProcess has an unknown value")
        self.expect(found, "the host's process; .*", "that is the default")

    def test_a_helper_that_is_missing(self):
        self.healthy()
        alone = os.path.join(self.temporary, "alone.so")
        shutil.copy(os.path.realpath(LIBRARY), alone)
        found = self.run_doctor(library=alone, keeps=[alone])
        self.assert_problems(found, "The helper process is missing")


class DisplayAndLibrary(DoctorCase):
    def setUp(self):
        super().setUp()
        self.healthy()

    def test_no_display(self):
        found = self.run_doctor(without=("DISPLAY", "WAYLAND_DISPLAY"))
        self.assert_problems(found, "Neither DISPLAY nor WAYLAND_DISPLAY is set")
        self.assertRegex(found.section("Library"), "started +not tried: there is no display")

    def test_a_display_that_is_not_there(self):
        found = self.run_doctor(environment={"DISPLAY": ":9876"})
        self.assert_problems(found, "The display cannot be opened")
        self.assertRegex(found.section("Display"),
                         r"socket +/tmp/.X11-unix/X9876 \(No such file or directory\)")

    def test_a_display_that_does_not_answer(self):
        silent = socket.socket()
        self.addCleanup(silent.close)
        silent.bind(("127.0.0.1", 0))
        silent.listen()
        number = silent.getsockname()[1] - 6000  # what X adds to a display's number
        found = self.run_doctor(environment={"DISPLAY": f"127.0.0.1:{number}"})
        self.assert_problems(found, "The display does not answer")

    def test_a_library_that_cannot_be_loaded(self):
        found = self.run_doctor(library=os.path.join(self.directory, "none.so"))
        self.assert_problems(found, "The library cannot be loaded")
        self.assertRegex(found.section("Library"), "message +zeldlg-settings: .*none.so")

    def test_a_library_that_dies_at_its_start(self):
        found = self.run_doctor(library=os.environ["ZELDLG_DYING_LIBRARY"])
        self.assert_problems(found, "It dies at its start: Aborted")


class Usage(DoctorCase):
    def test_an_unknown_option_is_refused(self):
        found = self.run_doctor("--fast")
        self.assertEqual((2, "", "zeldlg-settings: unexpected word '--fast'\n"),
                         (found.code, found.text, found.errors))

    def test_help(self):
        found = self.run_doctor("--help")
        self.assertEqual(0, found.code)
        self.assertIn("Usage: zeldlg-settings doctor\n", found.text)


if __name__ == "__main__":
    unittest.main()
