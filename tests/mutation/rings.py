"""Which tests are asked about a change, in which order: what is quick and near first."""

import os
import re
import subprocess

# Of the unit tests: what measures time or repeats something some 10,000 times.
SLOW = "Oracle TenThousand Random"

# By the file that was changed (the first that matches): words that the names of unit tests and of
# white-box tests have in them, and files of black-box tests.
NEAR = (
    (r"src/api/prompt_texts", "PromptTexts", "", "prompts"),
    (r"src/api/call_frame", "", "", "trace"),
    (r"src/api/", "", "", "whole_library prompts pin_entry"),
    (r"src/biometric/enrolment", "EnrolmentHint", "OfTheEnrolmentHint", "enrolment_hint"),
    (r"src/biometric/(errors|retry)", "BiometricErrors", "OfTheRetryQuestion Boxes",
     "message_boxes"),
    (r"src/biometric/", "NotificationTexts ScanCounter", "OfTheBiometricWindow", "biometric"),
    (r"src/dialogs/message", "MessageStyles TokenErrors UnknownErrors",
     "OfTheMessageDialog OfTheRetryQuestion Boxes MessageDialog", "message_boxes"),
    (r"src/(widgets/choice|dialogs/(digital|selection|token))",
     "DefaultCountDown SelectionTexts", "OfTheTokenDialog OfTheDigitalIdDialog", "selection"),
    (r"src/dialogs/key_gen", "KeyGen", "OfTheKeyGenerationWindow", "key_generation"),
    (r"src/(widgets/text_panel|dialogs/select_unblock)", "Algorithm Method",
     "OfTheUnblockMethodDialog UnblockMethod TextPanel", "unblock_method"),
    (r"src/dialogs/(challenge|unlock)", "Response Challenge NewPin",
     "OfTheChallengeResponseDialog UnlockWithCr", "challenge_response"),
    (r"src/widgets/banner", "ReadableOnWhite ContrastRatio PaleShare", "StatedConstants Look",
     "themes"),
    (r"src/widgets/spoken_state", "Spoken Sentences", "", "accessibility"),
    (r"src/widgets/sec", "SecretText", "FieldWidth Secure", ""),
    (r"src/widgets/pin_field", "AsciiFilter AcceptedText",
     "OfTheChangeDialogs OfThePinDialog AsciiFields PinField SecretFields",
     "change_pin challenge_response accessibility"),
    (r"src/widgets/screen_fit", "", "", "screens"),
    (r"src/widgets/", "", "StatedConstants Closing WrapText TextLabel AccessibleName Look Modeless",
     "pin_entry change_pin accessibility"),
    (r"src/pin/pin_pad", "PinPad", "OfThePinPad", "pin_pad"),
    (r"src/pin/legal", "", "OfTheSignatureDialog OfThePinPad", "legal_pin"),
    (r"src/pin/", "FailureOf PinLengthRule", "OfThePinDialog OfTheSignatureDialog", "pin_entry"),
    (r"src/policy/change", "Change Mode Texts PolicyPages LocalPolicies",
     "OfTheChangeDialogs OfThePolicedChangeDialog", "change_pin"),
    (r"src/policy/", "Polic Character Elementary", "", "change_pin"),
    (r"src/registry/process_wish", "", "", "helper"),
    (r"src/registry/registry_encoding", "RegistryEncoding RegistryText", "", ""),
    (r"src/registry/registry_value", "RegistryValueLine RegistryStore", "", ""),
    (r"src/registry/registry_text", "RegistryText RegistryStore", "", ""),
    (r"src/registry/registry_(places|file|refresh)", "RegistryPlaces RegistryFile RegistryRefresh",
     "", "selection"),
    (r"src/registry/", "RegistryStore RegistrySettings RegistryEncoding", "",
     "selection enrolment_hint translation"),
    (r"src/platform/", "Event Deadline Thread Text Time DebugPrint FormatString Bytes Object Utf",
     "", ""),
    (r"src/resources/",
     "Catalogue Text Direction Isolate Format Conversions ShownNumber Utf KeyGenPictures",
     "CatalogueLoading Icons", "translation"),
    (r"src/runtime/handlers/pin_pad", "", "", "pin_pad"),
    (r"src/runtime/handlers/change", "", "", "change_pin"),
    (r"src/runtime/handlers/policy_wire", "Polic", "", "change_pin"),
    (r"src/runtime/handlers/pin", "", "", "pin_entry legal_pin"),
    (r"src/runtime/handlers/boxes", "", "MessageBoxRequests", "message_boxes prompts"),
    (r"src/runtime/handlers/selection", "", "", "selection"),
    (r"src/runtime/handlers/unblock", "", "", "unblock_method challenge_response"),
    (r"src/(helper|runtime/remote)/", "Remote HelperProcess", "", "helper"),
    (r"src/runtime/other_toolkit", "", "", "helper"),
    (r"src/runtime/life", "Life ExitGuard Thread", "", "host_life"),
    (r"src/runtime/dll_app", "", "DllApp", "translation"),
    (r"src/runtime/wx_", "Runner", "", "display_loss process_state host_life"),
    (r"src/runtime/handlers/", "SizedText", "MessageBoxRequests",
     "enrolment_hint biometric key_generation translation"),
    (r"", "Runner Message Thread ExitGuard HandlerChain", "DllApp",
     "whole_library process_state host_life trace"),
)


