from formatting import findings
from sample import SampleTree


class Formatting(SampleTree):
    def setUp(self):
        super().setUp()
        self.write(".clang-format", "BasedOnStyle: LLVM\nIndentWidth: 4\n")

    def test_a_formatted_file_passes(self):
        self.write("src/base/A.cpp", "int a() { return 1; }\n")
        self.assertEqual(findings(self.root), [])

    def test_other_files_are_told_wherever_they_stand(self):
        for folder in ("src/base", "tests/base", "bench"):
            self.write(f"{folder}/A.cpp", "int a() {\n  return   1;\n}\n")
        self.assertEqual(len(findings(self.root)), 3)
        self.assertIn("src/base/A.cpp", "".join(findings(self.root)))
