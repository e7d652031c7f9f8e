#!/usr/bin/python3
"""Prints zeldlg/_records.py: the records of the C interface, made from what the check of the binary
interface compares every build with.

    make_records.py tests/abi/zeldlg.abi > python/zeldlg/_records.py
"""

import re
import sys

HEAD = '''"""The records of zeldlg.h for ctypes. Made by make_records.py: not to be edited."""

# What stands here is named as in zeldlg.h, where each record and function is described.
# pylint: disable=invalid-name,missing-class-docstring,too-few-public-methods

from __future__ import annotations

from ctypes import (CFUNCTYPE, POINTER, Structure, c_char_p, c_int32, c_uint8, c_uint32, c_uint64,
                    c_void_p, c_wchar_p, sizeof)
'''

TAIL = '''
def _check(record: type[Structure], size: int, offsets: tuple[int, ...]) -> None:
    found = tuple(getattr(record, field[0]).offset for field in record._fields_)
    if (sizeof(record), found) != (size, offsets):
        raise ImportError(f"{record.__name__}: not laid out as libzeldlglib has it on this machine")


'''

RECORD = re.compile(r"^# (\w+): offset, size, member\n((?:.+\n)+)", re.MULTILINE)
MEMBER = re.compile(r"^ *(\d+) +(\d+)  (.+)$", re.MULTILINE)
SIZE = re.compile(r"^ *(\d+) bytes altogether$", re.MULTILINE)
ARRAY = re.compile(r"(.*) (\w+)\[(\d+)\]")
FUNCTION = re.compile(r"(.*) \(\*(\w+)\)\((.*)\)")
SIMPLE = {"void": "None", "char*": "c_char_p", "void*": "c_void_p",
          "wchar_t*": "c_wchar_p", "uint8_t": "c_uint8", "int32_t": "c_int32",
          "uint32_t": "c_uint32", "uint64_t": "c_uint64"}


def type_of(text):
    text = text.removeprefix("const ")
    if text in SIMPLE:
        return SIMPLE[text]
    if text.startswith("struct "):  # itself
        return "c_void_p"
    if text.endswith("*"):
        return f"POINTER({type_of(text[:-1])})"
    return text


def field(text):
    array = ARRAY.fullmatch(text)
    if array:
        return array[2], f"{type_of(array[1])} * {array[3]}"
    function = FUNCTION.fullmatch(text)
    if function:
        types = [function[1], *function[3].replace("(void)", "").split(", ")]
        return function[2], ("CFUNCTYPE("
                             + ", ".join(type_of(each) for each in types if each != "void"
                                         or each is types[0]) + ")")
    kind, name = text.rsplit(" ", 1)
    return name, type_of(kind)


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        description = file.read()
    print(HEAD)
    checks = []
    for name, lines in RECORD.findall(description):
        members = MEMBER.findall(lines)
        print(f"\nclass {name}(Structure):\n    _fields_ = [")
        for _, _, member in members:
            print('        ("{}", {}),'.format(*field(member)))
        print("    ]\n")
        offsets = ", ".join(offset for offset, _, _ in members)
        checks.append(f"_check({name}, {SIZE.search(lines)[1]}, ({offsets}))")
    print(TAIL + "\n".join(checks))


if __name__ == "__main__":
    main()
