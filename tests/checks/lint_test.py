import subprocess

import lint
from sample import SampleTree

CHECKS = "Checks: '-*,modernize-use-nullptr'\nWarningsAsErrors: '*'\nHeaderFilterRegex: '/src/'\n"


class Lint(SampleTree):
    def setUp(self):
        super().setUp()
        self.write(".clang-tidy", CHECKS)
        self.write("src/base/A.h", "inline int* a() { return nullptr; }\n")
        self.write("src/base/A.cpp", '#include "base/A.h"\n')
        self.write("src/base/B.cpp", "int b() { return 1; }\n")
        self.write("src/db/inner/C.cpp", '#include "base/A.h"\n')
        self.write("tests/base/T.cpp", '#include "base/A.h"\n')
        self.git("init", "-q")
        self.commit()

    def git(self, *arguments):
        names = ["-c", "user.name=A", "-c", "user.email=a@b", "-c", "commit.gpgsign=false"]
        subprocess.run(["git", *names, *arguments], cwd=self.root, check=True)

    def commit(self):
        self.git("add", "-A")
        self.git("commit", "-qm", "A step")

    def names(self, revision=None):
        return [str(path) for path in lint.chosen(self.root, revision)]

    def lint(self):
        """What is found in all files, compiled as plainly as can be."""
        self.write("build/compile_flags.txt", f"-I{self.root}/src\n")
        return lint.findings(self.root, self.root / "build", lint.chosen(self.root, None))

    def test_without_a_revision_come_all_sources_of_the_program_and_no_others(self):
        self.assertEqual(self.names(), ["src/base/A.cpp", "src/base/B.cpp", "src/db/inner/C.cpp"])

    def test_with_a_revision_come_the_sources_that_changed_since(self):
        self.write("src/base/B.cpp", "int b() { return 2; }\n")
        self.commit()
        self.assertEqual(self.names("HEAD^"), ["src/base/B.cpp"])
        self.assertEqual(self.names("HEAD"), [])

    def test_changes_that_are_not_committed_yet_count(self):
        self.write("src/base/B.cpp", "int b() { return 2; }\n")
        self.write("src/base/D.cpp", "int d() { return 2; }\n")
        self.assertEqual(self.names("HEAD"), ["src/base/B.cpp", "src/base/D.cpp"])

    def test_a_changed_header_brings_the_sources_that_include_it(self):
        self.write("src/base/A.h", "inline int* a() { return 0; }\n")
        self.assertEqual(self.names("HEAD"), ["src/base/A.cpp", "src/db/inner/C.cpp"])

    def test_another_choice_of_checks_brings_all(self):
        self.write(".clang-tidy", CHECKS + "# changed\n")
        self.assertEqual(len(self.names("HEAD")), 3)

    def test_a_deleted_source_is_passed_over(self):
        (self.root / "src/base/B.cpp").unlink()
        self.commit()
        self.assertEqual(self.names("HEAD^"), [])

    def test_a_revision_that_git_does_not_know_is_told(self):
        with self.assertRaisesRegex(SystemExit, "no revision elsewhere"):
            self.names("elsewhere")

    def test_clean_sources_pass(self):
        self.assertEqual(self.lint(), [])

    def test_a_finding_in_a_header_is_told_once_by_its_place(self):
        self.write("src/base/A.h", "inline int* a() { return 0; }\n")
        self.assert_one(self.lint(), "src/base/A.h:1:", "use nullptr", "modernize-use-nullptr")

    def test_a_source_that_does_not_compile_is_told(self):
        self.write("src/base/B.cpp", "int b() { return c; }\n")
        self.assert_one(self.lint(), "src/base/B.cpp:1:", "undeclared identifier")
