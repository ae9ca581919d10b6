#include "app/Loading.h"
#include "app/Module1.h"
#include "app/Switch.h"
#include "app/Windows.h"
#include "catalogue/DeleteCD.h"
#include "catalogue/Names.h"
#include "support/CountedSleeps.h"
#include "support/RawDatabase.h"
#include "support/catalogue/ScratchCatalogue.h"
#include "support/windows/Endings.h"
#include "support/windows/FormProbe.h"
#include "support/windows/FreshWindows.h"
#include "support/windows/GoldenForm.h"
#include "support/windows/ScriptedMsgBox.h"

#include <QtGui/QMouseEvent>

#include <gtest/gtest.h>

#include <filesystem>

using namespace discaro;
using namespace discaro::test;
using kit::Answer;
using kit::Buttons;
using kit::Icon;

namespace {

constexpr auto kDone = "Deletion was successful. It is advised that you compact your database from "
                       "the Database Workshop after deleting "
                       "any entries. This way your Database will take up less disk space and in "
                       "some cases may run faster.";

// Stands for the explorer and others: only that it is there or shown matters here.
class EmptyWindow : public kit::Form {
public:
    explicit EmptyWindow(const char* name)
        : Form({.name = name, .caption = "", .size = {100, 100}}) {}
};

// The window over a catalogue with as many discs as a test adds, each with one directory, one file and one tag.
class DeleteWindow : public testing::Test {
protected:
    DeleteWindow() {
        app::Module1::ReturnTo = "switch";
        app::Windows::Register("DeleteCD", [] { return new catalogue::DeleteCD; });
        app::Windows::Register("Switch", [] { return new app::Switch; });
        app::Windows::Register("Loading", [] { return new app::Loading; });
        for (const char* name : {"EXMain", "Scanform", "Search", "Programs"})
            app::Windows::Register(name, [name] { return new EmptyWindow(name); });
    }

    enum class Tag { One, None };

    void addDisc(int64_t number, const char* name, Tag tag = Tag::One) {
        const auto catalogue = m_catalogue.database();
        const std::string root = "C" + std::to_string(number) + "D1";
        auto discs = catalogue->OpenRecordset("drive");
        discs->AddNew();
        (*discs)(catalogue::drive::kIdNumber) = number;
        (*discs)(catalogue::drive::kPreferedName) = name;
        (*discs)(catalogue::drive::kTotalSize) = 650.25;
        (*discs)(catalogue::drive::kFreeSize) = 0;
        discs->Update();
        auto directories = catalogue->OpenRecordset("directories");
        directories->AddNew();
        (*directories)(catalogue::directories::kDriveIdNumber) = number;
        (*directories)(catalogue::directories::kIdNumber) = root;
        directories->Update();
        auto files = catalogue->OpenRecordset("files");
        files->AddNew();
        (*files)(catalogue::files::kDirectoryNumber) = root;
        (*files)(catalogue::files::kFileSize) = 2.5;
        files->Update();
        if (tag == Tag::None)
            return;
        auto tags = catalogue->OpenRecordset("[prog tag]");
        tags->AddNew();
        (*tags)(catalogue::progTag::kCDNumber) = number;
        tags->Update();
    }

