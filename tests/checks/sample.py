"""A small source tree in a folder of its own, for the tests of the checks."""

import tempfile
import unittest
from pathlib import Path


class SampleTree(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)

    def write(self, name, text=""):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path

    def assert_one(self, findings, *words):
        """There is exactly one finding, and it says all the words."""
        self.assertEqual(len(findings), 1, findings)
        for word in words:
            self.assertIn(word, findings[0])
