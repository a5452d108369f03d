#!/usr/bin/env python3
"""Makes the relink kit of a static build: all that it takes to link both libraries again with changed versions of the
libraries in them.

    scripts/make-relink-kit.py BUILD PREFIX FOLDER

BUILD is the folder of the build, PREFIX that of its static libraries. FOLDER, which must not exist, gets the objects and
libraries, the arguments of each link, and relink.sh. The metadata module is not part of it.
"""

import pathlib
import re
import shlex
import shutil
import stat
import subprocess
import sys

RELINK = """#!/bin/sh
# Links lumvik's libraries again. CXX is the compiler, by default {compiler}.
set -e
cd "$(dirname "$0")"
mkdir -p relinked
for arguments in {names}; do
  "${{CXX:-{compiler}}}" "@$arguments"
done
"""
README = """Relink kit of lumvik

The libraries of lumvik contain LibRaw and libexif, which are under the GNU Lesser General
Public License, version 2.1. With this kit they can be linked again with changed versions
of these two, or of the other libraries in lib:

1. Build the changed library as a static library for the same system (on Linux with -fPIC),
   with an unchanged binary interface, and put it in lib under the same name. "sources" has
   the sources of the version in use, and scripts/static-dependencies.sh built it.
2. Run ./relink.sh on a system with {compiler}, version {version} or newer.
3. Replace the libraries of lumvik by those in the folder "relinked".

"licenses" has the licenses of everything in lib.
"""


def output(*command):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE).stdout


def link_commands(build):
    """The arguments of the links of both libraries, in their order."""
    for command in output("ninja", "-C", build, "-t", "commands", "lumvik_host").splitlines():
        # The shell runs ": && LINK && STEPS AFTER IT".
        for part in command.split(" && "):
            words = shlex.split(part)
            if "-shared" in words and "lumvik_metadata" not in words[words.index("-o") + 1]:
                yield words


class Kit:
    def __init__(self, build, prefix, folder):
        self.build, self.prefix, self.folder = build, prefix, folder
        self.outputs = set()

    def copy(self, source, name):
        target = self.folder / name
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(source, target)
        return name

    def made(self, path):
        """The path of a file that a link makes."""
        self.outputs.add(path)
        return "relinked/" + pathlib.Path(path).name

    def file(self, word):
        path = (self.build / word).resolve()
        if word in self.outputs:
            return "relinked/" + path.name
        if path.is_relative_to(self.prefix):
            return self.copy(path, "lib/" + path.name)
        if path.suffix in (".o", ".obj", ".res", ".map", ".def") and path.exists():
            name = path.relative_to(self.build) if path.is_relative_to(self.build) else path.name
            return self.copy(path, "objects/" + re.sub(r"[^\w.]+", "_", str(name)))
        sys.exit(f"make-relink-kit.py: what is {word}?")

    def arguments(self, words):
        """The arguments of a link, with the files in the kit."""
        words = iter(words)
        next(words)  # the compiler
        for word in words:
            option = re.fullmatch(r"(-Wl,--(?:version-script=|out-implib,))(.*)", word)
            if word == "-o":
                yield from ("-o", self.made(next(words)))
            elif word == "-isystem":
                next(words)
            elif re.match(r"--sysroot=|-B|-L|-nostdinc|-Wl,--dependency-file", word):
                pass  # the user's own system
            elif word.startswith("-Wl,-rpath,"):
                yield "-Wl,-rpath,$ORIGIN"
            elif option:
                yield option[1] + (self.made(option[2]) if "implib" in option[1] else self.file(option[2]))
            elif word.startswith("-"):
                yield word
            else:
                yield self.file(word)


def main():
    build, prefix, folder = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    folder.mkdir(parents=True)
    kit = Kit(build, prefix, folder)
    names = []
    for words in link_commands(build):
        compiler = pathlib.Path(words[0]).name
        version = output(words[0], "-dumpversion").split("-")[0].strip()
        arguments = list(kit.arguments(words))
        names.append(pathlib.Path(arguments[arguments.index("-o") + 1]).name + ".arguments")
        (folder / names[-1]).write_text("".join(argument + "\n" for argument in arguments))
    if len(names) != 2:
        sys.exit(f"make-relink-kit.py: {len(names)} libraries instead of 2")
    script = folder / "relink.sh"
    script.write_text(RELINK.format(compiler=compiler, names=" ".join(names)))
    script.chmod(script.stat().st_mode | stat.S_IXUSR | stat.S_IXGRP | stat.S_IXOTH)
    (folder / "README.txt").write_text(README.format(compiler=compiler, version=version))
    for file in folder.rglob("*"):
        if file.suffix in (".arguments", ".sh") and any(str(path) in file.read_text() for path in (build, prefix)):
            sys.exit(f"make-relink-kit.py: {file.name} has a path of this machine")


if __name__ == "__main__":
    main()