    void open() {
        app::Windows::Show("DeleteCD");
        form = qobject_cast<catalogue::DeleteCD*>(app::Windows::Find("DeleteCD"));
        ASSERT_NE(form, nullptr);
        ASSERT_TRUE(waitFor([this] { return !form->Timer1->isEnabled(); }));
    }
    QString question(const char* name) const {
        return QString("Are you sure you want to delete the '%1' cd-rom entry from the database ? "
                       "This will also delete "
                       "all the Directory and File entries contained on this CD-ROM.")
            .arg(name);
    }
    // Deletes the disc that is shown, which has that name.
    void deleteShown(const char* name) {
        box.expect(question(name), Buttons::OkCancel, Icon::Question, "Confim Deletion !!!", Answer::Ok);
        box.expect(kDone, Buttons::Ok, Icon::Information, "Deletion Successful");
        click(*form->Command2);
        refill();
    }
    // The details are empty, and "Delete" does nothing but beep.
    void expectNoTarget(int64_t discs) {
        EXPECT_EQ(form->DriveInfo->rows().count(), 0);
        click(*form->Command2);
        EXPECT_EQ(beeps.count(), 1);
        EXPECT_EQ(box.asked(), 0);
        EXPECT_EQ(count("drive"), discs);
        EXPECT_EQ(count("prog tag"), 2);
    }
    // A copy of the catalogue, with what a transaction that never ended has put beside it.
    std::filesystem::path asTheProgramLeftIt() const {
        const auto copy = m_catalogue.folder() / "left";
        std::filesystem::create_directory(copy);
        for (const char* name : {"kvt.mde", "kvt.mde-journal"})
            if (std::filesystem::exists(m_catalogue.folder() / name))
                std::filesystem::copy_file(m_catalogue.folder() / name, copy / name);
        return copy / "kvt.mde";
    }
    std::filesystem::path catalogue() const { return m_catalogue.path(); }
    QString shownName() const { return form->DriveInfo->rows().item(1).column(1); }
    std::vector<QString> names() const {
        std::vector<QString> found;
        for (int place = 0; place < form->ListView1->rows().count(); ++place)
            found.push_back(form->ListView1->rows().item(place).text);
        return found;
    }
    void refill() {
        ASSERT_TRUE(waitFor([this] { return !form->Timer1->isEnabled(); }));
    }
    int64_t count(const char* table) const { return m_catalogue.count(table); }
    db::Value master(std::string_view field) const {
        return m_catalogue.database()->OpenRecordset("master table")->Fields(field).Value();
    }

private:
    const ScratchCatalogue m_catalogue;
    const FreshWindows m_windows;

protected:
    ScriptedMsgBox box;
    CountedBeeps beeps;
    catalogue::DeleteCD* form = nullptr;
};

} // namespace

TEST_F(DeleteWindow, MatchesItsGoldenFile) {
    open();
    expectGolden(*form, "catalogue");
    EXPECT_EQ(speechless(*form), std::vector<std::string>{});
}

TEST_F(DeleteWindow, ListsTheDiscsAndShowsTheFirstOnesDetails) {
    addDisc(1, "One");
    addDisc(2, "Two");
    app::Windows::Show("Loading");
    open();
    EXPECT_FALSE(app::Windows::IsLoaded("Loading"));
    ASSERT_EQ(form->ListView1->rows().count(), 2);
    EXPECT_EQ(form->ListView1->rows().item(1).text, "Two");
    EXPECT_EQ(form->ListView1->rows().item(1).tag, "2");
    EXPECT_EQ(form->ListView1->selectedItem(), 0);
    ASSERT_EQ(form->DriveInfo->rows().count(), 10);
    EXPECT_EQ(form->DriveInfo->rows().item(1).column(1), "One");
    EXPECT_EQ(form->DriveInfo->rows().item(5).column(1), "650.25 Mb");
    EXPECT_EQ(form->DriveInfo->rows().item(6).column(1), "0 Mb");
    EXPECT_EQ(form->DriveInfo->rows().item(7).text, "");
}

TEST_F(DeleteWindow, OkDeletesTheDiscWithAllThatBelongsToIt) {
    addDisc(1, "One");
    addDisc(2, "Two");
    open();
    emit form->ListView1->ItemClick(1);
    deleteShown("Two");
    EXPECT_EQ(count("drive"), 1);
    EXPECT_EQ(count("directories"), 1);
    EXPECT_EQ(count("files"), 1);
    EXPECT_EQ(count("prog tag"), 1);
    EXPECT_EQ(db::numberOf(master("real cd-roms scanned")), 1);
    EXPECT_EQ(db::numberOf(master("Total Size")), 2.5);
    ASSERT_EQ(form->ListView1->rows().count(), 1);
    EXPECT_EQ(form->ListView1->rows().item(0).text, "One");
}

