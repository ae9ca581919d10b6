#include "app/Loading.h"
#include "app/Module1.h"
#include "app/Switch.h"
#include "app/Windows.h"
#include "catalogue/DeleteCD.h"
#include "catalogue/EmptyCatalogue.h"
#include "catalogue/Names.h"
#include "db/DBEngine.h"
#include "support/windows/Endings.h"
#include "support/windows/FormProbe.h"
#include "support/windows/GoldenForm.h"
#include "support/windows/ScriptedMsgBox.h"

#include <gtest/gtest.h>
#include <stdlib.h>

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

// Stands for the explorer: only that it is shown matters here.
class EmptyWindow : public kit::Form {
public:
    EmptyWindow()
        : Form({.name = "EXMain", .caption = "", .size = {100, 100}}) {}
};

std::filesystem::path makeFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "discaro-delete-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    return name;
}

// The window over a catalogue with as many discs as a test adds, each with one directory, one file and one tag.
class DeleteWindow : public testing::Test {
protected:
    DeleteWindow()
        : m_folder(makeFolder()) {
        db::DBEngine::SetFormat(catalogue::catalogueFormat());
        app::Module1::ApplicationPath = m_folder;
        app::Module1::ReturnTo = "switch";
        catalogue::createEmptyCatalogue(app::Module1::cataloguePath());
        app::Windows::Register("DeleteCD", [] { return new catalogue::DeleteCD; });
        app::Windows::Register("Switch", [] { return new app::Switch; });
        app::Windows::Register("Loading", [] { return new app::Loading; });
        app::Windows::Register("EXMain", [] { return new EmptyWindow; });
    }
    ~DeleteWindow() override {
        app::Windows::Clear();
        app::Module1::CatalogueDb.reset();
        std::filesystem::remove_all(m_folder);
    }

    void addDisc(int64_t number, const char* name) {
        const auto catalogue = db::DBEngine::OpenDatabase(app::Module1::cataloguePath());
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
    void refill() {
        ASSERT_TRUE(waitFor([this] { return !form->Timer1->isEnabled(); }));
    }
    int64_t count(const char* table) const {
        return db::DBEngine::OpenDatabase(app::Module1::cataloguePath())
            ->OpenRecordset(table)
            ->RecordCount();
    }
    db::Value master(std::string_view field) const {
        return db::DBEngine::OpenDatabase(app::Module1::cataloguePath())
            ->OpenRecordset("master table")
            ->Fields(field)
            .Value();
    }

    ScriptedMsgBox box;
    CountedBeeps beeps;
    catalogue::DeleteCD* form = nullptr;

private:
    std::filesystem::path m_folder;
};

} // namespace

TEST_F(DeleteWindow, HasTheToldControls) {
    open();
    expectGolden(*form, "catalogue_window");
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
    box.expect(question("Two"), Buttons::OkCancel, Icon::Question, "Confim Deletion !!!",
               Answer::Ok);
    box.expect(kDone, Buttons::Ok, Icon::Information, "Deletion Successful");
    click(*form->Command2);
    refill();
    EXPECT_EQ(count("drive"), 1);
    EXPECT_EQ(count("directories"), 1);
    EXPECT_EQ(count("files"), 1);
    EXPECT_EQ(count("[prog tag]"), 1);
    EXPECT_EQ(db::numberOf(master("real cd-roms scanned")), 1);
    EXPECT_EQ(db::numberOf(master("Total Size")), 2.5);
    ASSERT_EQ(form->ListView1->rows().count(), 1);
    EXPECT_EQ(form->ListView1->rows().item(0).text, "One");
}

TEST_F(DeleteWindow, CancelSparesTheDiscDeletesItsTagsAndEndsTheProgram) {
    addDisc(1, "One");
    open();
    box.expect(question("One"), Buttons::OkCancel, Icon::Question, "Confim Deletion !!!",
               Answer::Cancel);
    box.expectTitled(QCoreApplication::applicationName(), Icon::Critical);
    const ThrowingEnd end;
    EXPECT_THROW(asHandler([this] { emit form->Command2->Click(); }), ProgramEnded);
    EXPECT_TRUE(box.last().text.contains("There is no transaction to commit"));
    EXPECT_EQ(count("drive"), 1);
    EXPECT_EQ(count("[prog tag]"), 0);
    EXPECT_EQ(db::numberOf(master("Total number of files")), 1)
        << "the totals were counted all the same";
}

TEST_F(DeleteWindow, TheLastDiscLeavesEmptyListsAndNullSize) {
    addDisc(5, "Last");
    app::Module1::ReturnTo = "explore";
    open();
    box.expect(question("Last"), Buttons::OkCancel, Icon::Question, "Confim Deletion !!!",
               Answer::Ok);
    box.expect(kDone, Buttons::Ok, Icon::Information, "Deletion Successful");
    click(*form->Command2);
    refill();
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

TEST_F(DeleteWindow, LeavingGoesWhereReturnToSays) {
    addDisc(1, "One");
    app::Module1::ReturnTo = "explore";
    open();
    click(*form->Command1);
    EXPECT_TRUE(app::Windows::IsLoaded("EXMain"));
}

TEST_F(DeleteWindow, DiscNumbersAreComparedWhole) {
    addDisc(1, "One");
    addDisc(12, "Twelve");
    open();
    box.expect(question("One"), Buttons::OkCancel, Icon::Question, "Confim Deletion !!!",
               Answer::Ok);
    box.expect(kDone, Buttons::Ok, Icon::Information, "Deletion Successful");
    click(*form->Command2);
    EXPECT_EQ(count("[prog tag]"), 1);
    EXPECT_EQ(count("files"), 1);
}

TEST_F(DeleteWindow, MinimisingFlashesTheTrayIconUntilItComesBack) {
    open();
    emit form->TrayIcon1->Minimise();
    EXPECT_TRUE(form->TrayIcon1->flashEnabled());
    emit form->TrayIcon1->Restore();
    EXPECT_FALSE(form->TrayIcon1->flashEnabled());
    EXPECT_EQ(form->TrayIcon1->toolTipText(), "Discaro - Delete CD-ROM Entry");
}
