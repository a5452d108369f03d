#!/usr/bin/env python3
"""Plants faults in the engine, one at a time, and reports which ones no test catches.

A fault is a small change to one place in src/: a constant, an operator, a comparison, a
negated condition, two swapped arguments, a deleted statement. Each is applied to a
private copy of the tree, the test programs are rebuilt, and those most likely to notice
run first; the first failure, crash or hang settles it. What survives is either a missing
test or a change nobody can observe. To be run by hand: 200 faults take an hour or two.

  scripts/plant-faults.py --count 200            plants 200 faults, or resumes doing so
  scripts/plant-faults.py --files 'src/image/*'  only in these files
  scripts/plant-faults.py --list                 shows the faults without planting them
  scripts/plant-faults.py --replay ID...         plants these again, such as survivors
                                                 for which there is a test now
  scripts/plant-faults.py --equivalent ID REASON records why a survivor changes nothing
  scripts/plant-faults.py --summary              totals and survivors so far

A fault whose object code equals the original's is equivalent without a test run. One that
does not compile is replaced by another. The order of the faults depends on the seed and
on each fault itself, so editing one file leaves those in the others as they were. The
results are lines of JSON in --results; a later line for the same fault replaces an
earlier one. GTEST_FILTER='-*SettingsSweep*' in the environment leaves out the tests that
take longest.
"""

import argparse
import collections
import concurrent.futures
import fnmatch
import hashlib
import json
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import threading

from faults import faults_in

ROOT = pathlib.Path(__file__).resolve().parent.parent
HEADER_SHARE = 0.5  # of their places: a header takes many times longer to rebuild
MEMORY_LIMIT = 8 << 30  # bytes of address space: a fault may allocate without end
WALL_LIMIT = 900  # seconds: for a deadlock, which uses no processor time
CPU_LIMIT_FACTOR = 4  # times the program's own time without a fault
CPU_LIMIT_EXTRA = 10  # seconds

# Programs in the order in which they run, after the one for the folder of the fault.
PROGRAMS = {
    "base": "tests/base_tests",
    "examples": "tests/examples_tests",
    "bindings": "tests/bindings/bindings_tests",
    "pipeline": "tests/pipeline_tests",
    "api": "tests/api_tests",
    "image": "tests/image_tests",
    "analysis": "tests/analysis_tests",
    "segmentation": "tests/segmentation_tests",
    "allocation": "tests/allocation_tests",
    "apps": "tests/apps/lumvik_cli_test",
}

# Each folder of src/ includes only those before it, so their programs cannot notice its faults.
LAYERS = ["base", "image", "pipeline", "analysis", "segmentation", "api"]


def sources(patterns):
    """The engine's files that are compiled on this platform."""
    found = sorted(p.relative_to(ROOT).as_posix() for p in (ROOT / "src").rglob("*.*"))
    found = [f for f in found if f.endswith((".cpp", ".h")) and "_win32." not in f]
    return [f for f in found if any(fnmatch.fnmatch(f, p) for p in patterns)]


def faults_of(file, seed):
    return faults_in(file, (ROOT / file).read_text(encoding="utf-8"), seed)


def drawn(arguments):
    """One fault for each place, in random order, with fewer of the places in headers."""
    ranked = []
    for file in sources(arguments.files):
        for rank, faults in faults_of(file, arguments.seed):
            kept = rank % 1000 < 1000 * HEADER_SHARE
            if file.endswith(".cpp") or kept:
                ranked.append((rank, faults[0]))
    return [fault for _, fault in sorted(ranked, key=lambda pair: pair[0])]


class Results:
    """What became of each fault, kept in a file of JSON lines."""

    def __init__(self, path):
        self.path = path
        self.lock = threading.Lock()
        self.by_id = {}
        if path.exists():
            for line in path.read_text(encoding="utf-8").splitlines():
                record = json.loads(line)
                self.by_id[record["id"]] = record

    def add(self, record):
        with self.lock:
            self.by_id[record["id"]] = record
            with self.path.open("a", encoding="utf-8") as file:
                file.write(json.dumps(record) + "\n")

    def print_summary(self, existing):
        """Leaves out the faults that the sources have no place for any more."""
        records = [r for name, r in self.by_id.items() if name in existing]
        counts = collections.Counter(r["verdict"] for r in records)
        for record in records:
            if record["verdict"] == "survived":
                print(f"\nsurvived: {record['id']}\n{record['diff']}", end="")
        caught = counts["killed"] + counts["hang"]
        observable = caught + counts["survived"]
        print("\n" + ", ".join(f"{n} {verdict}" for verdict, n in counts.items()))
        if observable:
            share = 100 * caught / observable
            print(f"caught: {caught} of {observable} ({share:.1f} %)")


