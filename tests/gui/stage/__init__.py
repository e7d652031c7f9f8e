"""The stage of the black-box tests: a host process on a private screen, driven from outside.

`Stage` makes the servers (display, window manager, session and accessibility bus), `Screen` sees
and drives what is on them, `Host` is a program that loads the library, and `StageTestCase` ties
them together for a test file that is started with run_on_stage.
"""

from .acts import WAYS_OUT, Key, Press
from .events import Events
from .host import (BUFFER_TOO_SMALL, CANCELLED, FAILED, NOT_SUPPORTED, OK, Call, Host, HostError,
                   Letters, library_path, policy)
from .locales import make_locales
from .node import Node
from .private_mounts import folder_with, require_private_mounts
from .programs import ProgramTestCase
from .screen import Screen
from .servers import Stage
from .settings import registry
from .snapshot import take_snapshot
from .testcase import StageTestCase, own_process_only
from .wait import Gone, StageError, scaled, wait_until

__all__ = ["BUFFER_TOO_SMALL", "CANCELLED", "FAILED", "NOT_SUPPORTED", "OK", "Call", "Events",
           "Gone", "Host", "HostError", "Key", "Letters", "Node", "Press", "ProgramTestCase",
           "Screen", "Stage", "StageError", "StageTestCase", "WAYS_OUT", "folder_with",
           "library_path", "make_locales", "own_process_only", "policy", "registry",
           "require_private_mounts", "scaled", "take_snapshot", "wait_until"]
