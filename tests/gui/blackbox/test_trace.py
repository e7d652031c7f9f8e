#!/usr/bin/python3
"""What ZELDLG_TRACE=1 tells of requests on standard error, and what it never tells."""

import re
import unittest

from stage import BUFFER_TOO_SMALL, CANCELLED, FAILED, OK, StageTestCase, wait_until

LINE = re.compile(r"^zeldlg: (\w+) (\d+\.\d) ms 0x([0-9a-f]{8})$", re.MULTILINE)
LABEL, PIN = "Shown label", "314159"


class Trace(StageTestCase):
    def start(self, wish="1"):
        self.host = self.start_host(environment={"ZELDLG_TRACE": wish})

    def told(self):
        """(name, result) of each line."""
        return [(name, int(result, 16)) for name, _, result in LINE.findall(self.host.stderr())]

    def expect(self, *lines):
        wait_until(lambda: len(self.told()) >= len(lines), what=f"the lines {lines}",
                   seen=self.host.stderr)
        self.assertEqual(list(lines), self.told())

    def ask_for_pin(self, end):
        call, window = self.show(self.host, "DLG_ShowPinDialog", "Enter PIN", label=LABEL)
        field = window.find("password text")
        self.screen.wait_focused(field)
        self.screen.type_text(PIN, field)
        wait_until(lambda: field.length == len(PIN), what="the typed characters")
        self.screen.key(end)
        return call.result()

    def test_a_request_is_told_by_its_name_and_its_result(self):
        self.start()
        self.assertEqual(OK, self.ask_for_pin("Return"))
        self.assertEqual(CANCELLED, self.ask_for_pin("Escape"))
        self.assertEqual(BUFFER_TOO_SMALL, self.host.run("DLG_GetLocale", bufferCapacity=0))
        self.expect(("ShowPin", OK), ("ShowPin", CANCELLED), ("GetLocale", BUFFER_TOO_SMALL))

    def test_each_request_of_one_call_is_told(self):
        self.start()
        self.host.run("DLG_HideKeyGenerationProgressDialog")
        self.host.run("DLG_PinPadKeyboardInputAddChar", handle=0)
        self.host.run("DLG_PinPadKeyboardInputShouldAbort", handle=0)
        self.expect(("HideKeyGeneration", OK), ("PinPadAddChar", 1), ("PinPadShouldAbort", 0))

    def test_a_request_that_is_refused_is_told(self):
        self.start()
        self.assertEqual(FAILED, self.host.run("DLG_GetLocale", size=None))
        self.expect(("GetLocale", FAILED))

    def test_neither_a_pin_nor_a_text_is_told(self):
        self.start()
        self.ask_for_pin("Return")
        self.expect(("ShowPin", OK))
        for secret in (PIN, LABEL):
            self.assertNotIn(secret, self.host.stderr())

    def test_the_time_is_that_of_the_whole_request(self):
        self.start()
        call, window = self.show(self.host, "DLG_ShowPinDialog", "Enter PIN")
        self.assertEqual([], self.told())
        self.screen.close_window(window)
        call.result()
        self.expect(("ShowPin", CANCELLED))
        (_, milliseconds, _), = LINE.findall(self.host.stderr())
        self.assertGreater(float(milliseconds), 1)

    def test_nothing_is_told_where_it_is_not_asked_for(self):
        for wish in (None, "", "0"):
            with self.subTest(wish=wish):
                self.start(wish)
                self.assertEqual(BUFFER_TOO_SMALL, self.host.run("DLG_GetLocale", bufferCapacity=0))
                self.host.quit()
                self.assertNotIn("zeldlg:", self.host.stderr())


if __name__ == "__main__":
    unittest.main()
