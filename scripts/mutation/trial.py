"""Runs the tests against one planted error after the other."""
import collections
import dataclasses
import mmap
import os
import resource
import shutil
import signal
import struct
import subprocess
import tempfile

# As in mutant.h.
ERRORS = 4096
TESTS = 4096
SEEN_BYTES = 4 + ERRORS * TESTS
MOST_MEMORY = 4 << 30
MOST_FILE = 2 << 30
NOBODY = 65534
QUICK_SECONDS = 0.1


def _confine():
    """A program with an error may delete what it shouldn't, send signals to others or eat up the machine: so it runs as a
    user who owns nothing, with limits."""
    os.setsid()
    for limit, value in ((resource.RLIMIT_DATA, MOST_MEMORY), (resource.RLIMIT_FSIZE, MOST_FILE), (resource.RLIMIT_CORE, 0)):
        resource.setrlimit(limit, (value, value))
    if os.getuid() == 0:
        os.setgroups([])
        os.setgid(NOBODY)
        os.setuid(NOBODY)


@dataclasses.dataclass
class Test:
    """One test of a program, and the numbers of the errors that it comes by."""
    program: str
    name: str
    seconds: float
    seen: set


class Programs:
    """The test programs of a build."""

    def __init__(self, build, cases):
        self.build, self.cases, self.tests = build, cases, []

    def _run(self, program, longest, tests="*", **environment):
        """The exit code of a program, None where it took too long."""
        folder = tempfile.mkdtemp(prefix="dtsdb-mutant-")
        os.chmod(folder, 0o777)
        with open(f"{folder}/flags", "w", encoding="utf-8") as flags:
            flags.write(f"--gtest_filter={tests}")
        environment = dict(os.environ, TMPDIR=folder, HOME=folder, GTEST_BRIEF="1",
                           RC_PARAMS=f"seed=1 max_success={self.cases} noshrink=1", **environment)
        process = subprocess.Popen([f"{self.build}/{program}", f"--gtest_flagfile={folder}/flags"], cwd=folder,
                                   env=environment, preexec_fn=_confine, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            return process.wait(longest)
        except subprocess.TimeoutExpired:
            return None
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()
            shutil.rmtree(folder, ignore_errors=True)

    def measure(self, program):
        """Runs a program without an error, and returns how many seconds its tests take, how many errors they come by, and the
        names of those that fail: they can't judge."""
        with tempfile.NamedTemporaryFile() as seen, tempfile.NamedTemporaryFile("r") as notes:
            seen.truncate(SEEN_BYTES)
            for file in (seen, notes):
                os.chmod(file.name, 0o666)
            self._run(program, 900, DTSDB_MUTANTS_SEEN=seen.name, DTSDB_MUTANTS_TESTS=notes.name)
            lines = [line.split() for line in notes]
            with mmap.mmap(seen.fileno(), SEEN_BYTES) as rows:
                tests = [Test(program, name, int(milliseconds) / 1000, self._errors_of(rows, row))
                         for row, (name, milliseconds, _) in enumerate(lines, 1)]
        failed = {name for name, _, passed in lines if passed != "1"}
        self.tests += [test for test in tests if test.name not in failed]
        return sum(test.seconds for test in tests), len(set().union(*(test.seen for test in tests))), sorted(failed)

    @staticmethod
    def _errors_of(rows, row):
        begin = struct.calcsize("i") + row * ERRORS
        return {number for number, seen in enumerate(rows[begin:begin + ERRORS]) if seen}

    def try_one(self, number):
        """The program that finds the error, "" where none does, and None where no test comes by it."""
        batches, of_seconds = collections.defaultdict(list), collections.Counter()
        for test in self.tests:
            if number in test.seen:
                batch = (test.seconds > QUICK_SECONDS, test.program)
                batches[batch].append(test.name)
                of_seconds[batch] += test.seconds
        for batch in sorted(batches, key=lambda batch: (batch[0], of_seconds[batch])):
            if self._run(batch[1], 5 + 8 * of_seconds[batch], ":".join(batches[batch]), DTSDB_MUTANT=str(number),
                         GTEST_FAIL_FAST="1") != 0:
                return batch[1]
        return "" if batches else None