TEST_F(DeleteWindow, CancelSparesTheDiscDeletesItsTagsAndEndsTheProgram) {
    addDisc(1, "One");
    open();
    box.expect(question("One"), Buttons::OkCancel, Icon::Question, "Confim Deletion !!!", Answer::Cancel);
    box.expectTitled(QCoreApplication::applicationName(), Icon::Critical);
    const ThrowingEnd end;
    EXPECT_THROW(asHandler([this] { emit form->Command2->Click(); }), ProgramEnded);
    EXPECT_TRUE(box.last().text.contains("There is no transaction to commit"));
    EXPECT_EQ(count("drive"), 1);
    EXPECT_EQ(count("prog tag"), 0);
    EXPECT_EQ(db::numberOf(master("Total number of files")), 1) << "the totals were counted all the same";
}

TEST_F(DeleteWindow, TheLastDiscLeavesEmptyListsAndNullSize) {
    addDisc(5, "Last");
    app::Module1::ReturnTo = "explore";
    open();
    deleteShown("Last");
    EXPECT_EQ(form->ListView1->rows().count(), 0);
    EXPECT_EQ(form->DriveInfo->rows().count(), 0);
    EXPECT_EQ(db::numberOf(master("Total number of directories")), 0);
    EXPECT_TRUE(db::isNull(master("Total Size")));
    click(*form->Command2);
    EXPECT_EQ(beeps.count(), 1) << "nothing left to delete";
    click(*form->Command1);
    EXPECT_TRUE(app::Windows::IsLoaded("Switch")) << "there is nothing to explore";
    EXPECT_FALSE(app::Windows::IsLoaded("EXMain"));
}

TEST_F(DeleteWindow, LeavingGoesToTheExplorerWhenItCameFromThere) {
    addDisc(1, "One");
    app::Module1::ReturnTo = "explore";
    open();
    click(*form->Command1);
    EXPECT_TRUE(app::Windows::IsLoaded("EXMain"));
    EXPECT_FALSE(app::Windows::IsLoaded("Switch"));
}

TEST_F(DeleteWindow, LeavingGoesToTheMenuWhenItCameFromThere) {
    addDisc(1, "One");
    open();
    click(*form->Command1);
    EXPECT_TRUE(app::Windows::IsLoaded("Switch"));
    EXPECT_FALSE(app::Windows::IsLoaded("EXMain"));
}

TEST_F(DeleteWindow, EscapeLeavesFromBothLists) {
    addDisc(1, "One");
    for (const bool details : {false, true}) {
        open();
        QTest::keyClick(details ? form->DriveInfo : form->ListView1, Qt::Key_Escape);
        EXPECT_FALSE(app::Windows::IsLoaded("DeleteCD"));
        EXPECT_TRUE(app::Windows::IsLoaded("Switch"));
        app::Windows::Unload("Switch");
    }
}

TEST_F(DeleteWindow, LeavingShowsNothingForAnyOtherWordAsLongAsThereAreDiscs) {
    addDisc(1, "One");
    app::Module1::ReturnTo = "search";
    open();
    click(*form->Command1);
    EXPECT_FALSE(app::Windows::IsLoaded("DeleteCD"));
    EXPECT_FALSE(app::Windows::IsLoaded("Switch"));
    EXPECT_FALSE(app::Windows::IsLoaded("EXMain"));
}

TEST_F(DeleteWindow, AnEmptyCatalogueGoesToTheMenuWhateverReturnToSays) {
    for (const char* word : {"switch", "explore", "search", ""}) {
        app::Module1::ReturnTo = word;
        open();
        click(*form->Command1);
        EXPECT_TRUE(app::Windows::IsLoaded("Switch")) << word;
        EXPECT_FALSE(app::Windows::IsLoaded("EXMain")) << word;
        app::Windows::Unload("Switch");
    }
}

