"""Puts many mutants into one build: each is chosen when a program starts, by its number in the
environment variable ZELDLG_MUTANT.

What has to be known to the compiler (the value of an enumerator, a case, the size of an array)
cannot be chosen then. The compiler says which lines those are; they are built one at a time.
"""

import os
import re

from mutation.source import statement_starts, tokens_of

CHOICE = """#pragma once
#include <cstdlib>
namespace mutation {
inline int Chosen() {
    static const int chosen = [] {
        const char* const number = std::getenv("ZELDLG_MUTANT");
        return number != nullptr ? std::atoi(number) : 0;
    }();
    return chosen;
}
template <typename Value>
Value Pick(int number, Value original, Value changed) {
    return Chosen() == number ? changed : original;
}
}  // namespace mutation
"""


def replaced(code, changes):
    """`code` with each (start, end, text) put in."""
    for start, end, text in sorted(changes, reverse=True):
        code = code[:start] + text + code[end:]
    return code


def choice(number, mutant):
    kind = "<long>" if mutant.changed == "0" and mutant.original.startswith("wx") else ""
    return f"::mutation::Pick{kind}({number}, {mutant.original}, {mutant.changed})"


def instrumented(path, code, mutants):
    """The file with its numbered mutants in it: {number: mutant}. Lines stay where they are."""
    tokens = tokens_of(code)
    is_header = path.endswith(".h")
    changes = [(mutant.start, mutant.end, choice(number, mutant))
               for number, mutant in mutants.items()]
    starts = statement_starts(tokens)
    places = {mutant.start for mutant in mutants.values()}
    touched = {starts[index] for index, token in enumerate(tokens) if token.start in places}
    for index, token in enumerate(tokens):
        if token.text == "constexpr" and starts[index] in touched:
            before = tokens[index - 1].text if index else ""
            # A constant of a header exists once, whatever includes it.
            inline = is_header and before != "inline"
            if is_header and before == "static":
                changes.append((tokens[index - 1].start, token.end, "inline static"))
            else:
                changes.append((token.start, token.end, "inline" if inline else ""))
        elif token.text == "static_assert":
            end = index + 1
            depth = 0
            while True:
                depth += {"(": 1, ")": -1}.get(tokens[end].text, 0)
                if depth == 0:
                    break
                end += 1
            lines = code[token.start:tokens[end].end].count("\n")
            changes.append((token.start, tokens[end].end, "static_assert(true)" + "\n" * lines))
    head = '#include "mutation.h"\n#line 1\n' if mutants else ""
    return head + replaced(code, changes)


def has_to_be_known(code):
    """The places of a file where the compiler wants a constant: enumerators and cases."""
    tokens = tokens_of(code)
    starts = statement_starts(tokens)
    return {token.start for index, token in enumerate(tokens)
            if any(before.text in ("enum", "case") for before in tokens[starts[index]:index])}


def lines_named(errors, build, root):
    """The (path, line) that the compiler names in its errors and notes; paths below `root`."""
    named = set()
    for found in re.finditer(r"^(?:In file included from|\s+from)?\s*([^\s:]+):(\d+)[:,]", errors,
                             re.MULTILINE):
        path = os.path.normpath(os.path.join(build, found[1]))
        if path.startswith(root + "/"):
            named.add((path[len(root) + 1:], int(found[2])))
    return named
