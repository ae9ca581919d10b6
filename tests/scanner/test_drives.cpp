#include "disc/drives/DriveTable.h"
#include "kit/program/Yield.h"
#include "scanner/WizardTest.h"
#include "support/Files.h"
#include "support/ToolRun.h"

#include <QtCore/QMimeData>
#include <QtGui/QDropEvent>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMenu>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace discaro;
using namespace discaro::test;
using kit::Answer;
using kit::Buttons;
using kit::Icon;

namespace {

class Drives : public WizardTest {
protected:
    static std::filesystem::path makeFolder(const std::string& name) {
        const auto path = app::Module1::ApplicationPath / name;
        std::filesystem::create_directories(path);
        return path;
    }
    // Writes an image file, always the same, of a disc with these files.
    static std::filesystem::path makeImage(const std::string& label, const std::vector<std::string>& files) {
        const auto content = makeFolder("content of " + label);
        for (const auto& name : files)
            writeFile(content / name, name);
        const auto image = app::Module1::ApplicationPath / "disc.iso";
        runTool("genisoimage -quiet -V " + QString::fromStdString(label).toUpper().toStdString() + " -o " +
                shellWord(image) + " " + shellWord(content));
        return image;
    }
    // The wizard with this image or folder chosen and a name typed; and that at the scanning screen.
    void openWith(const std::filesystem::path& path) {
        open();
        form->addDiscs({path});
        typeInto(*form->Text2, "Disc");
    }
    void goToScanningOf(const std::filesystem::path& path) {
        openWith(path);
        for (int page = 2; page < 5; ++page)
            next();
        click(button(3));
    }
    // Whether this process has the file or folder open.
    static bool isOpenHere(const std::filesystem::path& path) {
        std::error_code gone;
        for (const auto& open : std::filesystem::directory_iterator("/proc/self/fd"))
            if (std::filesystem::read_symlink(open, gone) == path)
                return true;
        return false;
    }
};

// While it lives, a process of the superuser is bound by the rights of its files as any other is.
class WithoutPrivileges {
public:
    WithoutPrivileges() {
        ::syscall(SYS_capget, &m_header, m_before);
        const __user_cap_data_struct none[2] = {{0, m_before[0].permitted, 0}, {0, m_before[1].permitted, 0}};
        ::syscall(SYS_capset, &m_header, none);
    }
    ~WithoutPrivileges() { ::syscall(SYS_capset, &m_header, m_before); }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

private:
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_before[2]{};
};

// The wizard on a computer whose only drive is its disk.
class WithoutDiscDrive : public Drives {
protected:
    WithoutDiscDrive() { registerWizard(m_disks); }

    disc::DriveTable m_disks{[] {
        disc::Computer computer;
        computer.mounts.push_back({"8:1", "/", "/", "ext4", "/dev/sda1", false});
        return computer;
    }};
};

} // namespace

TEST_F(Drives, ADriveWithoutADiscPassesTheChecksOfTheNamePage) {
    insert(folder("")).vanishAfter(0);
    goTo(3);
    EXPECT_TRUE(form->Text3->isVisible());
    EXPECT_EQ(box.asked(), 0);
}

TEST_F(Drives, TheVolumeLabelBecomesTheNameAndGoesWithTheTick) {
    goTo(2);
    form->Check1->click();
    EXPECT_EQ(form->Text2->text(), "MEMORY");
    form->Check1->click();
    EXPECT_EQ(form->Text2->text(), "");
}

TEST_F(Drives, ADiscWithoutALabelEmptiesTheNameAndNextAsksForOne) {
    insert(folder("")).volume.label.clear();
    goTo(2);
    form->Check1->click();
    EXPECT_EQ(form->Text2->text(), "");
    box.expect("You must enter a Preferred name.", Buttons::Ok, Icon::Exclamation, "Error");
    next();
}

TEST_F(Drives, AnUnlabelledDriveReadsBackAsItsRootAndALabelledOneDoesNot) {
    EXPECT_EQ(drives.shownText(letter), std::string(1, letter) + ": [MEMORY]");
    insert(folder("")).volume.label.clear();
    EXPECT_EQ(drives.shownText(letter), std::string(1, letter) + ":\\");
}

TEST_F(Drives, TheLoopEndsAtTheFirstDiscDriveThatReadsBackAsItsRoot) {
    insert(folder("")).volume.label.clear();
    addDrive(folder(""));
    open();
    next();
    EXPECT_EQ(form->Drive1->text(), "D:\\");
}

