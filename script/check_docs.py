#!/usr/bin/env python3
"""Fails where the documents have fallen behind the code.

Links lead somewhere; docs/hosting.md names only what there is, has the result codes of the header,
and every environment variable that the code reads.
"""

import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
LINK = re.compile(r"\]\(([^)#\s]+)[^)]*\)")
PUBLIC_NAME = re.compile(r"\b(?:ZELDLG|DLG)_\w+|\b(?:Init|Quit|Test)App\b")
RESULT = re.compile(r"^#define (ZELDLG_[A-Z_]+) (0x[0-9a-f]+|\d+)u$", re.MULTILINE)
RESULT_ROW = re.compile(r"^\| `(ZELDLG_\w+)` \| (0x[0-9a-f]+|\d+) \|", re.MULTILINE)
READ_VARIABLE = re.compile(r'(?:getenv|wxGetEnv|environment)\((?:L)?"([A-Z_]+)"')
VARIABLE_LIST = re.compile(r'for \(const char\* \w+ : \{((?:"[A-Z_]+"(?:, )?)+)\}\)')


def read(path):
    return (ROOT / path).read_text(encoding="utf-8")


def tracked(pattern):
    listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard",
                             pattern], cwd=ROOT, check=True, text=True, stdout=subprocess.PIPE)
    return listed.stdout.split()


def dead_links():
    for page in tracked("*.md"):
        for target in LINK.findall(read(page)):
            if "://" not in target and not (ROOT / page).parent.joinpath(target).exists():
                yield f"{page}: there is no {target}"


def unknown_names(hosting, header):
    known = set(re.findall(r"\w+", header))
    for name in sorted(set(PUBLIC_NAME.findall(hosting)) - known):
        yield f"docs/hosting.md: the header has no {name}"


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
    table = hosting[hosting.index("## Environment"):hosting.index("## Results")]
    if len(found) < 6:
        yield f"script/check_docs.py: found only the variables {sorted(found)}"
    for name in sorted(found):
        if f"`{name}`" not in table:
            yield f"docs/hosting.md: the code reads {name}"


def main():
    hosting, header = read("docs/hosting.md"), read("include/zeldlg/zeldlg.h")
    problems = [*dead_links(), *unknown_names(hosting, header), *results(hosting, header),
                *variables(hosting)]
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
