"""The register of kept behaviour: code, tests and docs/kept-behaviour.md have the same numbers.

In the code a comment "Kept: K07." marks the place. In a C++ test file "// Kept: K07." stands above the test, in a
scenario file "# Kept: K07." stands below the head of the scenario. The page has a heading and its tests for each.
"""

import pathlib
import re
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = "docs/kept-behaviour.md"

MARK = re.compile(r"\bKept: (K\d+)\b")
MARK_WITHOUT_NUMBER = re.compile(r"\b[Kk]ept:(?! K\d)")
TEST_HEAD = re.compile(r"(?:TEST|TEST_F|TEST_P|RC_GTEST_PROP|RC_GTEST_FIXTURE_PROP)\((\w+), (\w+)")
SCENARIO_HEAD = re.compile(r"scenario (.+)")
PAGE_HEAD = re.compile(r"### (K\d+) \S")
PAGE_TEST = re.compile(r"- Test: `([^`]+)`, `([^`]+)`$")


def lines_of(path):
    return path.read_text(encoding="utf-8").splitlines()


def code_marks(root, faults):
    """The numbers in the sources of all folders but docs and tests."""
    numbers = set()
    for folder in sorted(root.iterdir()):
        if not folder.is_dir() or folder.name.startswith(".") or folder.name in ("build", "docs", "tests"):
            continue
        for path in sorted(folder.rglob("*")):
            if path.suffix not in (".h", ".cpp", ".inc", ".j2", ".json"):
                continue
            text = path.read_text(encoding="utf-8")
            numbers.update(MARK.findall(text))
            if MARK_WITHOUT_NUMBER.search(text):
                faults.append(f"{path.relative_to(root)}: a comment \"Kept:\" has no number, see {PAGE}")
    return numbers


def marks_above_tests(file, lines, faults):
    """(number, file, test) for the marks of a C++ test file, each in the comment above its test."""
    waiting = []
    for line in lines:
        head = TEST_HEAD.match(line)
        if head:
            yield from ((number, file, f"{head[1]}.{head[2]}") for number in waiting)
            waiting = []
        elif line.startswith("//"):
            waiting += MARK.findall(line)
        else:
            faults.extend(f"{file}: the mark {number} stands above no test" for number in waiting)
            waiting = MARK.findall(line)


def marks_below_scenarios(file, lines, faults):
    """(number, file, scenario) for the marks of a scenario file."""
    scenario = None
    for line in lines:
        head = SCENARIO_HEAD.match(line)
        scenario = head[1] if head else scenario
        for number in MARK.findall(line):
            if scenario is None:
                faults.append(f"{file}: the mark {number} stands in front of the first scenario")
            else:
                yield number, file, scenario


def test_marks(root, faults):
    marks = set()
    for path in sorted((root / "tests").rglob("*")):
        file = str(path.relative_to(root))
        if path.suffix in (".h", ".cpp"):
            marks.update(marks_above_tests(file, lines_of(path), faults))
        elif path.suffix == ".txt" and path.parent.name == "scenarios":
            marks.update(marks_below_scenarios(file, lines_of(path), faults))
    return marks


def page_entries(root, faults):
    """The numbers of the page, and (number, file, test) for each test that it names."""
    numbers = []
    tests = set()
    for line in lines_of(root / PAGE):
        head = PAGE_HEAD.match(line)
        test = PAGE_TEST.match(line)
        if head:
            numbers.append(head[1])
        elif line.startswith("- Test:") and not (test and numbers):
            faults.append(f"{PAGE}: not of the form \"- Test: `FILE`, `NAME`\": {line}")
        elif test:
            tests.add((numbers[-1], test[1], test[2]))
    faults += [f"{PAGE}: the number {number} is given twice"
               for number in sorted(set(numbers)) if numbers.count(number) > 1]
    return set(numbers), tests


