#!/usr/bin/env python3
"""docs/site/shared_comments.py: declarations below one comment share it, and lines keep their numbers."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(__file__).resolve().parents[2] / "docs/site/shared_comments.py"


class SharedComments(unittest.TestCase):
    def copied(self, text):
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "a.h").write_text(text)
            subprocess.run([sys.executable, PROGRAM, "copy", "a.h"], cwd=folder, check=True)
            return pathlib.Path(folder, "copy/a.h").read_text()

    def test_run_below_a_comment_is_a_group(self):
        text = self.copied("/// Two.\nint a();\nint b() {\n  return 1;\n}\n\nint c();\n")
        self.assertEqual(text, "/**@{*/ /// Two.\nint a();\nint b() {\n  return 1;\n} /**@}*/\n\nint c();\n")

    def test_single_declaration_stays(self):
        text = "/// One.\nint a(int x,\n      int y);\n\nint c();\n"
        self.assertEqual(self.copied(text), text)

    def test_class_is_no_run(self):
        text = "/// A class.\nclass A {\n  int a;\n};\nint b();\n"
        self.assertEqual(self.copied(text), text)

    def test_members_with_comments_of_their_own_stay(self):
        text = "/// About.\nint a;  ///< one\nint b;\n"
        self.assertEqual(self.copied(text), text)

    def test_name_of_a_group_is_its_members_comment(self):
        self.assertIn("/** Bits */ int a;", self.copied("/// \\name Bits\n///@{\nint a;\nint b;\n///@}\n"))


if __name__ == "__main__":
    unittest.main()
