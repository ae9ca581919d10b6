import subprocess
from pathlib import Path
from unittest import mock

from sample import SampleTree
from wording import findings

# Put together here, so that this file does not say them.
TEXT = "sp" + "ec"
NUMBERED = "Pa" + "rt 2.1"
ENTRY = "iss" + "ue #12"
NOTES = "notes" + ".md"
FOLDER = "src" + "/workshop"


class Wording(SampleTree):
    def git(self, *arguments):
        identity = ["-c", "user.name=Tester", "-c", "user.email=tester@example.org"]
        subprocess.run(["git", *identity, "-C", str(self.root), *arguments], check=True, capture_output=True)

    def commit(self, message):
        self.git("init", "-q")
        self.write("file.txt", "text\n")
        self.git("add", ".")
        self.git("commit", "-q", "-m", message)

    def test_the_systems_own_terms_pass(self):
        self.write("src/disc/Lister.h", "// A directory's place in the sorted listing: part of its number.\n")
        self.write("docs/guide.md", f"The database workshop is in {FOLDER}; part 2 of the guide tells of it.\n")
        self.assertEqual(findings(self.root), [])

    def test_a_reference_to_a_text_elsewhere_is_found(self):
        self.write("src/a.cpp", f"// As the {TEXT} says.\n")
        self.assert_one(findings(self.root), "src/a.cpp:1", "refers to a text")

    def test_a_document_that_is_not_there_is_found(self):
        self.write("docs/guide.md", f"See {NOTES}.\n")
        self.assert_one(findings(self.root), "docs/guide.md:1", "refers to a text")
        self.write(f"docs/{NOTES}", "text\n")
        self.assertEqual(findings(self.root), [])

    def test_a_reference_by_a_number_is_found(self):
        self.write("src/a.cpp", f"int a;\n// {NUMBERED}\n")
        self.assert_one(findings(self.root), "src/a.cpp:2")

    def test_a_reference_to_a_numbered_entry_is_found(self):
        self.write(f"docs/{NOTES}", f"See {ENTRY}.\n")
        self.assert_one(findings(self.root), f"docs/{NOTES}:1")

    def test_a_reference_in_a_file_name_is_found(self):
        self.write(f"docs/{TEXT}.md", "text\n")
        self.assert_one(findings(self.root), "the name refers")

    def test_a_place_on_one_computer_is_found(self):
        self.write("CMakeLists.txt", f"include({self.root.resolve()}/x.cmake)\n")
        self.assert_one(findings(self.root), "names a place on one computer")

    def test_the_users_home_is_such_a_place_but_not_the_root_of_all_or_a_name_of_the_tree(self):
        self.write("app/run", "cd /keeper/discaro && ls / /app /etc/discaro\n")
        for home, found in (("/keeper", 1), ("/", 0), ("/app", 0)):
            with mock.patch.object(Path, "home", return_value=Path(home)):
                self.assertEqual(len(findings(self.root)), found, home)

    def test_a_folder_inside_another_is_no_such_place(self):
        self.write("src/mounts.cpp", f"// /dev{self.root.resolve()} and ${{DIR}}{self.root.resolve()}\n")
        self.assertEqual(findings(self.root), [])

    def test_build_products_are_not_read(self):
        self.write("build/notes.txt", f"the {TEXT}\n")
        self.assertEqual(findings(self.root), [])

    def test_files_that_are_not_text_are_not_read(self):
        self.write("data/picture.png", f"\0the {TEXT}\n")
        self.assertEqual(findings(self.root), [])

    def test_a_new_file_that_git_does_not_know_is_read(self):
        self.commit("First files")
        self.write("new.txt", f"the {TEXT}\n")
        self.assert_one(findings(self.root), "new.txt:1")

    def test_a_reference_in_a_commit_message_is_found(self):
        self.commit(f"Scan: do as {NUMBERED} says")
        self.assert_one(findings(self.root), "commit")

    def test_a_plain_commit_message_passes(self):
        self.commit("Scan: one transaction for a whole disc")
        self.assertEqual(findings(self.root), [])