def gtest_filter(words, without=""):
    return (":".join(f"*{word}*" for word in words.split()) or "*") + "-" + ":".join(
        f"*{word}*" for word in without.split())


class Rings:
    """The programs of one build, on the stage that this process runs on."""

    def __init__(self, root, build):
        self._unit = os.path.join(build, "bin", "zeldlg_unit")
        self._white_box = os.path.join(build, "bin", "zeldlg_gui_whitebox")
        self._black_box = os.path.join(root, "tests", "gui", "blackbox")
        self._environment = {
            "ZELDLG_LIBRARY": os.path.join(build, "libzeldlglib.so.3"),
            "ZELDLG_TEST_HOST": os.path.join(build, "bin", "zeldlg_test_host"),
            "ZELDLG_DEMO": os.path.join(build, "bin", "zeldlg-demo"),
            "ZELDLG_SETTINGS": os.path.join(build, "bin", "zeldlg-settings"),
            "ZELDLG_ROUGH_HOST": os.path.join(build, "bin", "zeldlg_rough_host"),
            "ZELDLG_ROUGH_CONSTRUCTOR": os.path.join(build, "libzeldlg_rough_constructor.so"),
            "ZELDLG_DYING_LIBRARY": os.path.join(build, "libzeldlg_dying_library.so"),
            "ZELDLG_ARTIFACTS": os.path.join(build, "artifacts"),
            "PYTHONDONTWRITEBYTECODE": "1",
            "GTEST_FAIL_FAST": "1"}

    def _gtest(self, program, words, without=""):
        name = f"{os.path.basename(program)} {words or 'all'}"
        return name, [program, "--gtest_filter=" + gtest_filter(words, without)]

    def steps(self, ring, path):
        """(what it is called, command) of a ring, for a changed file."""
        unit, white_box, black_box = next(near for pattern, *near in NEAR
                                          if re.match(pattern, path))
        if ring == "unit":
            return [self._gtest(self._unit, unit, SLOW)] if unit else []
        if ring == "whitebox":
            return [self._gtest(self._white_box, white_box)] if white_box else []
        if ring == "blackbox":
            return [(name, ["/usr/bin/python3",
                            os.path.join(self._black_box, f"test_{name}.py"), "-f"])
                    for name in black_box.split()]
        if ring == "all":
            return [self._gtest(self._unit, "", SLOW), self._gtest(self._white_box, "")]
        return []  # "codes": compiled is all that it is

    def fails(self, number, command, limit):
        """Whether a command fails with a mutant; also when it takes too long."""
        environment = {**os.environ, **self._environment, "ZELDLG_MUTANT": str(number)}
        if command[0] == self._white_box:
            environment["NO_AT_BRIDGE"] = "1"
        process = subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   start_new_session=True)
        try:
            return process.wait(limit) != 0
        except subprocess.TimeoutExpired:
            return True
        finally:
            try:
                os.killpg(process.pid, 9)
            except ProcessLookupError:
                pass
            process.wait()
