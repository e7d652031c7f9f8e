#!/usr/bin/env python3
"""Fails where the documents have fallen behind the code.

Links lead somewhere, and no page names what there is not. docs/hosting.md has the result codes of
the header and every environment variable that the code reads, the manual page has those variables
too, and both name every place of a settings file. Lines of prose have 100 columns at most.
"""

import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LINK = re.compile(r"\]\(([^)#\s]+)[^)]*\)")
MANUAL = "tools/zeldlg-settings/zeldlg-settings.1.in"
LINE = 100
PUBLIC_NAME = re.compile(r"(?:\b|-D)((?:ZELDLG|DLG)_\w+|(?:Init|Quit|Test)App)\b")
RESULT = re.compile(r"^#define (ZELDLG_[A-Z_]+) (0x[0-9a-f]+|\d+)u$", re.MULTILINE)
RESULT_ROW = re.compile(r"^\| `(ZELDLG_\w+)` \| (0x[0-9a-f]+|\d+) \|", re.MULTILINE)
READ_VARIABLE = re.compile(r'(?:getenv|wxGetEnv|environment)\((?:L)?"([A-Z_]+)"')
VARIABLE_LIST = re.compile(r'for \(const char\* \w+ : \{((?:"[A-Z_]+"(?:, )?)+)\}\)')


def read(path):
    return (ROOT / path).read_text(encoding="utf-8")


def tracked(*patterns):
    listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard",
                             *patterns], cwd=ROOT, check=True, text=True, stdout=subprocess.PIPE)
    return [path for path in listed.stdout.split() if (ROOT / path).exists()]


def dead_links():
    for page in tracked("*.md"):
        for target in LINK.findall(read(page)):
            if "://" not in target and not (ROOT / page).parent.joinpath(target).exists():
                yield f"{page}: there is no {target}"


def unknown_names(header):
    """Names of the library that the header lacks; of the build and the tests (ZELDLG_...), that
    neither of those has.
    """
    known = set(re.findall(r"\w+", header))
    known_elsewhere = {name for path in tracked("*CMakeLists.txt", "*.cmake", "*.py", "script/*")
                       for name in re.findall(r"\bZELDLG_\w+", read(path))}
    pages = {page: set(PUBLIC_NAME.findall(read(page))) for page in tracked("*.md", MANUAL)}
    for page, names in pages.items():
        for name in sorted(names - known - known_elsewhere):
            yield f"{page}: there is no {name}"
    if len(pages["docs/hosting.md"]) < 20:
        yield f"script/check_docs.py: found only the names {sorted(pages['docs/hosting.md'])}"


def results(hosting, header):
    of_header = {name: int(value, 0) for name, value in RESULT.findall(
        header[header.index("@name Result codes"):header.index("FUNCTION_LIST_VERSION")])}
    of_page = {name: int(value, 0) for name, value in RESULT_ROW.findall(hosting)}
    if not of_header or of_page != of_header:
        yield f"docs/hosting.md: results {of_page}, in the header {of_header}"


def variables(hosting):
    found = set()
    for path in tracked("src/*.cpp"):
        code = read(path)
        found.update(READ_VARIABLE.findall(code))
        for names in VARIABLE_LIST.findall(code):
            found.update(re.findall(r"\w+", names))
    if len(found) < 6:
        yield f"script/check_docs.py: found only the variables {sorted(found)}"
    table = hosting[hosting.index("## Environment"):hosting.index("## Results")]
    of_page = {name for row in re.findall(r"^\| (`[^|]+)\|", table, re.MULTILINE)
               for name in re.findall(r"`([A-Z_]+)`", row)}
    for name in sorted(found - of_page):
        yield f"docs/hosting.md: the code reads {name}"
    manual = read(MANUAL)
    of_manual = set(re.findall(r"\b[A-Z_]{2,}\b", manual[manual.index(".SH ENVIRONMENT\n"):
                                                         manual.index(".SH FILES\n")]))
    for name in sorted(of_page - of_manual):
        yield f"{MANUAL}: the page does not name {name}"


def places():
    code = read("src/registry/registry_places.h") + read("src/registry/registry_places.cpp")
    found = [*re.findall(r'Directory = "(/[^"]+)"', code), *re.findall(r'"(tmpregistry-)"', code)]
    if len(found) != 3:
        yield f"script/check_docs.py: found the places {found}"
    for page in ("docs/settings.md", MANUAL):
        text = read(page).replace("\\-", "-")
        for place in [".tessaly", *found]:
            if place not in text:
                yield f"{page}: the page does not name the place {place}"


def long_lines():
    """Tables, pictures and what is to be copied may be wider."""
    for page in tracked("*.md"):
        is_copied = False
        for number, line in enumerate(read(page).splitlines(), 1):
            is_copied ^= line.startswith("```")
            if len(line) > LINE and not is_copied and not line.startswith(("|", "!", "<")):
                yield f"{page}:{number}: {len(line)} columns"


def main():
    hosting, header = read("docs/hosting.md"), read("include/zeldlg/zeldlg.h")
    problems = [*dead_links(), *unknown_names(header), *results(hosting, header),
                *variables(hosting), *places(), *long_lines()]
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