TEST_F(DeleteWindow, TheMenuOffersNothingThatNeedsDiscsOnceTheLastOneIsDeleted) {
    addDisc(1, "One");
    app::Windows::Show("Switch");
    auto* menu = qobject_cast<app::Switch*>(app::Windows::Find("Switch"));
    const std::vector<int> needDiscs{1, 2, 3, 7};
    ASSERT_TRUE(waitFor([&] { return !menu->Timer1->isEnabled(); }));
    for (const int entry : needDiscs)
        EXPECT_TRUE(menu->Label1(entry).isEnabled()) << entry;
    click(menu->Label1(1));
    form = qobject_cast<catalogue::DeleteCD*>(app::Windows::Find("DeleteCD"));
    ASSERT_NE(form, nullptr);
    refill();
    deleteShown("One");
    click(*form->Command1);
    menu = qobject_cast<app::Switch*>(app::Windows::Find("Switch"));
    ASSERT_NE(menu, nullptr);
    ASSERT_TRUE(waitFor([&] { return !menu->Timer1->isEnabled(); }));
    for (const int entry : needDiscs)
        EXPECT_FALSE(menu->Label1(entry).isEnabled()) << entry;
    EXPECT_TRUE(menu->Label1(0).isEnabled()) << "a disc can be scanned";
}

TEST_F(DeleteWindow, DiscNumbersAreComparedWhole) {
    addDisc(1, "One");
    addDisc(12, "Twelve");
    open();
    deleteShown("One");
    EXPECT_EQ(count("prog tag"), 1);
    EXPECT_EQ(count("files"), 1);
}

TEST_F(DeleteWindow, ADiscWithoutTagsIsDeletedWithoutAWordAboutTags) {
    addDisc(1, "One", Tag::None);
    addDisc(2, "Two");
    open();
    deleteShown("One");
    EXPECT_EQ(box.asked(), 2) << "the question and the success";
    EXPECT_EQ(count("drive"), 1);
    EXPECT_EQ(count("prog tag"), 1);
}

TEST_F(DeleteWindow, TheDetailsAreTheDiscsFactsInOrder) {
    RawDatabase(catalogue())
        .execute("INSERT INTO Drive VALUES (7, 'D:\\', 'LABEL', '12AB-34CD', 'Seven', 'CDFS', 650.25, "
                 "NULL, 'Two' || char(13, 10) || 'lines', 'open=setup.exe')");
    open();
    struct Row {
        const char* icon;
        const char* text;
        const char* value;
    };
    const Row expected[] = {{"cdnum", "CD-ROM Number", "7"},
                            {"pname", "Preferred Name", "Seven"},
                            {"label", "Volume Label", "LABEL"},
                            {"snum", "Serial Number", "12AB-34CD"},
                            {"fsys", "File System", "CDFS"},
                            {"size", "Total Size", "650.25 Mb"},
                            {"size", "Free Size", " Mb"},
                            {"", "", ""},
                            {"comment", "Comments", "Two\r\nlines"},
                            {"autrun", "Autorun", "open=setup.exe"}};
    ASSERT_EQ(form->DriveInfo->rows().count(), static_cast<int>(std::size(expected)));
    for (int place = 0; place < form->DriveInfo->rows().count(); ++place) {
        const kit::ListItem& row = form->DriveInfo->rows().item(place);
        EXPECT_EQ(row.icon, expected[place].icon) << place;
        EXPECT_EQ(row.text, expected[place].text) << place;
        EXPECT_EQ(row.column(1), expected[place].value) << place;
    }
    EXPECT_EQ(form->ListView1->rows().item(0).icon, "cdrom");
}

TEST_F(DeleteWindow, TheFirstDiscIsSelectedAgainAfterADeletion) {
    addDisc(1, "One");
    addDisc(2, "Two");
    addDisc(3, "Three");
    open();
    emit form->ListView1->ItemClick(1);
    deleteShown("Two");
    EXPECT_EQ(names(), (std::vector<QString>{"One", "Three"}));
    EXPECT_EQ(form->ListView1->selectedItem(), 0);
    EXPECT_TRUE(form->ListView1->isSelected(0));
    EXPECT_EQ(shownName(), "One");
    deleteShown("One");
    EXPECT_EQ(shownName(), "Three");
}

TEST_F(DeleteWindow, TheLastRowIsDeletedWhileOthersRemain) {
    addDisc(1, "One");
    addDisc(2, "Two");
    addDisc(3, "Three");
    open();
    emit form->ListView1->ItemClick(2);
    deleteShown("Three");
    EXPECT_EQ(names(), (std::vector<QString>{"One", "Two"}));
    EXPECT_EQ(shownName(), "One");
    EXPECT_EQ(count("files"), 2);
}

