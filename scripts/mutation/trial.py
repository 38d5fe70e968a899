"""Runs the tests against one planted error after the other."""
import dataclasses
import mmap
import os
import pathlib
import pickle
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
BATCH_SECONDS = 2
# Tests that take far longer than the others, and what they look at is looked at by these too.
LONG_TESTS = "-Damage.Every*"


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

    def __init__(self, build, cases, seconds):
        self.build, self.cases, self.seconds, self.tests = build, cases, seconds, []

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
        """Runs a program without an error, once after each build, and returns its tests and the names of those that fail:
        they can't judge."""
        kept = pathlib.Path(f"{self.build}/{program}.tests")
        if kept.exists() and kept.stat().st_mtime > os.stat(f"{self.build}/{program}").st_mtime:
            tests, failed = pickle.loads(kept.read_bytes())
            self.tests += tests
            return tests, failed
        with tempfile.NamedTemporaryFile() as seen, tempfile.NamedTemporaryFile("r") as notes:
            seen.truncate(SEEN_BYTES)
            for file in (seen, notes):
                os.chmod(file.name, 0o666)
            self._run(program, 900, LONG_TESTS, DTSDB_MUTANTS_SEEN=seen.name, DTSDB_MUTANTS_TESTS=notes.name)
            lines = [line.split() for line in notes]
            with mmap.mmap(seen.fileno(), SEEN_BYTES) as rows:
                tests = [Test(program, name, int(milliseconds) / 1000, self._errors_of(rows, row))
                         for row, (name, milliseconds, _) in enumerate(lines, 1)]
        failed = [name for name, _, passed in lines if passed != "1"]
        tests = [test for test in tests if test.name not in failed]
        kept.write_bytes(pickle.dumps((tests, failed)))
        self.tests += tests
        return tests, failed

    @staticmethod
    def _errors_of(rows, row):
        begin = struct.calcsize("i") + row * ERRORS
        return {number for number, seen in enumerate(rows[begin:begin + ERRORS]) if seen}

    def _batches(self, number, folder):
        """The tests that come by an error, in batches for one run of a program each, so that one which hangs delays few:
        those of the folder first, then the quickest."""
        batches, filling = [], {}
        for test in sorted((test for test in self.tests if number in test.seen), key=lambda test: test.seconds):
            batch = filling.get(test.program)
            if batch is None or sum(one.seconds for one in batch) + test.seconds > BATCH_SECONDS:
                batch = filling[test.program] = []
                batches.append(batch)
            batch.append(test)
        timed = [(sum(test.seconds for test in batch), batch) for batch in batches]
        return sorted(timed, key=lambda batch: (f"/{folder}/" not in batch[1][0].program, batch[0]))

    def try_one(self, number, folder):
        """The program that finds the error, "" where none does, and None where no test comes by it."""
        batches = self._batches(number, folder)
        left = self.seconds
        for seconds, batch in batches:
            left -= seconds
            if left < 0:
                break
            names = ":".join(test.name for test in batch)
            if self._run(batch[0].program, 10 + 5 * seconds, names, DTSDB_MUTANT=str(number), GTEST_FAIL_FAST="1") != 0:
                return batch[0].program
        return "" if batches else None
