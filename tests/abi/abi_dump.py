#!/usr/bin/python3
"""What hosts that are already built rely on: exported symbols, constants, signatures, records.

    abi_dump.py LIBRARY INCLUDE_DIRECTORY           prints it
    abi_dump.py LIBRARY INCLUDE_DIRECTORY EXPECTED  fails when it differs from that file

A difference means that such hosts break, unless only something new was added at the end of the
symbols or constants. Records and signatures are read from debug information, not from the text of
the header.
"""

import difflib
import os
import re
import subprocess
import sys
import tempfile

HEADER = "zeldlg/zeldlg.h"
MEMBER = re.compile(r"^\t(?P<type>.*?)\s*;\s*/\*\s*(?P<offset>\d+)\s+(?P<size>\d+) \*/$")
SIZE = re.compile(r"^\s*/\* size: (?P<size>\d+),")


def run(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def symbols(library):
    lines = run("nm", "--dynamic", "--defined-only", "--with-symbol-versions", library)
    return sorted(f"{words[1]} {words[2]}" for words in map(str.split, lines.splitlines())
                  if words[1] != "A")  # the name of the version itself


def compile_and_run(directory, include, source):
    path = os.path.join(directory, "constants")
    with open(path + ".c", "w") as file:
        file.write(source)
    run("cc", "-I", include, "-o", path, path + ".c")
    return run(path).splitlines()


def constants(directory, include):
    """The value of every macro of the header that is a number."""
    macros = run("cc", "-I", include, "-dM", "-E", "-include", HEADER, "-x", "c", "/dev/null")
    names = sorted(re.findall(r"^#define (ZELDLG_[A-Z0-9_]+) (?!\s*__attribute__)\S", macros,
                              re.MULTILINE))
    prints = "".join(f'printf("{name} = %#llx, %zu bytes\\n", (unsigned long long){name}, '
                     f"sizeof({name}));\n" for name in names)
    return compile_and_run(directory, include,
                           f"#include <stdio.h>\n#include <{HEADER}>\nint main(void) {{\n{prints}"
                           "return 0;\n}\n")


def layouts(directory, include, functions):
    """Each record as a list of lines, by its name; the functions as members of one more record."""
    with open(os.path.join(include, HEADER)) as file:
        records = re.findall(r"^typedef struct (\w+) \{", file.read(), re.MULTILINE)
    path = os.path.join(directory, "layouts")
    with open(path + ".c", "w") as file:
        members = "".join(f"    __typeof__(&{name}) {name};\n" for name in functions)
        file.write(f"#include <{HEADER}>\nstruct AllFunctions {{\n{members}}} allFunctions;\n")
    run("cc", "-g", "-fno-eliminate-unused-debug-types", "-I", include, "-c", "-o", path + ".o",
        path + ".c")
    structs = dict(re.findall(r"^struct (\w+) \{\n(.*?)^\}", run("pahole", "-F", "dwarf", path + ".o"),
                              re.MULTILINE | re.DOTALL))
    return {name: members_of(structs[name]) for name in [*records, "AllFunctions"]}


def members_of(text):
    lines = []
    for line in text.splitlines():
        member = MEMBER.match(line)
        size = SIZE.match(line)
        if member:
            words = re.sub(r"\s*\*\s*", "*", " ".join(member["type"].split()))
            words = re.sub(r"(?<!\()\*(?=[\w(])", "* ", words)
            lines.append((int(member["offset"]), int(member["size"]), words))
        elif size:
            lines.append((int(size["size"]), None, None))
    return lines


def dump(library, include):
    exported = symbols(library)
    names = sorted({line.split()[1].split("@")[0] for line in exported})
    with tempfile.TemporaryDirectory() as directory:
        yield "# Symbols: type, name and version"
        yield from exported
        yield "\n# Constants"
        yield from constants(directory, include)
        records = layouts(directory, include, names)
        yield "\n# Functions"
        for _, size, signature in records.pop("AllFunctions"):
            if size is not None:
                yield signature
        for name, lines in records.items():
            yield f"\n# {name}: offset, size, member"
            for offset, size, member in lines:
                yield (f"{offset:4} bytes altogether" if size is None
                       else f"{offset:4} {size:2}  {member}")


def main():
    library, include, *expected = sys.argv[1:]
    found = "\n".join(dump(library, include)) + "\n"
    if not expected:
        print(found, end="")
        return 0
    with open(expected[0]) as file:
        wanted = file.read()
    sys.stdout.writelines(difflib.unified_diff(wanted.splitlines(True), found.splitlines(True),
                                               expected[0], "this build"))
    return 0 if found == wanted else 1


if __name__ == "__main__":
    sys.exit(main())
