"""Builds the tests of a folder with all mutants in the library, finds out which test reaches which mutant, and runs
for each mutant the tests that reach it."""

import hashlib
import json
import math
import os
import re
import signal
import subprocess
import tempfile
import threading
from pathlib import Path

from mutation import schemata

# A test that takes longer (seconds of a processor) runs only when no quicker one found the mutant.
QUICK = 0.1
# What a mutant may use: the processor time of its tests this many times over, and so many seconds more; bytes of
# memory; bytes of a file, of which the sparse one of a test has half.
SLOWER, MORE_SECONDS = 10, 2
MEMORY, FILE_SIZE = 2 << 30, 2 << 40
# The time by the clock, so that nothing waits for ever. It tells nothing of the mutant: the machine may be busy.
WALL = 300


class Tree:
    """A copy of the sources in which those to be changed have all their mutants, and its build."""

    def __init__(self, root, folder):
        self.root, self.folder = Path(root), Path(folder)
        self.sources, self.build = self.folder / "tree", self.folder / "build"
        self.header = self.folder / "Mutants.h"

    def write(self, changed):
        """Only files that are not there as they should be are written: the rest is not built again."""
        names = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=self.root, check=True,
                               stdout=subprocess.PIPE).stdout.decode().split("\0")
        wanted = {name for name in names if name and (self.root / name).is_file()}
        for name in wanted:
            self.put(self.sources / name, changed.get(name) or (self.root / name).read_bytes(),
                     (self.root / name).stat().st_mode)
        for path in list(self.sources.rglob("*")):
            if path.is_file() and str(path.relative_to(self.sources)) not in wanted:
                path.unlink()

    @staticmethod
    def put(path, content, mode=0o644):
        if path.exists() and path.read_bytes() == content:
            return
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        path.chmod(mode)

    def write_header(self):
        self.put(self.header, schemata.HEADER)

    def configure(self):
        self.run("cmake", "-S", self.sources, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                 "-DCMAKE_CXX_COMPILER=clang++", f"-DCMAKE_CXX_FLAGS_DEBUG={' '.join(schemata.BUILD)}",
                 "-DTKPPDUPDATING_SHARED=OFF", "-DTKPPDUPDATING_WARNINGS_AS_ERRORS=OFF")

    def make(self, programs, jobs):
        self.run("cmake", "--build", self.build, "-j", str(jobs), "--target", *[each.name for each in programs])

    def run(self, *command):
        log = self.folder / "build.log"
        with open(log, "wb") as output:
            if subprocess.run(command, stdout=output, stderr=subprocess.STDOUT).returncode != 0:
                raise SystemExit(f"The build with the mutants failed: {log}")


class Program:
    """One test program, and after learn() what its tests reach and take."""

    def __init__(self, name, folder):
        self.name, self.folder = name, folder
        self.tests = {}

    def path(self, tree):
        return tree.build / self.folder / self.name

    def learn(self, tree, pool):
        binary = hashlib.sha256(self.path(tree).read_bytes()).hexdigest()
        kept = tree.folder / "reached" / f"{self.name}.json"
        if kept.exists():
            known = json.loads(kept.read_text())
            if known["binary"] == binary:
                return self.take(known["tests"])
        names = self.names(tree)
        tests = dict(zip(names, pool.map(lambda name: self.learn_test(tree, name), names)))
        kept.parent.mkdir(exist_ok=True)
        kept.write_text(json.dumps({"binary": binary, "tests": tests}))
        self.take(tests)

    def take(self, tests):
        self.tests = {name: {**each, "reached": set(each["reached"])} for name, each in tests.items()}

    def names(self, tree):
        listed = subprocess.run([self.path(tree), "--gtest_list_tests"], check=True, stdout=subprocess.PIPE)
        return names_of_tests(listed.stdout.decode())

    def learn_test(self, tree, name):
        with tempfile.NamedTemporaryFile(dir=tree.folder / "tmp") as reached:
            reached.truncate(schemata.MOST_MUTANTS)
            run = Run(tree, self, [name], 0, 600, {"MUTANTS_REACHED": reached.name})
            if run.status != 0 or run.is_ended_by_clock:
                raise SystemExit(f"{self.name}: {name} fails without a mutant:\n{run.output}")
            bits = reached.read()
        return {"seconds": run.seconds, "reached": [each.start() for each in re.finditer(b"\1", bits)]}


