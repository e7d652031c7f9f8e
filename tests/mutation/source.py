"""Finds what can be changed in the sources: numbers, texts, characters and style flags.

A mutant is one literal, or a group of texts that the compiler joins, and what takes its place.
"""

import re
from dataclasses import dataclass

TOKEN = re.compile(r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:\\\n|[^\n])*)
  | (?P<raw>(?:u8|[uUL])?R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)")
  | (?P<text>(?:u8|[uUL])?"(?:\\.|[^"\\\n])*")
  | (?P<character>(?:u8|[uUL])?'(?:\\.|[^'\\\n])+')
  | (?P<number>\.?[0-9](?:'?[0-9a-zA-Z_.]|[eEpP][+-])*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<space>\s+)
  | (?P<mark1>.)
""", re.VERBOSE | re.DOTALL | re.MULTILINE)

# What a window, a control, a font or a box can be given: left out one at a time.
STYLE_FLAG = re.compile(r"wx(CAPTION|CLOSE_BOX|SYSTEM_MENU|STAY_ON_TOP|DIALOG_NO_PARENT|TE_[A-Z0-9]+"
                        r"|DEFAULT_DIALOG_STYLE|LB_[A-Z]+|[HV]SCROLL|CB_[A-Z]+|ALIGN_[A-Z_]+"
                        r"|BORDER_[A-Z]+|NO_BORDER|ICON_[A-Z]+|TAB_TRAVERSAL)$")
# One of a kind: another of that kind takes its place.
OTHER_OF_KIND = {
    "wxFONTWEIGHT_BOLD": "wxFONTWEIGHT_NORMAL", "PANGO_WEIGHT_BOLD": "PANGO_WEIGHT_NORMAL",
    "wxFONTFAMILY_TELETYPE": "wxFONTFAMILY_ROMAN", "wxFONTSTYLE_NORMAL": "wxFONTSTYLE_ITALIC",
    "wxART_WARNING": "wxART_TIP", "wxART_ERROR": "wxART_TIP", "wxART_QUESTION": "wxART_TIP",
    "wxART_INFORMATION": "wxART_ERROR", "wxID_OK": "wxID_APPLY", "wxID_CANCEL": "wxID_APPLY",
    "wxFILTER_ASCII": "wxFILTER_NONE", "true": "false", "false": "true",
}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int
    line: int


@dataclass(frozen=True)
class Mutant:
    """What stands in a file from `start` to `end`, and what takes its place."""
    path: str  # below the root of the tree
    line: int
    start: int
    end: int
    original: str
    changed: str
    source_line: str

    @property
    def last_line(self):
        return self.line + self.original.count("\n")

    @property
    def key(self):
        """What stays the same when its line moves."""
        def on_a_line(code):
            return " ".join(code.split())
        return f"{self.path}: {on_a_line(self.original)} -> {on_a_line(self.changed)}"

    def __str__(self):
        return self.key.replace(": ", f":{self.line}: ", 1)


def tokens_of(code):
    tokens = []
    line = 1
    for match in TOKEN.finditer(code):
        kind = match.lastgroup if match.lastgroup != "mark" else "raw"
        tokens.append(Token(kind, match[0], match.start(), match.end(), line))
        line += match[0].count("\n")
    return [token for token in tokens if token.kind not in ("comment", "directive", "space")]


def other_number(text):
    digits = re.fullmatch(r"(0[xX][0-9a-fA-F']+|[0-9']+)([uUlLzZ]*)", text)
    if digits is None:
        number = re.fullmatch(r"([0-9.]+)([fF]?)", text)
        return f"{float(number[1]) * 1.5 + 0.25}{number[2]}" if number else None
    plain = digits[1].replace("'", "")
    value = int(plain, 16) if plain[:2] in ("0x", "0X") else int(plain, 8 if plain[0] == "0" else 10)
    # One more, but for what fills all bits that there are.
    value += -1 if value >= 255 and value & (value + 1) == 0 else 1
    return (hex(value) if "x" in plain.lower() else str(value)) + digits[2]


def other_character(text):
    prefix, body = re.fullmatch(r"(\w*)'(.*)'", text, re.DOTALL).groups()
    if body.startswith("\\"):
        return f"{prefix}'~'"
    return f"{prefix}'{chr(ord(body) + 1)}'" if len(body) == 1 and body not in "&[" else f"{prefix}'~'"


def other_text(text):
    """Another letter for the first that belongs to no conversion and no escape; a mark at the end
    where there is none."""
    for match in re.finditer(r"\\x[0-9a-fA-F]+|\\u[0-9a-fA-F]{4}|\\.|%[-.0-9]*l*[a-zA-Z]|\"|[A-Za-z]", text):
        if len(match[0]) == 1 and match[0] != '"' and match.start() > text.index('"'):
            letter = match[0]
            other = chr(ord(letter) + 1) if letter not in "zZ" else chr(ord(letter) - 1)
            return text[:match.start()] + other + text[match.end():]
    return text[:-1] + '~"'


def skipped_spans(tokens):
    """Static assertions, which a test is no better than; attributes; linkage of functions."""
    spans = []
    index = 0
    while index < len(tokens):
        if tokens[index].text in ("static_assert", "__attribute__"):
            start, depth = tokens[index].start, 0
            while True:
                index += 1
                depth += {"(": 1, ")": -1}.get(tokens[index].text, 0)
                if depth == 0:
                    break
            spans.append((start, tokens[index].end))
        elif tokens[index].text == "extern" and tokens[index + 1].kind == "text":
            spans.append((tokens[index + 1].start, tokens[index + 1].end))
        index += 1
    return spans


def statement_starts(tokens):
    """Of each token: the index of the first one of its statement. Braces of a table are part of
    one."""
    starts = []
    begin = 0
    for index, token in enumerate(tokens):
        starts.append(begin)
        following = tokens[index + 1].text if index + 1 < len(tokens) else ""
        if token.text == ";" or (token.text == "}" and following not in (",", ";", "}", ")")):
            begin = index + 1
    return starts


def gives_value(statement):
    """Whether the next token is the value, or a part of it, of a constant, a member, a colour or
    an enumerator: its statement up to there."""
    names = [token.text for token in statement]
    return bool(names) and names[-1] in ("=", "{", ",", "-") and not (
        {"if", "for", "while", "case", "=="} & set(names)) and any(
        re.fullmatch(r"(k[A-Z]|m_|g_)\w*|\w+Colour", name) for name in names)


def mutants_of(path, code):
    tokens = tokens_of(code)
    lines = code.splitlines()
    starts = statement_starts(tokens)
    skipped = skipped_spans(tokens)
    found = []

    def add(first, last, changed):
        inside = any(start <= first.start < end for start, end in skipped)
        if changed is not None and not inside:
            found.append(Mutant(path, first.line, first.start, last.end,
                                code[first.start:last.end], changed,
                                lines[first.line - 1]))

    index = 0
    while index < len(tokens):
        token = tokens[index]
        if token.kind == "text":
            last = index
            while last + 1 < len(tokens) and tokens[last + 1].kind == "text":
                last += 1
            if len(token.text.lstrip("uUL8")) > 2 or last > index:
                rest = code[token.end:tokens[last].end]
                add(token, tokens[last], other_text(token.text) + rest)
            index = last
        elif token.kind == "character":
            add(token, token, other_character(token.text))
        elif token.kind == "number":
            # Nothing and one are as often part of a calculation as they are a constant.
            if token.text.rstrip("uUlLzZ") not in ("0", "1") or gives_value(tokens[starts[index]:index]):
                add(token, token, other_number(token.text))
        elif token.kind == "name":
            if STYLE_FLAG.match(token.text):
                add(token, token, "0")
            elif token.text in OTHER_OF_KIND and (
                    not token.text.islower() or gives_value(tokens[starts[index]:index])):
                add(token, token, OTHER_OF_KIND[token.text])
        index += 1
    return found
