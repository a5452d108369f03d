#!/usr/bin/env python3
"""Prints what starting a command costs: the libraries it loads and their size, the instructions under valgrind, and the
median time of `COMMAND --version`, in turns if there are several commands.

    scripts/measure-start.py COMMAND...
"""

import os
import re
import statistics
import subprocess
import sys
import time

STARTS = 31


def libraries(command):
    lines = subprocess.run(["ldd", command], check=True, capture_output=True, text=True).stdout
    return {os.path.realpath(path) for path in re.findall(r"(?:=> |^\s*)(/\S+) \(", lines, re.MULTILINE)}


def instructions(command):
    run = subprocess.run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", command, "--version"],
                         check=True, capture_output=True, text=True)
    return int(re.search(r"Collected : (\d+)", run.stderr)[1])


def start(command):
    """Wall-clock and CPU time in milliseconds."""
    begin = time.perf_counter()
    pid = os.posix_spawn(command, [command, "--version"], os.environ,
                         file_actions=[(os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0)])
    _, status, usage = os.wait4(pid, 0)
    wall = time.perf_counter() - begin
    if status != 0:
        sys.exit(f"{command} failed")
    return wall * 1000, (usage.ru_utime + usage.ru_stime) * 1000


def main():
    commands = sys.argv[1:]
    if not commands:
        sys.exit(__doc__)
    times = {command: [] for command in commands}
    for _ in range(STARTS):
        for command in commands:
            times[command].append(start(command))
    for command in commands:
        loaded = libraries(command)
        size = sum(os.path.getsize(path) for path in loaded)
        wall, cpu = zip(*times[command])
        print(f"{command}: {len(loaded)} libraries, {size / 1e6:.1f} MB; "
              f"{instructions(command) / 1e6:.1f} million instructions; "
              f"{statistics.median(cpu):.1f} ms of CPU, {statistics.median(wall):.1f} ms ({min(wall):.1f} at best)")


main()