class Run:
    """Some tests of a program with one mutant."""

    def __init__(self, tree, program, tests, number, seconds, variables=None):
        limits = {"t": math.ceil(seconds), "v": MEMORY >> 10, "f": FILE_SIZE >> 9, "c": 0}
        script = "".join(f"ulimit -{name} {value} && " for name, value in limits.items()) + 'exec "$@"'
        command = ["sh", "-c", script, "mutant", program.path(tree), "--gtest_filter=" + ":".join(tests),
                   "--gtest_fail_fast", "--gtest_brief=1"]
        self.is_ended_by_clock = False
        environment = {**os.environ, "MUTANT": str(number), "TMPDIR": str(tree.folder / "tmp"), **(variables or {})}
        with tempfile.TemporaryFile(dir=tree.folder / "tmp") as output:
            child = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT,
                                     env=environment, start_new_session=True, cwd=tree.build)
            clock = threading.Timer(WALL + 10 * seconds, self.end_by_clock, (child.pid,))
            clock.start()
            _, status, usage = os.wait4(child.pid, 0)
            clock.cancel()
            child.returncode = os.waitstatus_to_exitcode(status)
            try:
                os.killpg(child.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            output.seek(0)
            self.output = output.read(1 << 20).decode("utf-8", "replace")
        self.status, self.seconds = child.returncode, usage.ru_utime + usage.ru_stime

    def end_by_clock(self, process):
        self.is_ended_by_clock = True
        os.killpg(process, signal.SIGKILL)

    def result(self):
        """What ended it, in a word or two."""
        failed = re.search(r"\[  FAILED  \] ([^\s,]+)", self.output)
        if self.status in (-signal.SIGXCPU, -signal.SIGKILL):
            return "time"
        if failed:
            return failed.group(1)
        return f"signal {-self.status}" if self.status < 0 else f"status {self.status}"


def names_of_tests(listed):
    """The full names in what a test program prints with --gtest_list_tests."""
    suite, names = "", []
    # Only a line feed ends a line: values that a test is given stand there with their carriage returns.
    for line in listed.split("\n"):
        word = line.split("#")[0].strip()
        if not line.startswith(" "):
            suite = word
        elif not word.startswith("DISABLED_"):
            names.append(suite + word)
    return [name for name in names if name.count(".") == 1]


def try_mutant(tree, programs, mutant):
    """Whether the tests find it: (True, by what) or (False, how many reach it)."""
    reaching, slow = 0, []
    for program in programs:
        tests = {name: each["seconds"] for name, each in program.tests.items() if mutant.number in each["reached"]}
        reaching += len(tests)
        quick = {name: seconds for name, seconds in tests.items() if seconds <= QUICK}
        slow += [(program, {name: tests[name]}) for name in tests if name not in quick]
        found = quick and try_tests(tree, program, quick, mutant)
        if found:
            return True, found
    for program, tests in sorted(slow, key=lambda each: sum(each[1].values())):
        found = try_tests(tree, program, tests, mutant)
        if found:
            return True, found
    return False, str(reaching)


def try_tests(tree, program, tests, mutant):
    run = Run(tree, program, list(tests), mutant.number, MORE_SECONDS + SLOWER * sum(tests.values()))
    return run.result() if run.status != 0 and not run.is_ended_by_clock else None


def programs_of(root, folder):
    """The test programs of a folder: those of tests/FOLDER and below."""
    found = []
    for lists in sorted((root / "tests" / folder).rglob("CMakeLists.txt")):
        for name in re.findall(r"tkppdupdating_add_tests\((\w+)", lists.read_text()):
            found.append(Program(name, str(lists.parent.relative_to(root))))
    return found


def nearest_first(programs, path):
    """The program of the mutant's own folder is the likeliest to find it."""
    own = "tests/" + os.path.dirname(path)
    return sorted(programs, key=lambda each: each.folder != own)