class Tree:
    """A private copy of the tree with its own build, kept between runs."""

    def __init__(self, folder, programs):
        self.source = folder / "source"
        self.build = folder / "build"
        self.scratch = folder / "scratch"
        self.programs = programs
        self.measured = folder / "measured.json"
        self.cpu_limits = {}
        self.copy_sources()
        options = [
            "LUMVIK_WERROR=OFF",
            "LUMVIK_PROCESS_PER_CASE=OFF",
            "LUMVIK_BUILD_BENCH=OFF",
        ]
        configure = [
            "cmake",
            "-S",
            self.source,
            "--preset",
            "release",
            "-B",
            self.build,
        ]
        for option in options:
            configure += ["-D", option]
        subprocess.run(configure, check=True, stdout=subprocess.DEVNULL)
        targets = [target_of(p) for p in programs]
        if not self.make("lumvik_objects", *targets, quiet=False):
            sys.exit("plant-faults.py: the tree does not build")
        self.original_objects = self.objects()
        self.measure()

    def copy_sources(self):
        """Brings the copy up to date; what is the same keeps its time, and its objects."""
        listed = [
            "git",
            "-C",
            ROOT,
            "ls-files",
            "-z",
            "--cached",
            "--others",
            "--exclude-standard",
        ]
        output = subprocess.run(
            listed, check=True, capture_output=True, text=True
        ).stdout
        files = {f for f in output.split("\0") if f and (ROOT / f).is_file()}
        self.source.mkdir(parents=True, exist_ok=True)
        for old in [p for p in self.source.rglob("*") if p.is_file()]:
            if old.relative_to(self.source).as_posix() not in files:
                old.unlink()
        for file in files:
            content, copy = (ROOT / file).read_bytes(), self.source / file
            if not copy.exists() or copy.read_bytes() != content:
                copy.parent.mkdir(parents=True, exist_ok=True)
                copy.write_bytes(content)
                shutil.copymode(ROOT / file, copy)

    def make(self, *targets, quiet=True):
        command = ["cmake", "--build", self.build, "--target", *targets]
        output = subprocess.DEVNULL if quiet else None
        return (
            subprocess.run(
                command, check=False, stdout=output, stderr=output
            ).returncode
            == 0
        )

    def objects(self):
        files = self.build.glob("src/CMakeFiles/lumvik_objects.dir/**/*.o")
        return {p: hashlib.sha1(p.read_bytes()).digest() for p in files}

    def measure(self):
        """Runs the programs without a fault, once for each version of them: they pass, and
        the time that they take sets their limits."""
        known = json.loads(self.measured.read_text()) if self.measured.exists() else {}
        engine = hashlib.sha1(b"".join(sorted(self.original_objects.values())))
        for program in self.programs:
            version = engine.copy()
            version.update((self.build / PROGRAMS[program]).read_bytes())
            if known.get(program, {}).get("version") != version.hexdigest():
                before = resource.getrusage(resource.RUSAGE_CHILDREN)
                status, output = self.run(program, [], cpu_limit=WALL_LIMIT)
                after = resource.getrusage(resource.RUSAGE_CHILDREN)
                if status != 0:
                    sys.exit(
                        f"plant-faults.py: {program} fails without a fault:\n{output}"
                    )
                used = (
                    after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
                )
                known[program] = {"version": version.hexdigest(), "seconds": used}
                self.measured.write_text(json.dumps(known))
            seconds = known[program]["seconds"]
            self.cpu_limits[program] = int(CPU_LIMIT_FACTOR * seconds) + CPU_LIMIT_EXTRA

    def run(self, program, arguments, cpu_limit):
        """The program's status, None when it took longer than it may, and its output."""

        limits = [f"--cpu={cpu_limit}", f"--as={MEMORY_LIMIT}", "--core=0"]
        command = ["prlimit", *limits, self.build / PROGRAMS[program]]
        shutil.rmtree(self.scratch, ignore_errors=True)
        self.scratch.mkdir(parents=True)
        process = subprocess.Popen(
            [*command, "--gtest_brief=1", "--gtest_fail_fast", *arguments],
            cwd=self.scratch,
            env={**os.environ, "TMPDIR": str(self.scratch)},
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            errors="replace",
            start_new_session=True,
        )
        try:
            output, _ = process.communicate(timeout=WALL_LIMIT)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            return None, process.communicate()[0]
        hung = process.returncode in (-signal.SIGXCPU, -signal.SIGKILL)
        return None if hung else process.returncode, output

    def verdict(self, fault):
        """What becomes of a fault: (verdict, by what)."""
        path = self.source / fault.file
        path.write_text(fault.changed_text(), encoding="utf-8")
        try:
            if not self.make("lumvik_objects"):
                return "unbuildable", None
            if self.objects() == self.original_objects:
                return "equivalent", "the same object code"
            for program, arguments in runs(fault.file, self.programs):
                if not self.make(target_of(program)):
                    return "unbuildable", program
                status, output = self.run(program, arguments, self.cpu_limits[program])
                if status is None:
                    return "hang", program
                if status != 0:
                    failed = re.search(r"\[  FAILED  \] ([\w/.]+)", output)
                    crash = f"{program} ends with {status}"
                    return "killed", failed.group(1) if failed else crash
            return "survived", None
        finally:
            path.write_text(fault.text, encoding="utf-8")


