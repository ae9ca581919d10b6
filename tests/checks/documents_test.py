import documents
from sample import SampleTree

CMAKE = """
project(Discaro VERSION 1.2.0 LANGUAGES CXX)
pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET sqlite3)  # pkg_check_modules(X libcomment)
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets Svg)
"""
TABLE = """
| Library | CMake name | Debian package | Licence | Used for |
|---|---|---|---|---|
| SQLite | `sqlite3` | `libsqlite3-dev` | public domain | the store |
| Qt | `Qt6::Widgets` `Qt6::Svg` | `qt6-base-dev` | LGPL-3 | the windows |
"""
DESKTOP = "[Desktop Entry]\nType=Application\nName=Discaro\nExec=discaro\nIcon=discaro\nTerminal=false\n"
METAINFO = """<component><id>com.quorlen.Discaro</id><launchable>com.quorlen.Discaro.desktop</launchable>
<releases><release version="1.2.0"/></releases></component>"""


def categories(count):
    return "; how to read this file\n\n" + "".join(f"[Kind {i}]\nFirst\nSecond\n\n" for i in range(count))


class Documents(SampleTree):
    def setUp(self):
        super().setUp()
        for name in documents.DOCUMENTS + documents.DATA:
            self.write(name, "text\n")
        for name in documents.COMMANDS + documents.SOURCED:
            self.write(name, "#!/bin/bash\ntrue\n").chmod(0o755)
        self.write("CMakeLists.txt", CMAKE)
        self.write("docs/third-party.md", TABLE)
        self.write("scripts/packages.sh", "#!/bin/bash\nprintf '%s' libsqlite3-dev qt6-base-dev\n")
        self.write("data/kvt.ini", categories(20))
        self.write("data/com.quorlen.Discaro.desktop", DESKTOP)
        self.write("data/com.quorlen.Discaro.metainfo.xml", METAINFO)

    def findings(self):
        return documents.findings(self.root)

    def test_a_tree_that_agrees_passes(self):
        self.assertEqual(self.findings(), [])

    def test_a_missing_document_is_told(self):
        (self.root / "docs/user-guide.md").unlink()
        self.assert_one(self.findings(), "docs/user-guide.md: missing")

    def test_a_command_that_can_not_be_run_is_told(self):
        (self.root / "run").chmod(0o644)
        self.assert_one(self.findings(), "run: not executable")

    def test_a_link_to_nowhere_is_told(self):
        self.write("README.md", "[guide](docs/user-guide.md) and [more](docs/more.md#there)\n")
        self.assert_one(self.findings(), "docs/more.md leads nowhere")

    def test_a_library_that_no_row_names_is_told(self):
        self.write("src/CMakeLists.txt", "pkg_check_modules(SODIUM REQUIRED IMPORTED_TARGET libsodium)\n")
        self.assert_one(self.findings(), "CMake links libsodium")

    def test_a_row_without_a_library_is_told(self):
        row = "| Boost | `Boost` | `qt6-base-dev` | BSL-1.0 | nothing |\n"
        self.write("docs/third-party.md", TABLE + row)
        self.assert_one(self.findings(), "names Boost")

    def test_a_row_without_a_licence_is_told(self):
        self.write("docs/third-party.md", TABLE.replace("public domain", ""))
        self.assert_one(self.findings(), "SQLite lacks its licence")

    def test_a_package_that_nobody_installs_is_told(self):
        self.write("docs/third-party.md", TABLE.replace("qt6-base-dev", "qt7-base-dev"))
        self.assert_one(self.findings(), "qt7-base-dev is in no list")

    def test_a_script_that_shellcheck_refuses_is_told(self):
        self.write("run", "#!/bin/bash\ncd $1\n").chmod(0o755)
        self.assert_one(self.findings(), "SC2086")

    def test_a_header_with_a_blank_behind_it_is_told(self):
        self.write("data/kvt.ini", categories(20) + "[Games] \nBoard\n")
        self.assertIn("data/kvt.ini:83: ends in a blank", "".join(self.findings()))

    def test_a_category_told_twice_is_told(self):
        self.write("data/kvt.ini", categories(20) + "[Kind 3]\nThird\n")
        self.assert_one(self.findings(), "Kind 3 stands here a second time")

    def test_a_line_of_no_category_is_told(self):
        self.write("data/kvt.ini", categories(20) + "Lost\n")
        self.assert_one(self.findings(), "belongs to no category")

    def test_an_empty_category_is_told(self):
        self.write("data/kvt.ini", categories(20) + "[Games]\n\n")
        self.assert_one(self.findings(), "Games has no subcategory")

    def test_a_desktop_entry_that_starts_something_else_is_told(self):
        self.write("data/com.quorlen.Discaro.desktop", DESKTOP.replace("Exec=discaro", "Exec=other"))
        self.assert_one(self.findings(), "Exec is other")

    def test_a_release_of_another_version_is_told(self):
        self.write("data/com.quorlen.Discaro.metainfo.xml", METAINFO.replace("1.2.0", "1.1.0"))
        self.assert_one(self.findings(), "release 1.1.0")
