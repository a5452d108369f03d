"""The faults that scripts/plant-faults.py can plant in a C++ source file."""

import dataclasses
import difflib
import hashlib
import re

TOKEN = re.compile(
    r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:[^\n\\]|\\.)*)
  | (?P<string>R"\(.*?\)"|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])+')
  | (?P<number>(?:0[xX][0-9a-fA-F']+|(?:\d[\d']*(?:\.\d*)?|\.\d+)(?:[eE][+-]?\d+)?)[uUlLfF]*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<space>\s+)
  | (?P<symbol><<=|>>=|->|::|[-+*/%&|^!=<>]=|&&|\|\||<<|>>|\+\+|--|.)
    """,
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

# Binary operators; clang-format puts a space on either side of each, and of nothing else.
OPERATORS = {
    "<": ["<=", ">", ">="],
    "<=": ["<", ">"],
    ">": [">=", "<", "<="],
    ">=": [">", "<"],
    "==": ["!="],
    "!=": ["=="],
    "&&": ["||"],
    "||": ["&&"],
    "+": ["-"],
    "-": ["+"],
    "*": ["/"],
    "/": ["*"],
    "%": ["/"],
    "+=": ["-=", "="],
    "-=": ["+=", "="],
    "*=": ["/=", "="],
    "/=": ["*=", "="],
    "<<": [">>"],
    ">>": ["<<"],
    "&": ["|"],
    "|": ["&"],
    "^": ["&"],
}
WORDS = {"true": ["false"], "false": ["true"], "min": ["max"], "max": ["min"]}

# Statements of one line that are no declarations, which could not be left out.
STATEMENT = re.compile(r"^\s*(?![#}])\S.*;$")
NOT_DELETED = re.compile(
    r"""^\s*(?:
        (?:return|const|constexpr|auto|using|namespace|template|typedef|static_assert
          |friend|struct|class|enum|static|inline|explicit|virtual|case|default)\b
      | (?!else\b|throw\b|delete\b|co_return\b)
        [A-Za-z_][\w:]*(?:<.*>)?[\s*&]+[A-Za-z_]\w*\s*(?:[;=({\[,]|\s:)
    )""",
    re.VERBOSE,
)


@dataclasses.dataclass(frozen=True)
class Fault:
    """A replacement of `text[start:end]`, where `text` is what the file holds."""

    id: str
    file: str
    text: str
    start: int
    end: int
    replacement: str

    def changed_text(self):
        return self.text[: self.start] + self.replacement + self.text[self.end :]

    def place(self):
        return f"{self.file}:{self.text.count(chr(10), 0, self.start) + 1}"

    def diff(self):
        before, after = self.text.splitlines(True), self.changed_text().splitlines(True)
        names = (f"a/{self.file}", f"b/{self.file}")
        return "".join(difflib.unified_diff(before, after, *names, n=1))


def changed_number(literal):
    """The other values for a literal, with its suffix."""
    value, suffix = re.fullmatch(
        r"(0[xX][0-9a-fA-F']+|.*?)([uUlLfF]*)", literal
    ).groups()
    digits = value.replace("'", "")
    if re.fullmatch(r"0[xX].*|\d+", digits):
        octal = re.fullmatch(r"0\d+", digits)
        number = int(digits, 8 if octal else 0)
        values = [number + 1, number - 1, number * 2, 0]
    else:
        number = float(digits)
        values = [number * 1.01, number * 1.1, number * 2, -number, 0.0]
        if number == 0:
            values = [1.0, -0.01]
    rounded = [v if isinstance(v, int) else float(f"{v:.9g}") for v in values]
    return [f"{v}{suffix}" for v in rounded if v != number]


def closing(tokens, opening):
    """The index of the parenthesis that closes the one at index `opening`."""
    depth = 0
    for i in range(opening, len(tokens)):
        depth += {"(": 1, ")": -1}.get(tokens[i].group(), 0)
        if depth == 0:
            return i
    raise ValueError("unbalanced parentheses")


def places_in_tokens(text):
    """Yields (start, end, replacements) for each token or expression that can change."""
    matches = [m for m in TOKEN.finditer(text)]
    tokens = [
        m for m in matches if m.lastgroup not in ("comment", "space", "directive")
    ]
    skipped_to = -1
    for i, token in enumerate(tokens):
        word, start, end = token.group(), token.start(), token.end()
        following = [t.group() for t in tokens[i + 1 : i + 6]]
        if word == "static_assert":
            skipped_to = text.index(";", start)
        if start < skipped_to:
            continue
        spaced = text[start - 1].isspace() and text[end : end + 1].isspace()
        if token.lastgroup == "number":
            yield start, end, changed_number(word)
        elif word in WORDS:
            yield start, end, WORDS[word]
        elif word in OPERATORS and spaced:
            yield start, end, OPERATORS[word]
        elif word == "!" or (word == "-" and text[start - 1] in " (" and not spaced):
            yield start, end, [""]
        elif word in ("if", "while") and following[:1] == ["("]:
            first, last = tokens[i + 1].end(), tokens[closing(tokens, i + 1)].start()
            yield first, last, [f"!({text[first:last]})"]
        elif token.lastgroup == "word" and is_call_of_two(tokens[i + 1 : i + 6]):
            first, second = tokens[i + 2], tokens[i + 4]
            swapped = f"{second.group()}, {first.group()}"
            yield first.start(), second.end(), [swapped]


def is_call_of_two(tokens):
    """Whether the tokens are two names in parentheses."""
    if len(tokens) < 5 or tokens[1].group() == tokens[3].group():
        return False
    marks = [tokens[n].group() for n in (0, 2, 4)]
    names = [tokens[n].lastgroup for n in (1, 3)]
    return marks == ["(", ",", ")"] and names == ["word", "word"]


def places_in_lines(text):
    """Yields (start, end, replacements) for each statement that can be left out."""
    position, before = 0, ";"
    for line in text.splitlines(True):
        code = line.split("//")[0].rstrip()
        if (
            STATEMENT.match(code)
            and before[-1] in ";{}:"
            and not NOT_DELETED.match(code)
        ):
            indent = len(code) - len(code.lstrip())
            yield position + indent, position + len(code), [";"]
        before = code or before
        position += len(line)


def faults_in(file, text, seed):
    """Yields (rank, faults) for each place in the text of a file: where the place comes in
    the order of the seed, and the faults that it can have, in that order."""
    lines = text.split("\n")
    places = [*places_in_tokens(text), *places_in_lines(text)]
    for start, end, replacements in places:
        number = text.count("\n", 0, start)
        column = start - (text.rfind("\n", 0, start) + 1)
        # Not by the line's number, so that the same fault keeps its name while others move.
        repeat = lines[:number].count(lines[number])
        place = f"{file}|{lines[number]}|{repeat}|{column}|{end - start}"
        made = []
        for replacement in dict.fromkeys(replacements):
            name = hashlib.sha1(f"{place}|{replacement}".encode()).hexdigest()[:10]
            made.append(Fault(name, file, text, start, end, replacement))
        rank = int(hashlib.sha1(f"{seed}|{place}".encode()).hexdigest(), 16)
        yield rank, sorted(
            made, key=lambda f: hashlib.sha1(f"{seed}{f.id}".encode()).digest()
        )