TEST_F(Drives, WithSeveralLabelledDiscDrivesTheLastStaysChosen) {
    addDrive(folder(""));
    addDrive(folder(""));
    open();
    next();
    EXPECT_EQ(form->Drive1->text(), "F: [MEMORY]");
}

TEST_F(Drives, ADriveThatIsNoDiscDriveNeverComesIntoTheLoop) {
    drives.addMedium(std::make_unique<MemoryMedium>(folder("")), disc::DriveType::Removable);
    open();
    next();
    EXPECT_EQ(form->Drive1->text(), "D: [MEMORY]");
}

TEST_F(WithoutDiscDrive, TheDefaultDriveStaysChosenAndNextStops) {
    open();
    next();
    EXPECT_EQ(form->Drive1->text(), "C:\\");
    typeInto(*form->Text2, "Disc");
    box.expect("You must choose a CD-ROM Drive", Buttons::Ok, Icon::Exclamation, "Error");
    next();
    EXPECT_TRUE(form->Text2->isVisible());
}

TEST_F(Drives, GoingBackToTheNamePageChoosesTheDriveAnew) {
    addDrive(folder(""));
    open();
    next();
    typeInto(*form->Text2, "Disc");
    next();
    addDrive(folder(""));
    back();
    EXPECT_EQ(form->Drive1->text(), "F: [MEMORY]");
}

TEST_F(Drives, ADiscDriveThatTheUserChoseStaysChosen) {
    addDrive(folder(""));
    goTo(3); // with the tests' drive chosen
    back();
    EXPECT_EQ(form->Drive1->text(), "D: [MEMORY]");
    EXPECT_EQ(form->Text2->text(), "");
    back();
    next();
    EXPECT_EQ(form->Drive1->text(), "D: [MEMORY]");
}

TEST_F(Drives, AnAddedDiscStaysChosen) {
    open();
    form->addDiscs({makeFolder("added")});
    typeInto(*form->Text2, "Disc");
    addDrive(folder(""));
    next();
    back();
    EXPECT_EQ(form->Drive1->text(), "E: [added]");
}

TEST_F(Drives, ADriveThatIsNoDiscDriveDoesNotStayChosen) {
    goTo(2);
    box.expect("You must choose a CD-ROM Drive", Buttons::Ok, Icon::None, "Error");
    form->Drive1->setListIndex(0);
    back();
    next();
    EXPECT_EQ(form->Drive1->text(), "D: [MEMORY]");
}

TEST_F(Drives, TheListTellsAddedDiscsApart) {
    const auto one = makeFolder("one/same");
    const auto two = makeFolder("two/same");
    open();
    form->addDiscs({one, two});
    const int last = form->Drive1->count() - 1;
    EXPECT_EQ(form->Drive1->itemText(last), "F: [same]");
    EXPECT_EQ(form->Drive1->file(last), "same");
    EXPECT_EQ(form->Drive1->path(last).toStdString(), two.string());
    EXPECT_EQ(form->Drive1->path(last - 1).toStdString(), one.string());
    EXPECT_EQ(form->Drive1->file(1), "") << "a drive that is no file";
    EXPECT_EQ(form->Drive1->text(), "E: [same]");
}

TEST_F(Drives, OfSeveralDiscsTheFirstIsChosenAndWhatCanNotBeReadIsToldInOneBox) {
    open();
    box.expectTitled("Error", Icon::Exclamation);
    form->addDiscs({"/not/there.iso", makeFolder("first"), "/nor/this.iso", makeFolder("second")});
    EXPECT_EQ(form->Drive1->text(), "E: [first]");
    EXPECT_EQ(form->Drive1->itemText(3), "F: [second]");
    EXPECT_TRUE(form->Text2->isVisible()) << "page 2";
    EXPECT_TRUE(box.last().text.contains("there.iso"));
    EXPECT_TRUE(box.last().text.contains("this.iso"));
}

TEST_F(Drives, AHundredFilesThatCanNotBeReadMakeABoxThatFitsTheScreen) {
    open();
    box.expectTitled("Error", Icon::Exclamation);
    form->addDiscs(std::vector<std::filesystem::path>(100, "/not/there.iso"));
    EXPECT_TRUE(box.last().text.endsWith("90 more can't be read either."));
    EXPECT_TRUE(button(2).isVisible());
    EXPECT_FALSE(form->Text2->isVisible()) << "still on page 1";
}

