#!/usr/bin/python3
"""The screen reader of Debian, Orca, with a voice that writes: each utterance is a line of standard
output, as JSON; null where Orca falls silent in the midst of what it says.

Not /usr/bin/orca: that refuses to start beside another one of the same user.
"""

import json
import os
import re
import sys
import time
import types

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("Gdk", "3.0")


def write(utterance):
    os.write(sys.stdout.fileno(), (json.dumps(utterance) + "\n").encode())


class Silent:
    """Answers every call of a speech client that is not about saying something."""

    def __getattr__(self, name):
        return lambda *_, **__: ()


class Client(Silent):
    """In place of the connection to the speech server."""

    def __init__(self, *_, **__):
        pass

    def speak(self, ssml, callback=None, **_):
        text = re.sub("<[^>]*>", "", ssml)
        for code, character in (("&lt;", "<"), ("&gt;", ">"), ("&amp;", "&")):
            text = text.replace(code, character)
        write(text)
        if callback:
            callback("END")

    def char(self, character):
        write(character)

    def key(self, name):
        write(name)

    def cancel(self, *_):
        write(None)

    def stop(self, *_):
        write(None)


def constants(**values):
    return types.SimpleNamespace(**values)


speechd = types.ModuleType("speechd")
speechd.SSIPClient = Client
speechd.Priority = constants(MESSAGE="MESSAGE")
speechd.PunctuationMode = constants(ALL="ALL", MOST="MOST", SOME="SOME", NONE="NONE")
speechd.DataMode = constants(SSML="SSML")
speechd.CallbackType = constants(BEGIN="BEGIN", CANCEL="CANCEL", END="END", INDEX_MARK="MARK")
speechd.SSIPCommunicationError = type("SSIPCommunicationError", (Exception,), {})
speechd.SSIPCommandError = type("SSIPCommandError", (Exception,), {})
sys.modules["speechd"] = speechd

from orca import orca, settings_manager  # noqa: E402

kept = {}


def keep(thing):
    """In place of hash(): what Orca 48 knows of an object it finds by that. Once the object is gone
    another gets its hash, and its label, unless it stays.
    """
    kept[hash(thing)] = thing
    return hash(thing)


for name, module in list(sys.modules.items()):
    if name.startswith("orca."):
        module.hash = keep

# For two seconds it takes what it has said of a control for what it is.
sys.modules["orca.generator"].time = types.SimpleNamespace(
    time=time.time, sleep=lambda _: time.sleep(0.05))

if hasattr(settings_manager, "get_manager"):
    settings = settings_manager.get_manager()
    folder = settings.get_prefs_dir
    # It speaks announcements, which 43 does not know, beside the descriptions that say the same.
    sys.modules["orca.scripts.default"].Script.on_announcement = lambda *_: True
else:  # Debian 12
    settings = orca.getSettingsManager()
    folder = settings.getPrefsDir
settings.activate(None, {})
sys.path.insert(0, folder())
sys.exit(orca.main())
