from formatting import FILES_A_CALL, findings
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

    def test_each_of_many_files_is_told_once(self):
        names = [f"src/base/A{number}.cpp" for number in range(FILES_A_CALL + 2)]
        for name in names:
            self.write(name, "int a() {\n  return   1;\n}\n")
        self.assertCountEqual([finding.split(":")[0] for finding in findings(self.root)], names)

    def test_a_style_that_cannot_be_read_is_told(self):
        self.write(".clang-format", "BasedOnStyle: None of them\n")
        self.write("src/base/A.cpp", "int a() { return 1; }\n")
        self.assert_one(findings(self.root), ".clang-format", "None of them")

    def test_a_comment_that_runs_on_is_told(self):
        self.write(".clang-format", "BasedOnStyle: LLVM\nReflowComments: false\n")
        self.write("src/base/A.cpp", f"// {'word ' * 30}end\nint a() {{ return 1; }}\n")
        self.assert_one(findings(self.root), "src/base/A.cpp:1", "columns")