TEST_F(Drives, OfMoreDiscsThanLettersTheFirstIsChosen) {
    std::vector<std::filesystem::path> many;
    for (int disc = 0; disc < 30; ++disc)
        many.push_back(makeFolder("disc" + std::to_string(disc)));
    open();
    form->addDiscs(many);
    EXPECT_TRUE(form->Drive1->text().endsWith("[disc0]")) << form->Drive1->text().toStdString();
}

TEST_F(Drives, WhatWasDroppedOnTheMenuIsReadOnceByTheWizard) {
    app::Module1::DroppedDiscs = {makeFolder("dropped")};
    open();
    EXPECT_TRUE(waitFor([this] { return form->Text2->isVisible(); }));
    EXPECT_EQ(form->Drive1->text(), "E: [dropped]");
    EXPECT_TRUE(app::Module1::DroppedDiscs.empty());
}

TEST_F(Drives, WhatWasDroppedOnTheMenuIsNotLeftForTheNextWizard) {
    app::Module1::DroppedDiscs = {makeFolder("dropped")};
    open();
    EXPECT_TRUE(app::Module1::DroppedDiscs.empty()) << "taken with the loading";
    form->Unload();
    open();
    kit::yield();
    EXPECT_FALSE(form->Text2->isVisible()) << "still on page 1";
}

TEST_F(Drives, TheButtonForDiscsOpensAMenuAndTellsOfDropping) {
    goTo(2);
    EXPECT_TRUE(qobject_cast<kit::MenuButton*>(form->DiscImage));
    EXPECT_TRUE(form->DiscImage->toolTip().contains("drop"));
}

TEST_F(Drives, ImagesAreLookedForWhereTheLastDiscLayAlsoInTheNextWizard) {
    const auto place = makeFolder("looked at/disc");
    open();
    form->addDiscs({place});
    form->Unload();
    open();
    goTo(2);
    QString shown;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, form, [&] {
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            QTest::keyClick(menu, Qt::Key_F);
        } else if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
            EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFiles);
            shown = dialog->directory().absolutePath();
            dialog->reject();
        }
    });
    watch.start(0);
    form->DiscImage->click();
    EXPECT_EQ(shown.toStdString(), place.parent_path().string());
}

TEST_F(Drives, TheTickTakesTheLabelOfTheDiscThatIsInTheDriveNow) {
    goTo(2);
    insert(folder("")).volume.label = "CHANGED";
    form->Check1->click();
    EXPECT_EQ(form->Text2->text(), "CHANGED");
}

TEST_F(Drives, WithTheTickADriveThatIsNoDiscDriveGivesItsLabelAsTheName) {
    auto stick = std::make_unique<MemoryMedium>(folder(""));
    stick->volume.label = "STICK";
    drives.addMedium(std::move(stick), disc::DriveType::Removable);
    goTo(2);
    form->Check1->click();
    box.expect("You must choose a CD-ROM Drive", Buttons::Ok, Icon::None, "Error");
    form->Drive1->setListIndex(2);
    EXPECT_EQ(form->Text2->text(), "STICK");
    EXPECT_EQ(beeps.count(), 1);
}

TEST_F(Drives, ADiscOfAnUnknownKindIsToldAndAnotherCanBeChosen) {
    insert(folder("")).failOn(Asked::List, 1, ErrorNumber::FileSystemUnsupported, 1000);
    goTo(3);
    box.expectTitled("Error", Icon::Exclamation);
    next();
    EXPECT_TRUE(form->Text3->isVisible()) << "still on the page before";
    insert(folder("")).failOn(Asked::List, 1, ErrorNumber::FileSystemUnknown, 1000);
    box.expectTitled("Error", Icon::Exclamation);
    next();
    EXPECT_TRUE(form->Text3->isVisible());
    EXPECT_TRUE(button(2).isEnabled());
    letter = addDrive(folder("", {file("A")}));
    back();
    chooseTestDrive();
    typeInto(*form->Text2, "Disc");
    next();
    next();
    EXPECT_EQ(said(*form->Text4), "0 Directories\r\n1 Files");
}

TEST_F(Drives, AVanishedDiscEndsTheQuickScanAndShowsTheMenuWhateverReturnToSays) {
    auto& medium = insert(folder("", {folder("A"), folder("B")}));
    goTo(3);
    app::Module1::ReturnTo = "explore";
    medium.vanishAfter(1); // when the root has been listed
    box.expect("An error was found during the Quickscan operation. The scan will be cancelled.", Buttons::Ok,
               Icon::Critical, "Error during Quickscan");
    next();
    EXPECT_FALSE(isUp("Scanform"));
    EXPECT_TRUE(isUp("Switch"));
}

