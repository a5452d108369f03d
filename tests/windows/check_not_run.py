"""Checks that every pattern in tests/windows/not_run.txt still matches a test, so that renaming a test does not make it
run on Windows unnoticed.

    check_not_run.py TESTS
"""

import pathlib
import re
import sys

CASE = re.compile(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\s*\)", re.MULTILINE)


def names_of_tests(folder):
    for path in sorted(folder.rglob("*.cpp")):
        prefix = "cli." if path.parent.name == "apps" else ""
        for suite, name in CASE.findall(path.read_text(encoding="utf-8")):
            yield f"{prefix}{suite}.{name}"


def main():
    folder = pathlib.Path(sys.argv[1])
    names = list(names_of_tests(folder))
    lines = (folder / "windows" / "not_run.txt").read_text(encoding="utf-8").splitlines()
    patterns = [line for line in lines if line and not line.startswith("#")]
    unmatched = [pattern for pattern in patterns if not any(re.fullmatch(pattern, name) for name in names)]
    for pattern in unmatched:
        print(f"no test matches {pattern}")
    print(f"{len(patterns)} patterns, {len(unmatched)} without a test")
    return 1 if unmatched or not patterns else 0


sys.exit(main())
