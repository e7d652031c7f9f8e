#!/usr/bin/python3
"""Writes the manual page of a program: a template, with what the program's own help says.

    make_manual.py TEMPLATE VERSION OUTPUT [EMULATOR] PROGRAM

The synopsis, options, commands and exit codes come from the program, so that a new command is in
the page without anybody writing it there.
"""

import os
import re
import subprocess
import sys

ITEM = re.compile(r"  (?P<tag>\S.*?)(?:  +(?P<text>\S.*))?")


def escape(text):
    """A text as roff has it: the backslash, the hyphens of options, control lines."""
    text = text.replace("\\", "\\e").replace("-", "\\-").replace("'", "\\(aq")
    return "\\&" + text if text.startswith(".") else text


def help_of(program, *words):
    return subprocess.run([*program, *words, "--help"], check=True, text=True,
                          stdout=subprocess.PIPE).stdout


def sections(text):
    """The help's blocks by their headings: Usage, Commands, Exit codes; "" without a heading."""
    found = {}
    for block in text.strip("\n").split("\n\n"):
        heading = re.match(r"(Usage|Commands|Exit codes):[ \n]", block)
        name = heading.group(1) if heading else ""
        rest = block[heading.end():] if heading else block
        found[name] = f"{found[name]}\n\n{rest}" if name in found else rest
    return found


def items(lines):
    """Indented lines as tagged paragraphs; a line that is indented deeper continues its text."""
    page, last = [], ""
    for line in lines:
        item = ITEM.fullmatch(line)
        if item:
            page += [".TQ" if last == "tag" else ".TP", f"\\fB{escape(item['tag'])}\\fR"]
            page += [escape(item["text"])] if item["text"] else []
            last = "text" if item["text"] else "tag"
        elif line.startswith(" "):
            page.append(escape(line.strip()))
            last = "text"
        elif line:
            page += [escape(line)] if last == "plain" else [".PP", escape(line)]
            last = "plain"
        else:
            last = ""
    return page


def synopsis(program, usage):
    name = os.path.basename(program[-1])
    forms = re.sub(rf"^ *{name} ", "", usage, flags=re.MULTILINE).splitlines()
    return "\n.br\n".join(f"\\fB{escape(name)}\\fR {escape(form)}" for form in forms)


def command(program, name):
    usage, summary, rest = help_of(program, name).split("\n\n", 2)
    synopsis_line = usage.removeprefix(f"Usage: {os.path.basename(program[-1])} ")
    page = [".SS " + escape(synopsis_line), escape(summary) + "."]
    return page + items(rest.rstrip("\n").splitlines())


def command_names(overview):
    return [line.split()[0] for line in overview["Commands"].splitlines()]


def page(program, template, version):
    overview = sections(help_of(program))
    parts = {
        "VERSION": version,
        "SYNOPSIS": synopsis(program, overview["Usage"]),
        "OPTIONS": "\n".join(items(line for line in overview[""].splitlines()
                                   if line.startswith(" "))),
        "COMMANDS": "\n".join(line for name in command_names(overview)
                              for line in command(program, name)),
        "EXIT_CODES": escape(" ".join(overview["Exit codes"].split())),
    }
    return re.sub(r"@([A-Z_]+)@", lambda match: parts[match.group(1)], template)


def main():
    template, version, output, *program = sys.argv[1:]
    with open(template, encoding="utf-8") as file:
        text = page(program, file.read(), version)
    with open(output, "w", encoding="utf-8") as file:
        file.write(text)


if __name__ == "__main__":
    main()