TEST_F(Drives, ADriveWithoutADiscEndsTheProgramAtTheQuickScan) {
    insert(folder("")).vanishAfter(0);
    goTo(3);
    const ThrowingEnd end;
    box.expectTitled(QCoreApplication::applicationName(), Icon::Critical);
    EXPECT_THROW(asHandler([this] { emit button(2).Click(); }), ProgramEnded);
}

TEST_F(Drives, ADiscThatHasGoneEndsTheProgramWhetherItHadSubdirectoriesOrNot) {
    for (const bool subdirectories : {false, true}) {
        auto& medium = insert(folder("", {subdirectories ? folder("A") : file("A")}));
        goTo(3);
        medium.vanishAfter(0);
        const ThrowingEnd end;
        box.expectTitled(QCoreApplication::applicationName(), Icon::Critical);
        EXPECT_THROW(asHandler([this] { emit button(2).Click(); }), ProgramEnded);
        form->Unload();
        form = nullptr;
    }
}

TEST_F(Drives, AnAddedFolderThatHasGoneIsToldAndAnotherDriveCanBeChosen) {
    const auto path = makeFolder("gone");
    openWith(path);
    next();
    std::filesystem::remove_all(path);
    box.expectTitled("Error", Icon::Exclamation);
    next();
    EXPECT_TRUE(form->Text3->isVisible()) << "still on the page before";
    EXPECT_EQ(count("drive"), 0);
}

TEST_F(Drives, AnAddedFolderThatMustNotBeReadIsToldByItsPathAndAnotherDriveCanBeChosen) {
    const auto path = makeFolder("shut");
    openWith(path);
    next();
    box.expect(QString::fromStdString("There is no disc in the drive, or it cannot be read: "
                                      "Permission denied (" +
                                      path.string() + ")"),
               Buttons::Ok, Icon::Exclamation, "Error");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    {
        const WithoutPrivileges bound;
        const ThrowingEnd end;
        EXPECT_NO_THROW(asHandler([this] { emit button(2).Click(); }));
    }
    EXPECT_TRUE(form->Text3->isVisible()) << "still on the page before";
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    next();
    EXPECT_EQ(said(*form->Text4), "0 Directories\r\n0 Files");
}

TEST_F(Drives, AnAddedFolderThatMustNotBeReadWhenTheScanStartsIsToldByItsPath) {
    const auto path = makeFolder("shut");
    goToScanningOf(path);
    std::filesystem::permissions(path, std::filesystem::perms::none);
    box.expectTitled("Error", Icon::Exclamation);
    {
        const WithoutPrivileges bound;
        click(*form->Command2);
    }
    EXPECT_TRUE(box.last().text.endsWith(QString::fromStdString("(" + path.string() + ")")))
        << box.last().text.toStdString();
    EXPECT_EQ(count("drive"), 0);
}

TEST_F(Drives, AnAddedFolderThatIsRemovedInTheQuickScanIsToldAndLeadsToTheMenu) {
    const auto path = makeFolder("leaving");
    for (const char* name : {"A", "B", "C"})
        std::filesystem::create_directory(path / name);
    openWith(path);
    next();
    QTimer::singleShot(0, form, [&path] { std::filesystem::remove_all(path); });
    box.expect("An error was found during the Quickscan operation. The scan will be cancelled.", Buttons::Ok,
               Icon::Critical, "Error during Quickscan");
    next();
    EXPECT_FALSE(isUp("Scanform"));
    EXPECT_TRUE(isUp("Switch"));
}

TEST_F(Drives, AnAddedFolderThatHasGoneWhenTheScanStartsIsToldAndTheScanCanBeStartedAgain) {
    const auto path = makeFolder("going");
    goToScanningOf(path);
    std::filesystem::remove_all(path);
    box.expect(QString::fromStdString("The path was not found: " + path.string()), Buttons::Ok, Icon::Exclamation,
               "Error");
    click(*form->Command2);
    EXPECT_EQ(count("drive") + count("directories") + count("files"), 0);
    EXPECT_TRUE(form->Picture2->isVisible());
    EXPECT_TRUE(form->Command2->isVisible() && form->Command2->isEnabled());
    EXPECT_FALSE(form->Command6->isVisible());
    EXPECT_TRUE(button(4).isEnabled());
    makeFolder("going");
    click(*form->Command2);
    EXPECT_EQ(count("drive"), 1);
}

