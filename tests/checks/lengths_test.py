from lengths import FILE_LIMIT, FUNCTION_LIMIT, findings
from sample import SampleTree


def function(name, lines):
    """A function of that many lines, the signature and the braces included."""
    return f"int {name}(int a) {{\n" + "    a += 1;\n" * (lines - 3) + "    return a;\n}\n"


class Lengths(SampleTree):
    def test_short_functions_pass_and_are_counted(self):
        self.write("src/base/A.cpp", "".join(function(f"f{i}", 5) for i in range(9)))
        faults, figures = findings(self.root)
        self.assertEqual(faults, [])
        self.assertIn("9 functions: median 5 lines", figures)

    def test_a_function_at_the_limit_passes(self):
        self.write("src/base/A.cpp", function("longest", FUNCTION_LIMIT) + function("f", 3) + function("g", 3))
        self.assertEqual(findings(self.root)[0], [])

    def test_a_function_above_the_limit_is_told(self):
        self.write("src/base/A.cpp", function("longest", FUNCTION_LIMIT + 1) + function("f", 3) + function("g", 3))
        self.assert_one(findings(self.root)[0], "src/base/A.cpp:1", "longest has 61 lines")

    def test_a_member_function_in_a_header_is_measured(self):
        body = "        m_value += 1;\n" * FUNCTION_LIMIT
        short = "    int get() const { return m_value; }\n" * 1
        members = short + f"    void add() {{\n{body}    }}\n    int m_value = 0;\n"
        self.write("src/base/A.h", f"namespace a {{\nclass A {{\npublic:\n{members}}};\n}}\n")
        self.write("src/base/B.cpp", function("f", 3) + function("g", 3))
        self.assert_one(findings(self.root)[0], "src/base/A.h:5", "add has")

    def test_a_high_median_is_told(self):
        self.write("src/base/A.cpp", "".join(function(f"f{i}", 11) for i in range(5)))
        self.assert_one(findings(self.root)[0], "median")

    def test_a_long_file_is_told(self):
        self.write("src/base/A.cpp", function("f", 3) + "\n" * FILE_LIMIT)
        self.assert_one(findings(self.root)[0], "src/base/A.cpp", "lines, more than 600")

    def test_a_lambda_is_part_of_its_function(self):
        lambdas = "    auto one = [](int b) { return b; };\n" * 2
        self.write("src/base/A.cpp", f"int f(int a) {{\n{lambdas}    return one(a);\n}}\n")
        self.assertIn("1 functions: median 5 lines", findings(self.root)[1])

    def test_no_function_at_all_is_told(self):
        self.write("src/base/A.cpp", "int a;\n")
        self.assert_one(findings(self.root)[0], "no function found")

    def test_other_folders_are_not_measured(self):
        self.write("src/base/A.cpp", function("f", 3))
        self.write("tests/base/A.cpp", function("long_test", 100))
        self.assertEqual(findings(self.root)[0], [])
