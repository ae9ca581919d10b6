"""Every sentence that a user reads is one unbroken literal in a Texts file of src/, so that searching the source for
what stands on the screen finds it. Values stand in it as places, "%1". The descriptions of errors, which end without a
full stop, stand where they are thrown.

Held are three rules:
- A message box is given no literal: its text and title are named ones.
- In a file named *Texts.h or *Texts.cpp no literal goes on in a second one, and none is put together with "+".
- A literal that reads as a sentence (a capital in front, a full stop, question or exclamation mark at its end, four
  words or more), also one of several literals, stands in such a file and nowhere else.
"""

import re
import sys
from pathlib import Path

from tree import report, sources, text_of

TOKEN = re.compile(
    r"""(?P<comment>//[^\n]*|/\*.*?\*/)"""
    r"""|(?P<raw>R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)")"""
    r"""|(?P<text>"(?:[^"\\\n]|\\.)*")"""
    r"""|(?P<sign>(?<![0-9a-fA-F])'(?:[^'\\\n]|\\.)*')""",
    re.DOTALL,
)
BOX = re.compile(r"\b(?:MsgBox|say)\s*\(")
SENTENCE = re.compile(r"(?:\* )?[A-Z].*[.?!]\)?", re.DOTALL)
FEWEST_WORDS = 4
FILLER = "\1"


class Source:
    """A C++ text without its comments, with each literal as fillers between its quotes, and the literals by place."""

    def __init__(self, text):
        self.literals = {}
        self.code = TOKEN.sub(self.blank, text)

    def blank(self, token):
        whole = token.group()
        if token["comment"]:
            return re.sub(r"[^\n]", " ", whole)
        if token["sign"]:
            return FILLER * len(whole)
        first, last = ('"', '"') if token["text"] else ("(", ")")
        self.literals[token.start()] = whole[whole.index(first) + 1 : whole.rindex(last)]
        return '"' + FILLER * (len(whole) - 2) + '"'

    def line(self, place):
        return self.code.count("\n", 0, place) + 1

    def behind(self, place):
        """The code behind the literal that begins at the place."""
        return self.code[self.code.index('"', place + 1) + 1 :].lstrip()

    def end_of_call(self, opening):
        depth = 0
        for place in range(opening, len(self.code)):
            depth += {"(": 1, ")": -1}.get(self.code[place], 0)
            if depth == 0:
                return place
        return len(self.code)


def is_sentence(literal):
    return len(literal.split()) >= FEWEST_WORDS and SENTENCE.fullmatch(literal)


def shown(literal):
    return f'"{literal[:60]}"'


def box_faults(source):
    for call in BOX.finditer(source.code):
        end = source.end_of_call(call.end() - 1)
        for place, literal in source.literals.items():
            if call.end() <= place < end and re.search(r"[A-Za-z]{2}", literal):
                yield place, f"a message box is given the literal {shown(literal)}"


def broken_faults(source):
    for place, literal in source.literals.items():
        before = source.code[:place].rstrip()
        after = source.behind(place)
        if after.startswith('"'):
            yield place, f"the literal {shown(literal)} goes on in another one"
        elif before.endswith("+") or after.startswith("+"):
            yield place, f'the literal {shown(literal)} is put together with "+"'


def stray_faults(source):
    whole = ""
    for place, literal in source.literals.items():
        whole += literal
        if source.behind(place).startswith('"'):
            continue
        if is_sentence(whole):
            yield place, f"the sentence {shown(whole)} stands in no Texts file"
        whole = ""


def file_findings(root, path):
    source = Source(text_of(Path(root) / path) or "")
    holds_texts = path.stem.endswith("Texts")
    faults = [*box_faults(source), *(broken_faults(source) if holds_texts else stray_faults(source))]
    return [f"{path}:{source.line(place)}: {fault}" for place, fault in sorted(faults)]


def findings(root):
    return [finding for path in sources(root, {"src"}) for finding in file_findings(root, path)]


if __name__ == "__main__":
    sys.exit(report(findings(sys.argv[1]), "every sentence is whole and stands in a Texts file"))