TEST_F(Drives, AnAddedFolderIsNotHeldOpenOnThePagesAndAfterTheScan) {
    const auto path = makeFolder("held");
    open();
    form->addDiscs({path});
    EXPECT_FALSE(isOpenHere(path));
    typeInto(*form->Text2, "Disc");
    for (int page = 2; page < 5; ++page) {
        next();
        EXPECT_FALSE(isOpenHere(path)) << page;
    }
    click(button(3));
    click(*form->Command2);
    EXPECT_EQ(count("drive"), 1);
    EXPECT_FALSE(isOpenHere(path));
}

TEST_F(Drives, AnImageThatIsWrittenAnewIsReadAnew) {
    const auto image = makeImage("first", {"OLD.TXT"});
    open();
    form->addDiscs({image});
    form->Check1->click();
    EXPECT_EQ(form->Text2->text(), "FIRST");
    makeImage("second", {"NEW.TXT", "MORE.TXT"});
    form->Check1->click();
    form->Check1->click();
    EXPECT_EQ(form->Text2->text(), "SECOND");
    EXPECT_TRUE(form->Drive1->text().endsWith("[SECOND]")) << form->Drive1->text().toStdString();
    next();
    next();
    EXPECT_EQ(said(*form->Text4), "0 Directories\r\n2 Files");
    makeImage("third", {"ONE.TXT"});
    next();
    click(button(3));
    click(*form->Command2);
    EXPECT_EQ(field("files", "file name"), "ONE.TXT");
    EXPECT_EQ(field("drive", "volume name"), "THIRD");
}

TEST_F(Drives, WhenAllLettersAreGivenTheLastDiscAddedIsTheChosenOne) {
    open();
    for (int disc = 0; disc < 26; ++disc)
        form->addDiscs({makeFolder("disc" + std::to_string(disc))});
    EXPECT_TRUE(form->Drive1->text().endsWith("[disc25]")) << form->Drive1->text().toStdString();
    EXPECT_EQ(form->Drive1->count(), 24);
    EXPECT_EQ(form->Drive1->findText("E: [disc0]"), -1) << "its letter has been given again";
    typeInto(*form->Text2, "Disc");
    next();
    next();
    EXPECT_EQ(said(*form->Text4), "0 Directories\r\n0 Files");
}

TEST_F(Drives, AFileThatIsNoDiscIsRefusedWithAClearMessage) {
    const auto text = writeFile(app::Module1::ApplicationPath / "text", std::string(100000, 'x'));
    open();
    next();
    box.expectTitled("Error", Icon::Exclamation);
    const QString before = form->Drive1->text();
    form->addDiscs({text});
    EXPECT_EQ(form->Drive1->text(), before);
    EXPECT_TRUE(box.last().text.contains("not a disc image")) << box.last().text.toStdString();
}

TEST_F(Drives, ADroppedFolderBecomesTheChosenDriveAndOpensPageTwo) {
    const std::filesystem::path folder = app::Module1::ApplicationPath / "dropped";
    std::filesystem::create_directory(folder);
    open();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder.string()))});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(form, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(form, &drop);
    EXPECT_FALSE(form->Text2->isVisible()) << "whoever drags is not held up";
    EXPECT_TRUE(waitFor([this] { return form->Text2->isVisible(); }));
    EXPECT_TRUE(form->Drive1->text().contains("[dropped]")) << form->Drive1->text().toStdString();
    EXPECT_EQ(box.asked(), 0);
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "the folder stays where it is";
}

TEST_F(Drives, WhatIsNoFileOrComesTooLateIsNotTakenAsADisc) {
    const auto accepted = [this](const char* url) {
        QMimeData data;
        data.setUrls({QUrl(url)});
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(form, &enter);
        return enter.isAccepted();
    };
    open();
    EXPECT_TRUE(accepted("file:///tmp/disc.iso"));
    EXPECT_FALSE(accepted("http://localhost/disc.iso"));
    EXPECT_FALSE(form->Text2->editor().acceptDrops()) << "the window takes it, not the name";
    goTo(3);
    EXPECT_FALSE(accepted("file:///tmp/disc.iso"));
}

TEST_F(Drives, TheWheelTurnsTheDrivesOnlyWhenTheyHaveTheFocus) {
    goTo(2);
    const auto turn = [this] {
        QWheelEvent wheel(QPointF(5, 5), form->Drive1->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, 120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(form->Drive1, &wheel);
    };
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    form->Text2->setFocus();
    turn();
    EXPECT_EQ(form->Drive1->text(), "D: [MEMORY]");
    form->Drive1->setFocus();
    box.expect("You must choose a CD-ROM Drive", Buttons::Ok, Icon::None, "Error");
    turn();
    EXPECT_EQ(form->Drive1->text(), "C:\\");
}
