#!/usr/bin/env python3
"""Finds the places of a C++ source where one token can be made wrong, and makes it wrong.

usage: faults.py FILE...      lists the faults of files
       faults.py --self-test

It knows tokens, not the language: what does not compile is for the compiler to find. It relies on the
formatter for one thing, that an operator between two operands has spaces around it, and so is told
from a template's brackets, a reference and a sign.
"""

import hashlib
import re
import sys
from dataclasses import dataclass
from pathlib import Path

TOKEN = re.compile(
    r"""
    (?P<skip>      //[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:\\\n|[^\n])* )
  | (?P<text>      R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)" | "(?:\\.|[^"\\])*" | '(?:\\.|[^'\\])*' )
  | (?P<number>    \d(?:'?[\w.])* )
  | (?P<word>      [A-Za-z_]\w* )
  | (?P<operator>  <=>|<<=|>>=|->|\+\+|--|&&|\|\||[=!<>+\-*/%&|^]=|<<|>>|::|[^\s\w] )
    """,
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)

# What takes an operator's place where it stands between two operands.
BINARY = {
    "==": ["!="],
    "!=": ["=="],
    "<": ["<=", ">="],
    "<=": ["<", ">"],
    ">": [">=", "<="],
    ">=": [">", "<"],
    "&&": ["||"],
    "||": ["&&"],
    "+": ["-"],
    "-": ["+"],
    "*": ["/"],
    "/": ["*"],
    "%": ["/"],
    "<<": [">>"],
    ">>": ["<<"],
    "&": ["|"],
    "|": ["&"],
    "+=": ["-="],
    "-=": ["+="],
    "|=": ["&="],
    "&=": ["|="],
}
ANYWHERE = {"++": ["--"], "--": ["++"]}
WORDS = {"true": "false", "false": "true"}

# Returned, these are what a function returns that gives up.
NOTHING = {"false", "true", "0", "{}", "nullptr", "std::nullopt", '""'}

INTEGER = re.compile(r"(0[xX])?([0-9a-fA-F']+?)([uUlL]*)")


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int


@dataclass(frozen=True)
class Fault:
    """`before`, at an offset of a file, and `after`, which takes its place."""

    file: str
    line: int
    column: int
    offset: int
    before: str
    after: str
    key: str  # the same as long as the line, and those with the same text above it, are the same

    def planted(self, source: str) -> str:
        return source[: self.offset] + self.after + source[self.offset + len(self.before) :]

    def __str__(self) -> str:
        shown = " ".join(self.before.split())
        if len(shown) > 60:
            shown = shown[:57] + "..."
        return f"{self.file}:{self.line}: {shown}  ->  {self.after or '(nothing)'}"


def tokens_of(source: str) -> list[Token]:
    return [
        Token(match.lastgroup if match.lastgroup != "mark" else "text", match[0], *match.span())
        for match in TOKEN.finditer(source)
        if not match["skip"]
    ]


def closing(tokens: list[Token], index: int) -> int:
    """The index of the parenthesis that closes the one at `index`."""
    depth = 0
    for at in range(index, len(tokens)):
        depth += (tokens[at].text == "(") - (tokens[at].text == ")")
        if depth == 0:
            return at
    return len(tokens) - 1


def by_one(number: str) -> list[str]:
    match = INTEGER.fullmatch(number)
    if not match:
        return []
    prefix, digits, suffix = match[1] or "", match[2].replace("'", ""), match[3]
    if not prefix and not digits.isdecimal():
        return []
    value = int(digits, 16 if prefix else 10)
    changed = [value + 1] + ([value - 1] if value > 0 else [])
    return [(f"0x{value:X}" if prefix else str(value)) + suffix for value in changed]


def call_at(tokens: list[Token], index: int) -> int | None:
    """The index of the semicolon, when a statement begins here that only calls a function."""
    if tokens[index - 1].text not in (";", "{", "}", ")", "else"):
        return None
    at = index
    if tokens[at].text in ("::", "this"):
        at += 1
    while at + 2 < len(tokens) and tokens[at].kind == "word":
        if tokens[at + 1].text == "(":
            # A name that begins large, alone, is a constructor's.
            if at == index and tokens[at].text[0].isupper():
                return None
            if tokens[at].text in ("if", "while", "for", "switch", "return", "catch", "sizeof"):
                return None
            end = closing(tokens, at + 1) + 1
            return end if end < len(tokens) and tokens[end].text == ";" else None
        if tokens[at + 1].text not in ("::", ".", "->"):
            return None
        at += 2
    return None


