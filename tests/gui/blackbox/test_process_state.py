#!/usr/bin/python3
"""What the user interface changes in its process, and what it reads when."""

import os
import unittest

from stage import BUFFER_TOO_SMALL, FAILED, StageTestCase, own_process_only


@own_process_only("a helper leaves the host's process alone: gui_helper")
class ProcessState(StageTestCase):
    def use(self, host):
        return host.run("DLG_GetLocale", bufferCapacity=0)

    def test_the_locale_is_that_of_the_environment_until_finalise(self):
        host = self.start_host(environment={"LC_ALL": "C.UTF-8"})
        self.assertEqual("C", host.locale())
        for _ in range(2):
            self.assertEqual(BUFFER_TOO_SMALL, self.use(host))
            self.assertEqual("C.UTF-8", host.locale())
            host.run("DLG_Finalize")
            self.assertEqual("C", host.locale())

    def test_a_start_that_fails_gives_the_locale_back(self):
        host = self.start_host(environment={"DISPLAY": None}, strict=False)
        self.assertEqual(FAILED, self.use(host))
        self.assertEqual("C", host.locale())

    def test_one_variable_is_added_to_the_environment(self):
        host = self.start_host()
        before = host.environment()
        self.assertEqual(BUFFER_TOO_SMALL, self.use(host))
        added = {"G_FILENAME_ENCODING": "UTF-8"}
        self.assertEqual({**before, **added}, host.environment())
        host.run("DLG_Finalize")
        self.assertEqual({**before, **added}, host.environment())

    def test_one_that_is_set_stays_as_it_is(self):
        host = self.start_host(environment={"G_FILENAME_ENCODING": "ISO-8859-1"})
        before = host.environment()
        self.assertEqual(BUFFER_TOO_SMALL, self.use(host))
        self.assertEqual(before, host.environment())

    def test_the_display_of_the_first_start_is_kept(self):
        host = self.start_host()
        self.assertEqual(BUFFER_TOO_SMALL, self.use(host))
        host.run("DLG_Finalize")
        host.setenv("DISPLAY", "no display")
        call, window = self.show(host, "DLG_ShowPinDialog", "Enter PIN")
        self.screen.close_window(window)
        call.result()

    def test_settings_are_made_from_the_first_that_is_read(self):
        host = self.start_host()
        self.assertFalse(os.path.exists(host.registry_path))
        host.run("DLG_SetParameter", parameter=0, value=0)
        self.assertFalse(os.path.exists(host.registry_path))
        self.assertEqual(BUFFER_TOO_SMALL, self.use(host))
        self.assertTrue(os.path.exists(host.registry_path))


if __name__ == "__main__":
    unittest.main()
