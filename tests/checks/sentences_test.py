from sample import SampleTree
from sentences import findings


class Sentences(SampleTree):
    def test_whole_sentences_of_a_texts_file_pass(self):
        self.write("src/scanner/Texts.h", 'inline constexpr const char* kGone =\n    "The disc has gone. It was %1.";\n')
        self.write("src/scanner/A.cpp", 'void a() { say(kGone, kTitle); text = one + ", " + two; }\n')
        self.assertEqual(findings(self.root), [])

    def test_a_literal_in_a_message_box_is_told(self):
        self.write("src/scanner/A.cpp", 'void a() {\n    kit::MsgBox(QString("Gone (%1)").arg(b), Ok, kTitle);\n}\n')
        self.assert_one(findings(self.root), "src/scanner/A.cpp:2", "Gone (%1)")

    def test_a_literal_title_is_told(self):
        self.write("src/scanner/A.cpp", 'void a() {\n    say(text(")"), kit::Icon::None,\n        "Error");\n}\n')
        self.assert_one(findings(self.root), "src/scanner/A.cpp:3", "Error")

    def test_what_is_no_text_may_go_into_a_message_box(self):
        self.write("src/scanner/A.cpp", 'void a() { say(lines.join("\\n\\n"), kTitle); b("Error"); }\n')
        self.assertEqual(findings(self.root), [])

    def test_a_literal_that_goes_on_in_another_is_told(self):
        self.write("src/scanner/Texts.cpp", 'const char* a =\n    "The disc "\n    // and on\n    "has gone.";\n')
        self.assert_one(findings(self.root), "src/scanner/Texts.cpp:2", "goes on")

    def test_a_sentence_cut_by_a_value_is_told(self):
        for name, code in {"ATexts.cpp": '"The disc " + b', "BTexts.h": 'b + " has gone"'}.items():
            with self.subTest(name):
                path = self.write(f"src/explorer/{name}", f"auto a = {code};\n")
                self.assert_one(findings(self.root), f"src/explorer/{name}:1", '"+"')
                path.unlink()

    def test_a_sentence_outside_a_texts_file_is_told(self):
        sentences = "The disc has gone.", "* Is it really gone?", "It (D:) has \\\"gone\\\"!", "Gone. (The disc has it.)"
        for sentence in sentences:
            with self.subTest(sentence):
                self.write("src/kit/form/A.cpp", f'const char* const a = "{sentence}";\n')
                self.assert_one(findings(self.root), "src/kit/form/A.cpp:1", "Texts file")

    def test_a_sentence_of_several_literals_is_told(self):
        self.write("src/kit/A.cpp", 'auto a = text("The disc "\n    "has gone "\n    "away.");\n')
        self.assert_one(findings(self.root), "src/kit/A.cpp:3", '"The disc has gone away."')

    def test_a_raw_literal_is_read_too(self):
        self.write("src/kit/A.cpp", 'auto a = R"x(The disc has gone.)x";\n')
        self.assert_one(findings(self.root), "src/kit/A.cpp:1", '"The disc has gone."')

    def test_captions_queries_and_comments_are_no_sentences(self):
        self.write(
            "src/kit/A.cpp",
            '// "The disc has gone away."\n/* "It has gone away." */\n'
            'auto a = "Loading ..."; auto b = "select * from Drive where a = 1."; auto c = "Scan a new CD-ROM";\n'
            "const int d = 100'000; const char e = '\"'; auto f = \"two lines\"\n    \"of a query\";\n",
        )
        self.assertEqual(findings(self.root), [])

    def test_a_long_literal_of_many_words_is_read_at_once(self):
        self.write("src/kit/A.cpp", 'auto a = "Button { ' + "some words and blanks, " * 2000 + '}";\n')
        self.assertEqual(findings(self.root), [])

    def test_tests_may_say_what_they_look_for(self):
        self.write("tests/kit/A.cpp", 'auto a = "The disc has gone away.";\n')
        self.assertEqual(findings(self.root), [])
