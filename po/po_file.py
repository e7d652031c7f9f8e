"""Reads and writes message catalogues in their text form (.po, .pot)."""

import ast
import re

KEYWORD = re.compile(r'(msgid|msgstr)\s+(".*)')


class Entry:
    def __init__(self, key, text, comments):
        self.key = key
        self.text = text
        self.comments = comments

    @property
    def flags(self):
        return {flag.strip() for line in self.comments if line.startswith("#,")
                for flag in line[2:].split(",")}


def read(path):
    """The entries of a file in their order, the header (empty key) included.

    Entries that the sources do not have any more ("#~") are left out.
    """
    with open(path, encoding="utf-8") as file:
        blocks = file.read().split("\n\n")
    entries = (_entry(block, path) for block in blocks if block.strip())
    return [entry for entry in entries if entry is not None]


def _entry(block, path):
    comments, parts, current = [], {}, None
    for line in block.strip("\n").split("\n"):
        keyword = KEYWORD.fullmatch(line)
        if line.startswith("#"):
            comments.append(line)
        elif keyword:
            current = keyword[1]
            parts[current] = ast.literal_eval(keyword[2])
        elif line.startswith('"') and current:
            parts[current] += ast.literal_eval(line)
        else:
            raise ValueError(f"{path}: cannot read {line!r}")
    if not parts:
        return None
    return Entry(parts["msgid"], parts["msgstr"], comments)


def quoted(text):
    escaped = text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n")
    return f'"{escaped}"'


def write(path, entries):
    with open(path, "w", encoding="utf-8") as file:
        for entry in entries:
            lines = [*entry.comments, f"msgid {quoted(entry.key)}", f"msgstr {quoted(entry.text)}"]
            file.write("\n".join(lines) + "\n\n")