def changes(source: str):
    """Each fault as an offset, what stands there and what takes its place."""
    tokens = tokens_of(source)
    passed_over = -1
    for index, token in enumerate(tokens):
        if index <= passed_over:
            continue
        before = tokens[index - 1].text if index > 0 else ""
        after = tokens[index + 1] if index + 1 < len(tokens) else token
        spaced = source[token.start - 1 : token.start].isspace() and (
            source[token.end : token.end + 1].isspace()
        )
        if token.text == "static_assert":
            passed_over = closing(tokens, index + 1)
            continue
        if token.kind == "operator":
            if before == "operator":
                continue
            replacements = ANYWHERE.get(token.text) or (BINARY.get(token.text, []) if spaced else [])
            for replacement in replacements:
                yield token.start, token.text, replacement
            if token.text == "!":
                yield token.start, "!", ""
        elif token.kind == "number":
            for replacement in by_one(token.text):
                yield token.start, token.text, replacement
        elif token.text in WORDS:
            yield token.start, token.text, WORDS[token.text]
        elif token.text in ("if", "while") and after.text == "(":
            end = closing(tokens, index + 1)
            condition = source[after.end : tokens[end].start]
            if ";" not in condition:
                yield after.end, condition, f"!({condition})"
        elif token.text in ("continue", "break") and after.text == ";":
            yield token.start, token.text, ""
        elif token.text == "return":
            end = source.find(";", token.end)
            returned = source[token.end : end].strip()
            if not returned:
                yield token.start, "return", ""
            elif returned not in NOTHING and "{" not in returned:
                yield source.find(returned, token.end), returned, "{}"
        if token.kind == "word" or token.text == "::":
            end = call_at(tokens, index) if index > 0 else None
            if end is not None:
                yield token.start, source[token.start : tokens[end].start], ""


def faults_of(source: str, file: str) -> list[Fault]:
    lines = source.split("\n")
    starts = [0]
    for line in lines:
        starts.append(starts[-1] + len(line) + 1)
    seen: dict[str, int] = {}
    same_above = []
    for line in lines:
        same_above.append(seen.get(line.strip(), 0))
        seen[line.strip()] = same_above[-1] + 1
    found = []
    line = 0
    for offset, before, after in sorted(changes(source)):
        while starts[line + 1] <= offset:
            line += 1
        column = offset - starts[line] + 1
        indent = len(lines[line]) - len(lines[line].lstrip())
        identity = "\0".join(
            [file, lines[line].strip(), str(same_above[line]), str(column - indent), before, after]
        )
        key = hashlib.sha256(identity.encode()).hexdigest()[:16]
        found.append(Fault(file, line + 1, column, offset, before, after, key))
    return found


def chosen(root: Path, folder: str, seed: int) -> list[Fault]:
    """One fault for each line of a folder that has any, in an order that a seed decides, so that the
    first few hundred are spread as the lines are. A change of one line leaves the order of the
    others."""
    by_line: dict[tuple[str, int], list[Fault]] = {}
    for path in sorted((root / folder).rglob("*")):
        if path.suffix in (".cpp", ".h"):
            name = path.relative_to(root).as_posix()
            for fault in faults_of(path.read_text(encoding="utf-8"), name):
                by_line.setdefault((fault.file, fault.line), []).append(fault)

    def rank(fault: Fault) -> str:
        return hashlib.sha256(f"{seed} {fault.key}".encode()).hexdigest()

    firsts = [min(faults, key=rank) for faults in by_line.values()]
    # Ranked anew: the least of many ranks is low, and lines with many faults would come first.
    return sorted(firsts, key=lambda fault: rank(fault)[::-1])


SAMPLE = """\
#include <vector>  // 1 < 2
#define LIMIT 3
static_assert(sizeof(int) == 4, "1 + 1");
/* a == b */
template <typename T>
bool f(std::vector<T>&& values, char sign)
{
    const char* text = "a && b";
    if (values.size() < 0x10u) return sign == '<';
    while (!values.empty() && *text != '\\0') values.pop_back();
    note(values);
    auto raw = R"(x == 1)";
    return g(values - 1);
}
"""

EXPECTED = [
    "9: <  ->  <=",
    "9: <  ->  >=",
    "9: 0x10u  ->  0xFu",
    "9: 0x10u  ->  0x11u",
    "9: ==  ->  !=",
    "9: sign == '<'  ->  {}",
    "9: values.size() < 0x10u  ->  !(values.size() < 0x10u)",
    "10: !  ->  (nothing)",
    "10: !=  ->  ==",
    "10: !values.empty() && *text != '\\0'  ->  !(!values.empty() && *text != '\\0')",
    "10: &&  ->  ||",
    "10: values.pop_back()  ->  (nothing)",
    "11: note(values)  ->  (nothing)",
    "13: -  ->  +",
    "13: 1  ->  0",
    "13: 1  ->  2",
    "13: g(values - 1)  ->  {}",
]


def self_test() -> int:
    faults = faults_of(SAMPLE, "sample")
    found = [str(fault).removeprefix("sample:") for fault in faults]
    problems = [f"not found: {text}" for text in EXPECTED if text not in found]
    problems += [f"found: {text}" for text in found if text not in EXPECTED]
    for fault in faults:
        planted = fault.planted(SAMPLE)
        rest = planted[fault.offset + len(fault.after) :]
        if planted[: fault.offset] + fault.before + rest != SAMPLE or planted == SAMPLE:
            problems.append(f"not planted: {fault}")
    if len({fault.key for fault in faults}) != len(faults):
        problems.append("two faults with the same key")
    moved = [fault.key for fault in faults_of("\n\n" + SAMPLE, "sample")]
    if moved != [fault.key for fault in faults]:
        problems.append("a key changes with lines above")
    print(*(problems or [f"{len(faults)} faults, as expected"]), sep="\n")
    return 1 if problems else 0


def main() -> int:
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    if len(sys.argv) < 2:
        print(__doc__, file=sys.stderr)
        return 2
    for name in sys.argv[1:]:
        print(*faults_of(Path(name).read_text(encoding="utf-8"), name), sep="\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
