#!/usr/bin/env python3
"""scripts/check_links.py reports links that lead nowhere and pages that load something from elsewhere."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(__file__).resolve().parents[2] / "scripts/check_links.py"


class CheckLinks(unittest.TestCase):
    def report(self, **pages):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in pages.items():
                pathlib.Path(folder, f"{name}.html").write_text(text)
            result = subprocess.run([sys.executable, PROGRAM, folder], capture_output=True, text=True)
        return result.returncode, result.stdout

    def test_links_that_lead_somewhere_are_good(self):
        code, text = self.report(a='<a href="b.html#here">b</a> <a href="https://debian.org">out</a>', b='<p id="here">')
        self.assertEqual((code, text), (0, "2 pages, 0 dead links\n"))

    def test_missing_file_is_reported(self):
        code, text = self.report(a='<a href="gone.html">gone</a>')
        self.assertEqual(code, 1)
        self.assertIn("a.html: gone.html leads to no file", text)

    def test_missing_place_is_reported(self):
        code, text = self.report(a='<a href="b.html#gone">b</a>', b='<p id="here">')
        self.assertEqual(code, 1)
        self.assertIn("a.html: b.html#gone leads to no place in its page", text)

    def test_script_from_elsewhere_is_reported(self):
        code, text = self.report(a='<script src="https://example.org/x.js"></script>')
        self.assertEqual(code, 1)
        self.assertIn("is loaded from elsewhere", text)

    def test_folder_without_pages_is_no_success(self):
        self.assertEqual(self.report()[0], 1)


if __name__ == "__main__":
    unittest.main()
