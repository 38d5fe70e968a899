#!/usr/bin/env python3
"""scripts/newcomer_paths.py takes the paths of a newcomer from the documents. The paths of the command and of Python lead
where they should with a build: newcomer_paths_test.py BUILD, the others are walked by scripts/newcomer."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))
sys.dont_write_bytecode = True
import newcomer_paths  # noqa: E402

BUILD = None
DOCUMENTS = [ROOT / document for document in newcomer_paths.DOCUMENTS]
TEXT = """
<!-- path try: install -->

    apt-get install this
<!-- path try: file a.txt -->
```text
    indented
```
<!-- path try: run -->

    first

    second
And on.
<!-- path try: prints -->

    begin [...] end
    [...]
    last
"""


class NewcomerPaths(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def document(self, text):
        path = self.folder / "page.md"
        path.write_text(text, encoding="utf-8")
        return [path]

    def test_blocks_become_scripts(self):
        scripts = newcomer_paths.scripts(self.document(TEXT))
        self.assertEqual(scripts["try"]["install"], ["apt-get install this"])
        written = ["cat >a.txt <<'END_OF_BLOCK'", "    indented", "END_OF_BLOCK"]
        self.assertEqual(scripts["try"]["run"], [*written, "first", "", "second"])

    def test_lines_that_are_not_printed_are_reported(self):
        missing = lambda output: newcomer_paths.missing_lines(self.document(TEXT), "try", output)
        self.assertEqual(missing("begin 1 end\n  last\n"), [])
        self.assertEqual(missing("begin 1 end\nlast one\n"), ["last"])
        self.assertEqual(missing("last"), ["begin [...] end"])

    def test_path_without_shown_output_is_no_success(self):
        self.assertTrue(newcomer_paths.missing_lines(self.document(TEXT), "other", ""))

    def test_marks_that_are_none_are_reported(self):
        for mark in ["path a: walk", "path a: file", "path a: run b"]:
            with self.assertRaises(ValueError, msg=mark):
                newcomer_paths.scripts(self.document(f"<!-- {mark} -->\n\n    text\n"))
        with self.assertRaises(ValueError):
            newcomer_paths.scripts(self.document("<!-- path a: run -->\nno code\n"))

    def test_documents_have_the_paths(self):
        scripts = newcomer_paths.scripts(DOCUMENTS)
        self.assertEqual(sorted(scripts), ["command", "cpp", "integrator", "python"])
        for name, of_path in scripts.items():
            self.assertTrue(of_path["install"] and of_path["run"], name)

    def test_paths_lead_where_the_documents_show(self):
        environment = dict(os.environ, PATH=f"{BUILD}/command:/usr/bin:/bin", PYTHONPATH=f"{BUILD}/python", LC_ALL="C.UTF-8")
        for name in ["command", "python"]:
            script = "\n".join(["set -eu", *newcomer_paths.scripts(DOCUMENTS)[name]["run"]])
            folder = self.folder / name
            folder.mkdir()
            result = subprocess.run(["sh", "-c", script.replace("/usr/share/doc/dtsdb", str(ROOT))], cwd=folder,
                                    env=environment, capture_output=True, text=True)
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertEqual(newcomer_paths.missing_lines(DOCUMENTS, name, result.stdout), [], result.stdout)


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main()