TEST_F(DeleteWindow, TheRowClickedIsTheOneShownAndDeletedAlsoWhenTheMouseIsDraggedOn) {
    addDisc(1, "One");
    addDisc(2, "Two");
    addDisc(3, "Three");
    open();
    QWidget* viewport = form->ListView1->shown().viewport();
    const auto at = [this](int place) {
        return form->ListView1->shown().visualRect(form->ListView1->model().index(place, 0)).center();
    };
    QTest::mousePress(viewport, Qt::LeftButton, {}, at(1));
    QMouseEvent move(QEvent::MouseMove, at(2), viewport->mapToGlobal(at(2)), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(viewport, &move);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, at(2));
    EXPECT_EQ(form->ListView1->selectedPlaces(), std::vector<int>{1});
    EXPECT_EQ(shownName(), "Two");
    deleteShown("Two");
    EXPECT_EQ(names(), (std::vector<QString>{"One", "Three"}));
}

TEST_F(DeleteWindow, AClickWhoseSearchFailsLeavesNothingToDelete) {
    addDisc(1, "One");
    addDisc(2, "Two");
    open();
    EXPECT_EQ(shownName(), "One");
    {
        const CountedSleeps sleeps;
        RawDatabase other(catalogue());
        other.execute("BEGIN EXCLUSIVE");
        form->ListView1->select(1);
        emit form->ListView1->ItemClick(1);
    }
    expectNoTarget(2);
    emit form->ListView1->ItemClick(1);
    deleteShown("Two");
    EXPECT_EQ(names(), std::vector<QString>{"One"});
}

TEST_F(DeleteWindow, AClickOnADiscThatIsGoneLeavesNothingToDelete) {
    addDisc(1, "One");
    addDisc(2, "Two");
    open();
    RawDatabase(catalogue()).execute("DELETE FROM Drive WHERE \"id number\" = 2");
    emit form->ListView1->ItemClick(1);
    expectNoTarget(1);
    emit form->ListView1->ItemClick(0);
    deleteShown("One");
}

TEST_F(DeleteWindow, ADataErrorEndsTheProgramAndTheDeletionGoesWithIt) {
    addDisc(1, "One");
    addDisc(2, "Two");
    RawDatabase(catalogue())
        .execute("CREATE TRIGGER refuse BEFORE DELETE ON \"Prog Tag\""
                 " BEGIN SELECT RAISE(ABORT, 'refused'); END");
    open();
    box.expect(question("One"), Buttons::OkCancel, Icon::Question, "Confim Deletion !!!", Answer::Ok);
    box.expectTitled(QCoreApplication::applicationName(), Icon::Critical);
    const ThrowingEnd end;
    EXPECT_THROW(asHandler([this] { emit form->Command2->Click(); }), ProgramEnded);
    RawDatabase after(asTheProgramLeftIt());
    EXPECT_EQ(after.count("Drive"), 2);
    EXPECT_EQ(after.count("Directories"), 2);
    EXPECT_EQ(after.count("Files"), 2);
    EXPECT_EQ(after.count("\"Prog Tag\""), 2);
}

TEST_F(DeleteWindow, MinimisingFlashesTheTrayIconUntilItComesBack) {
    open();
    emit form->TrayIcon1->Minimise();
    EXPECT_TRUE(form->TrayIcon1->flashEnabled());
    emit form->TrayIcon1->Restore();
    EXPECT_FALSE(form->TrayIcon1->flashEnabled());
    EXPECT_EQ(form->TrayIcon1->toolTipText(), "Discaro - Delete CD-ROM Entry");
}

TEST_F(DeleteWindow, TheTrayIconBringsTheWindowBack) {
    open();
    emit form->TrayIcon1->Minimise();
    EXPECT_EQ(form->state(), kit::Form::State::Minimised);
    form->Hide();
    emit form->TrayIcon1->Restore();
    EXPECT_EQ(form->state(), kit::Form::State::Normal);
    EXPECT_TRUE(form->isVisible());
}
