#!/usr/bin/env python3
"""Fails where a text file uses a word that has a better one in this field, or British spelling. Prints each finding as
FILE:LINE: TEXT, with a suggestion.

    scripts/check-words.py              all files
    scripts/check-words.py PATH...      these files and folders
"""

import os
import re
import sys
from typing import NamedTuple

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SKIPPED = {"build", "samples", "tests/data", "docs/pictures", "scripts/check-words.py"}
SKIPPED_EXTENSIONS = (".abi",)
CHECKED_HIDDEN = re.compile(r"\.(ci|clang-\w+|gitignore)$")


class Rule(NamedTuple):
    pattern: str
    suggestion: str
    fine: str = ""  # where this matches, the pattern does not count
    folder: str = ""  # only below this folder


# Case is ignored unless the pattern says (?-i:...).
RULES = [
    Rule(r"\bso many\b(?! (\w+ )?that\b)", "N, the number of"),
    Rule(r"awake|asleep|\bsleeps\b|\bwakes?\b", "active, enabled, disabled",
         fine=r"\bwakes? (up|(a|the) (thread|worker))\b|\b(thread|worker)s? (\w+ )?wakes?\b"),
    Rule(r"\bwakes_|\b(?-i:Wakes)(?=(?-i:[A-Z]))", "is active, enables"),
    Rule(r"\b(gaussian|blur|filter|convolution|coarse|wide|symmetric|symmetrickernel&?|a|the) window\b"
         r"|\bwindow('?s)? (reach|sum|weight)", "kernel", folder="src"),
    Rule(r"\b(int|size_t|float) (\w+_)?reach\b|\breach_\b|\bkernel('s)? reach\b|(?-i:\bReach\()", "radius",
         folder="src"),
    Rule(r"(?-i:struct Places\b|\bPlaces& |\bPlaces places\b|PlacesPerPixel|\bNearestPlace\b|\bPlaceRow\b)",
         "positions, sample positions"),
    Rule(r"\bbehind\b", "after, beyond, following",
         fine=r"\b(left?|leaves?|leaving|stay(s|ed)?|falls?|lags?)( \S+)? behind\b|^\W*behind\b"
              r"|\b(code|context|idea|reason) behind\b|\bbehind (a|the) (\w+ )?(proxy|scenes?|subject|person)\b"),
    Rule(r"\bparted\b", "separated"),
    Rule(r"\b(tells?|told) of\b|\b(is|are|as) told\b|\btold (by|above|below)\b", "describes, reports, states"),
    Rule(r"\b(is|are|or) no number\b", "NaN"),
    Rule(r"\b(least|greatest) of all (ints?|integers?|numbers)\b", "INT_MIN, INT_MAX"),
    Rule(r"\b(first|second) cache\b", "L1 cache, L2 cache"),
    Rule(r"\bplain version\b", "reference implementation"),
    Rule(r"\bsmallest side\b|(?<!at )\bleast (area|distance|falloff|height|luminance|number|side|size|value|width)\b",
         "minimum"),
    Rule(r"pictures?\b", "image", folder="src"),
    Rule(r"(?-i:\bendings?\b|_endings?\b|[a-z]Endings?\b)", "extension",
         fine=r"\bline endings?\b|\bending (a|at|here|in|on|the|up|with)\b"),
    Rule(r"\bputs? right\b|\bmend(s|ed|ing)?\b", "fix"),
    Rule(r"\bby (itself|themselves)\b", "automatically, alone"),
    Rule(r"\bof (its|our|their) own\b", "its own, a separate",
         fine=r"\b(ahead|aside|because|independent|instead|regardless) of (its|our|their) own\b"),
    Rule(r"\bharm(s|ed)?\b|\bspoil(s|ed|t)?\b", "break, corrupt, crash", fine=r"\bno harm\b"),
    Rule(r"\b(it|they|these|those|what|which) (is|are) (not )?to [a-z]+", "a plain statement, must, should"),
    Rule(r"\bstands? (at|there)\b", "is, is at"),
    Rule(r"\bfor ever\b", "forever"),
    Rule(r"(behavi|col|fav|flav|harb|hon|lab|neighb|vig)our", "-or, as in color"),
    Rule(r"grey", "gray"),
    Rule(r"centr(e|ed|es|ing)(?![a-z])", "center"),
    Rule(r"\b(fib|kilomet|lit|millimet)res?\b|\bmetres?\b", "-er, as in meter"),
    Rule(r"(capital|character|custom|digit|equal|final|general|initial|local|maxim|memor|minim|normal|optim|organ"
         r"|parallel|priorit|quant|random|real|recogn|sanit|serial|special|standard|summar|synchron|token|util|vector"
         r"|visual)is(e[ds]?|ers?|ing|able|ations?)(?![a-z])", "-ize, as in normalize"),
    Rule(r"\b(ana|cata|para)lys(e|ed|ers?|ing)\b", "-yze, as in analyze"),
    Rule(r"\b(cancel|label|level|model|signal|travel)l(ed|ers?|ing)\b", "a single l, as in canceled"),
    Rule(r"\b(artefact|catalogue|judgement|licence|amongst|whilst|fulfil|skilful|speciality)s?\b", "American spelling",
         fine=r"\bcollect[-_]licences\.sh\b|\blicences\.md\b|\bcollect_licences\b"),
]
COMPILED = [(re.compile(rule.pattern, re.IGNORECASE), re.compile(rule.fine, re.IGNORECASE) if rule.fine else None, rule)
            for rule in RULES]


def is_checked(path):
    name = os.path.basename(path)
    if path in SKIPPED or name.endswith(SKIPPED_EXTENSIONS):
        return False
    return not name.startswith(".") or bool(CHECKED_HIDDEN.match(name))


def files_below(path):
    if os.path.isfile(os.path.join(ROOT, path)):
        yield path
        return
    for folder, folders, names in os.walk(os.path.join(ROOT, path)):
        below = os.path.relpath(folder, ROOT)
        folders[:] = sorted(name for name in folders if is_checked(os.path.normpath(os.path.join(below, name))))
        for name in sorted(names):
            yield os.path.normpath(os.path.join(below, name))


def lines_of(path):
    """The lines of a text file; none of a binary one."""
    with open(os.path.join(ROOT, path), "rb") as file:
        content = file.read()
    return [] if b"\0" in content else content.decode("utf-8", "replace").splitlines()


def suggestions(path, line):
    for pattern, fine, rule in COMPILED:
        if rule.folder and not path.startswith(rule.folder + "/"):
            continue
        if pattern.search(fine.sub("", line) if fine else line):
            yield rule.suggestion


def main():
    checked = findings = 0
    for start in sys.argv[1:] or ["."]:
        for path in filter(is_checked, files_below(os.path.normpath(start))):
            checked += 1
            for number, line in enumerate(lines_of(path), 1):
                for suggestion in suggestions(path, line):
                    findings += 1
                    print(f"{path}:{number}: {line.strip()}\n    better: {suggestion}")
    print(f"{checked} files, {findings} words to replace")
    return 1 if findings or not checked else 0


sys.exit(main())