def target_of(program):
    return pathlib.PurePath(PROGRAMS[program]).name


def runs(file, programs):
    """Yields the runs that may catch a fault in a file, (program, arguments), the likeliest
    first: the suites of the tests named like the file, then the program of its folder.
    """
    folder, stem = pathlib.PurePath(file).parts[1], pathlib.PurePath(file).stem
    suites = set()
    for test in (ROOT / "tests" / folder).rglob(f"{stem}*_test.cpp"):
        found = re.findall(r"(?m)^TEST\w*\((\w+),", test.read_text(encoding="utf-8"))
        suites.update(found)
    if suites and folder in programs:
        patterns = ":".join(f"{s}.*:*/{s}.*" for s in sorted(suites))
        yield folder, [f"--gtest_filter={patterns}"]
    above = [p for p in programs if p not in LAYERS[: LAYERS.index(folder)]]
    for program in sorted(above, key=lambda p: p != folder):
        yield program, []


def plant(trees, faults, count, results):
    """Plants faults until `count` of them compiled, in each tree one at a time."""
    waiting, lock = iter(faults), threading.Lock()
    done = 0

    def work(tree):
        nonlocal done
        while True:
            with lock:
                fault = next(waiting, None) if done < count else None
                done += 1
            if fault is None:
                return
            verdict, by = tree.verdict(fault)
            record = {"id": fault.id, "place": fault.place()}
            record.update(verdict=verdict, by=by)
            results.add({**record, "diff": fault.diff()})
            print(*record.values(), flush=True)
            if verdict == "unbuildable":
                with lock:
                    done -= 1

    with concurrent.futures.ThreadPoolExecutor(len(trees)) as pool:
        for finished in [pool.submit(work, tree) for tree in trees]:
            finished.result()


def parsed_arguments():
    folder = pathlib.Path(tempfile.gettempdir()) / f"planted-faults-{os.getuid()}"
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    add = parser.add_argument
    add("--seed", type=int, default=1, help="another seed, another selection (1)")
    add("--count", type=int, default=200, help="faults that compile, in all (200)")
    add("--jobs", type=int, default=1, help="copies of the tree worked in at once (1)")
    add(
        "--files",
        nargs="+",
        default=["src/*"],
        metavar="PATTERN",
        help="where to plant",
    )
    add(
        "--programs",
        type=lambda text: text.split(","),
        default=list(PROGRAMS),
        help=f"test programs, separated by commas (all: {','.join(PROGRAMS)})",
    )
    add(
        "--folder", type=pathlib.Path, default=folder, help=f"for the copies ({folder})"
    )
    add(
        "--results",
        type=pathlib.Path,
        default=ROOT / "build" / "planted-faults.jsonl",
        help="file of results (build/planted-faults.jsonl)",
    )
    mode = parser.add_mutually_exclusive_group()
    mode.add_argument("--list", action="store_true", help="show the faults, plant none")
    mode.add_argument("--replay", nargs="+", metavar="ID", help="plant these once more")
    mode.add_argument(
        "--equivalent", nargs=2, metavar=("ID", "REASON"), help="record why"
    )
    mode.add_argument("--summary", action="store_true", help="show the results so far")
    arguments = parser.parse_args()
    unknown = set(arguments.programs) - set(PROGRAMS)
    if unknown:
        parser.error(f"no such test program: {', '.join(sorted(unknown))}")
    return arguments


def main():
    arguments = parsed_arguments()
    every = {
        fault.id: fault
        for file in sources(["src/*"])
        for _, faults in faults_of(file, arguments.seed)
        for fault in faults
    }
    arguments.results.parent.mkdir(parents=True, exist_ok=True)
    results = Results(arguments.results)
    if arguments.summary:
        results.print_summary(every)
        return
    if arguments.equivalent:
        name, reason = arguments.equivalent
        if name not in results.by_id:
            sys.exit(f"plant-faults.py: no result for {name}")
        results.add({**results.by_id[name], "verdict": "equivalent", "by": reason})
        return
    if arguments.replay:
        gone = [name for name in arguments.replay if name not in every]
        if gone:
            sys.exit(f"plant-faults.py: no longer in the sources: {' '.join(gone)}")
        faults = [every[name] for name in arguments.replay]
        count = len(faults)
    else:
        selected = drawn(arguments)
        known = [results.by_id[f.id] for f in selected if f.id in results.by_id]
        faults = [f for f in selected if f.id not in results.by_id]
        count = arguments.count - sum(r["verdict"] != "unbuildable" for r in known)
    if arguments.list:
        for fault in faults[: max(count, 0)]:
            print(f"{fault.id}\n{fault.diff()}")
        return
    trees = [
        Tree(arguments.folder / str(n), arguments.programs)
        for n in range(arguments.jobs)
    ]
    plant(trees, faults, count, results)
    results.print_summary(every)


if __name__ == "__main__":
    main()