def faults_of(root):
    faults = []
    in_code = code_marks(root, faults)
    in_tests = test_marks(root, faults)
    on_page, tests_on_page = page_entries(root, faults)
    faults += [f"{number}: in the code, but not in {PAGE}" for number in sorted(in_code - on_page)]
    faults += [f"{number}: in {PAGE}, but not in the code" for number in sorted(on_page - in_code)]
    faults += [f"{number}: no test in {PAGE}" for number in sorted(on_page - {test[0] for test in tests_on_page})]
    faults += [f"{number}: {PAGE} names {test} in {file}, where no such test bears the number"
               for number, file, test in sorted(tests_on_page - in_tests)]
    faults += [f"{number}: {PAGE} doesn't name {test} in {file}, which bears the number"
               for number, file, test in sorted(in_tests - tests_on_page)]
    return faults


class Register(unittest.TestCase):
    def test_code_tests_and_page_agree(self):
        faults = faults_of(ROOT)
        self.assertEqual(faults, [], "\n" + "\n".join(faults))


class Faults(unittest.TestCase):
    """What is found in a small tree, which is sound at first."""

    CODE = "model/a.cpp"
    TEST = "tests/model/a_test.cpp"
    SCENARIO = "tests/scenarios/a.txt"

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.write(self.CODE, "int a = 1;  // odd. Kept: K01.\n/// Odd too. Kept: K02.\nint b = 2;\n")
        self.write(self.TEST, "// Odd.\n// Kept: K01.\nTEST(A, IsOdd) {\n}\n\nTEST(A, IsEven) {\n}\n")
        self.write(self.SCENARIO, "scenario Odd one\n# Kept: K02.\nrun full\n\nscenario Even one\n")
        self.write(PAGE, f"### K01 A\n\n- Test: `{self.TEST}`, `A.IsOdd`\n\n"
                         f"### K02 B\n\n- Test: `{self.SCENARIO}`, `Odd one`\n")

    def write(self, file, text):
        path = self.root / file
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def change(self, file, old, new):
        text = (self.root / file).read_text(encoding="utf-8")
        self.assertIn(old, text)
        self.write(file, text.replace(old, new))

    def expect(self, *faults):
        self.assertEqual(faults_of(self.root), list(faults))

    def test_sound_tree_has_none(self):
        self.expect()

    def test_place_that_the_page_does_not_have(self):
        self.change(self.CODE, "int b", "// Kept: K03.\nint b")
        self.expect(f"K03: in the code, but not in {PAGE}")

    def test_entry_without_a_place(self):
        self.change(self.CODE, "Kept: K02.", "")
        self.expect(f"K02: in {PAGE}, but not in the code")

    def test_place_without_a_number(self):
        self.change(self.CODE, "Odd too.", "Kept: odd too.")
        self.expect(f"{self.CODE}: a comment \"Kept:\" has no number, see {PAGE}")

    def test_entry_without_a_test(self):
        self.change(PAGE, f"- Test: `{self.TEST}`, `A.IsOdd`", "")
        self.expect(f"K01: no test in {PAGE}",
                    f"K01: {PAGE} doesn't name A.IsOdd in {self.TEST}, which bears the number")

    def test_test_that_is_renamed(self):
        self.change(self.TEST, "IsOdd", "IsStrange")
        self.expect(f"K01: {PAGE} names A.IsOdd in {self.TEST}, where no such test bears the number",
                    f"K01: {PAGE} doesn't name A.IsStrange in {self.TEST}, which bears the number")

    def test_scenario_without_its_number(self):
        self.change(self.SCENARIO, "# Kept: K02.\n", "")
        self.expect(f"K02: {PAGE} names Odd one in {self.SCENARIO}, where no such test bears the number")

    def test_number_away_from_a_test(self):
        self.change(self.TEST, "// Kept: K01.\n", "// Kept: K01.\n\n")
        self.expect(f"{self.TEST}: the mark K01 stands above no test",
                    f"K01: {PAGE} names A.IsOdd in {self.TEST}, where no such test bears the number")

    def test_number_given_twice(self):
        self.change(PAGE, "### K02", f"### K01 C\n\n- Test: `{self.TEST}`, `A.IsOdd`\n\n### K02")
        self.expect(f"{PAGE}: the number K01 is given twice")


if __name__ == "__main__":
    unittest.main()
