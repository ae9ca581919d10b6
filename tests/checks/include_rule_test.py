from include_rule import findings
from sample import SampleTree

EXPLORER = """
discaro_library(explorer_core SOURCES Listing.cpp Listing.h LINKS discaro_base discaro_db discaro_app_core)
discaro_room(explorer discaro_explorer_core discaro_kit Qt6::Widgets)
"""


class IncludeRule(SampleTree):
    def setUp(self):
        super().setUp()
        self.write("src/db/CMakeLists.txt", "discaro_room(db discaro_base PkgConfig::SQLITE)")
        self.write("src/explorer/CMakeLists.txt", EXPLORER)

    def include(self, name, *headers):
        self.write(name, "".join(f"#include {header}\n" for header in headers))

    def test_what_the_rooms_allow_passes(self):
        self.include("src/db/Database.cpp", '"db/Database.h"', '"base/Text.h"', "<sqlite3.h>", "<string>")
        self.include("src/explorer/Listing.cpp", '"explorer/Listing.h"', '"db/Database.h"', '"catalogue/Names.h"')
        self.include("src/explorer/EXMain.cpp", "<QWidget>", '"kit/Form.h"', '"explorer/Listing.h"', '"app/Windows.h"')
        self.include("src/program/main.cpp", '"program/Wiring.h"', '"kit/MsgBox.h"', "<QApplication>")
        self.include("src/program/Wiring.cpp", '"explorer/EXMain.h"', '"search/Search.h"')
        self.assertEqual(findings(self.root), [])

    def test_a_lower_room_does_not_look_up(self):
        self.include("src/db/Database.cpp", '"app/Module1.h"')
        self.assert_one(findings(self.root), "src/db/Database.cpp", "db does not use app")

    def test_neighbouring_lower_rooms_stay_apart(self):
        self.include("src/disc/Lister.cpp", '"db/Value.h"')
        self.assert_one(findings(self.root), "disc does not use db")

    def test_an_inner_room_uses_those_of_its_row_alone(self):
        self.include("src/disc/iso/IsoMedium.cpp", '"disc/iso/IsoMedium.h"', '"disc/medium/Medium.h"')
        self.assertEqual(findings(self.root), [])
        self.include("src/disc/medium/Bytes.h", '"disc/iso/IsoMedium.h"')
        self.assert_one(findings(self.root), "src/disc/medium/Bytes.h", "medium does not use iso")

    def test_a_folder_that_the_table_does_not_know_is_no_inner_room(self):
        self.include("src/disc/tape/Reel.h", "<string>")
        self.assert_one(findings(self.root), "no inner room")

    def test_subsystems_do_not_include_each_other(self):
        self.include("src/explorer/EXMain.cpp", '"search/Search.h"')
        self.assert_one(findings(self.root), "subsystems do not include each other")

    def test_windows_of_one_room_do_not_include_each_other(self):
        self.include("src/explorer/EXMain.cpp", '"explorer/EXFile.h"', '"explorer/EXMain.h"')
        self.assert_one(findings(self.root), "EXFile.h", "app/Windows.h")

    def test_one_file_of_the_program_includes_windows(self):
        self.include("src/program/main.cpp", '"explorer/EXMain.h"')
        self.assert_one(findings(self.root), "only Wiring.cpp includes windows")

    def test_a_windowless_part_has_no_qt(self):
        self.include("src/explorer/Listing.h", "<QString>")
        self.assert_one(findings(self.root), "<QString>", "without windows")

    def test_a_windowless_part_includes_neither_windows_nor_kit(self):
        self.include("src/explorer/Listing.cpp", '"explorer/EXMain.h"', '"kit/Form.h"')
        self.assertEqual(len(findings(self.root)), 2)

    def test_no_qt_below_kit(self):
        self.include("src/base/Text.cpp", "<QtCore/QString>")
        self.assert_one(findings(self.root), "Qt", "not for the room base")

    def test_a_library_stays_in_its_room(self):
        self.include("src/disc/Lister.cpp", "<utf8proc.h>")
        self.assert_one(findings(self.root), "utf8proc", "not for the room disc")

    def test_a_library_stays_out_of_headers(self):
        self.include("src/db/Database.h", "<sqlite3.h>")
        self.assert_one(findings(self.root), "SQLite stays in .cpp files")

    def test_an_unknown_library_is_told(self):
        self.include("src/base/Text.cpp", "<boost/any.hpp>")
        self.assert_one(findings(self.root), "belongs to no library")

    def test_an_include_without_its_room_is_told(self):
        self.include("src/db/Database.cpp", '"Database.h"')
        self.assert_one(findings(self.root), "room/File.h")

    def test_a_folder_outside_the_table_is_told(self):
        self.include("src/helpers/Any.cpp", "<string>")
        self.assert_one(findings(self.root), "no room of the table")

    def test_a_target_that_links_too_much_is_told(self):
        self.write("src/db/CMakeLists.txt", "discaro_room(db discaro_base discaro_disc Qt6::Widgets)")
        self.assertEqual(len(findings(self.root)), 2)

    def test_a_window_may_link_the_core_of_its_room(self):
        core = "discaro_library(catalogue_core SOURCES Deletion.cpp LINKS discaro_db)\n"
        window = "discaro_library(catalogue SOURCES DeleteCD.cpp LINKS discaro_kit discaro_catalogue_core)\n"
        self.write("src/catalogue/CMakeLists.txt", core + window)
        self.assertEqual(findings(self.root), [])

    def test_a_target_is_named_after_its_room(self):
        self.write("src/catalogue/CMakeLists.txt", "discaro_library(delete_cd SOURCES DeleteCD.cpp LINKS discaro_db)")
        self.assert_one(findings(self.root), "delete_cd is named neither")

    def test_what_a_room_keeps_to_itself_is_told(self):
        self.include("src/explorer/Listing.h", '"db/value/Value.h"', '"db/rows/RowSource.h"')
        self.assert_one(findings(self.root), "db keeps it to itself")

    def test_an_include_in_a_comment_is_none(self):
        self.write("src/db/Database.cpp", '// #include "app/Module1.h"\n')
        self.assertEqual(findings(self.root), [])

    def test_two_units_do_not_include_each_other(self):
        self.include("src/db/Store.h", '"db/Table.h"')
        self.include("src/db/Table.cpp", '"db/Table.h"', '"db/Store.h"')
        self.include("src/db/Database.cpp", '"db/Store.h"')
        self.include("src/db/Value.h", "<string>")
        self.include("src/db/Table.h", '"db/Value.h"')
        self.assert_one(findings(self.root), "db/Store, db/Table include each other")

    def test_a_circle_over_several_units_is_told(self):
        self.include("src/disc/Lister.h", '"disc/Medium.h"')
        self.include("src/disc/Medium.h", '"disc/Image.h"')
        self.include("src/disc/Image.h", "<string>")
        self.include("src/disc/Image.cpp", '"disc/Lister.h"')
        self.assert_one(findings(self.root), "disc/Image, disc/Lister, disc/Medium include each other")

    def test_units_above_one_another_are_no_circle(self):
        self.include("src/disc/Lister.cpp", '"disc/Lister.h"', '"disc/Medium.h"', '"disc/Image.h"')
        self.include("src/disc/Medium.h", '"disc/Image.h"')
        self.include("src/disc/Image.h", "<string>")
        self.assertEqual(findings(self.root), [])
