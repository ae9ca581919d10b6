#include "base/RuntimeError.h"
#include "catalogue/EmptyCatalogue.h"
#include "db/sqlite/Connection.h"
#include "explorer/properties/PropertiesTest.h"
#include "kit/common/Strings.h"
#include "kit/program/Ground.h"
#include "support/Files.h"
#include "support/RawDatabase.h"

#include <QtCore/QCoreApplication>

#include <fcntl.h>
#include <unistd.h>

using namespace discaro;
using namespace discaro::test;
using app::Module1::SelectedDirectory;
using app::Module1::SelectedDisc;
using app::Module1::SelectedFile;
using base::ErrorNumber;
using base::RuntimeError;
using explorer::EXCDROM;
using explorer::EXDir;
using explorer::EXFile;

namespace {

// Another program that has locked the catalogue for as long as this lives.
class OtherProgram : public RawDatabase {
public:
    explicit OtherProgram(const std::filesystem::path& path)
        : RawDatabase(path) {
        execute("BEGIN EXCLUSIVE");
    }
};

// Rights do not bind the superuser, so as one the catalogue is opened as somebody else.
class WithoutRights {
public:
    explicit WithoutRights(const TestCatalogue& catalogue) {
        using enum std::filesystem::perms;
        const auto reading = owner_read | group_read | others_read;
        std::filesystem::permissions(catalogue.folder(), reading | owner_exec | group_exec | others_exec);
        std::filesystem::permissions(catalogue.path(), reading);
        if (m_root) {
            EXPECT_EQ(::seteuid(65534), 0);
        }
    }
    ~WithoutRights() {
        if (m_root) {
            EXPECT_EQ(::seteuid(0), 0);
        }
        std::filesystem::permissions(app::Module1::ApplicationPath, std::filesystem::perms::owner_all);
    }
    WithoutRights(const WithoutRights&) = delete;
    WithoutRights& operator=(const WithoutRights&) = delete;

private:
    const bool m_root = ::getuid() == 0;
};

class Hostile : public PropertiesTest {
protected:
    Hostile() {
        db::Connection::setLockWait(0);
        QCoreApplication::setApplicationName("discaro-test");
    }

    // An empty catalogue, put in the place of the present one; returns what it holds.
    template <typename Put>
    std::string putInPlace(Put&& put) const {
        const auto other = catalogue.folder() / "other.mde";
        discaro::catalogue::createEmptyCatalogue(other);
        std::string bytes = readFile(other);
        put(other);
        return bytes;
    }

    // The exit code of the program's end that a click brings about; -1 when it goes on. The report
    // is checked here, other questions go on to the script.
    static int endOfClick(kit::Button& button, ErrorNumber number) {
        const ThrowingEnd throwingEnd;
        kit::Answerer script;
        const auto check = [&script, number](const kit::Question& question) {
            if (question.icon != kit::Icon::Critical)
                return script(question);
            const QString expected = QString("Run-time error %1:\n\n").arg(static_cast<int>(number));
            EXPECT_TRUE(question.text.startsWith(expected)) << question.text.toStdString();
            EXPECT_EQ(question.title, "discaro-test");
            return kit::Answer::Ok;
        };
        script = kit::setAnswerer(check);
        int exitCode = -1;
        try {
            EXPECT_TRUE(button.isEnabled() && button.isVisible());
            asHandler([&button] { emit button.Click(); });
        } catch (const ProgramEnded& ended) {
            exitCode = ended.exitCode;
        }
        kit::setAnswerer(script);
        return exitCode;
    }
};

const std::string kOddName = "a\tb\r\nc\xE2\x80\xAE"
                             "d & <b>e</b>";

} // namespace

// Rows with anything in them

TEST_F(Hostile, ADiscOfNullsShowsNothingAndKeepsItsNulls) {
    catalogue.addDisc(9, kNull);
    SelectedDisc = "9";
    auto& form = open<EXCDROM>();
    EXPECT_EQ(valueBeside(form, "Preferred Name :"), "");
    EXPECT_EQ(valueBeside(form, "Total Size"), "");
    EXPECT_EQ(form.OpeningName, "");
    type(*form.Text2, "note");
    click(*form.Command1);
    const auto disc = [this](const char* field) { return catalogue.stored("Drive", "[id number] = 9", field); };
    EXPECT_EQ(disc("comments"), text("note"));
    EXPECT_EQ(disc("prefered name"), kNull);
    EXPECT_EQ(disc("autorun"), kNull);
}

TEST_F(Hostile, AFileOfNullsShowsItsFixedTexts) {
    SelectedFile = std::to_string(catalogue.addFile("C1D1S1", kNull));
    auto& form = open<EXFile>();
    EXPECT_EQ(form.Label1->text(), "File Name :  ");
    EXPECT_EQ(form.Label2->text(), "Path :  D:\\PICTURES");
    EXPECT_EQ(valueBeside(form, "Number of icons in file"), "");
}

TEST_F(Hostile, ANameThatABoxCannotHoldStaysWhenSomethingElseIsWritten) {
    catalogue.addDisc(9, text(kOddName));
    SelectedDisc = "9";
    auto& form = open<EXCDROM>();
    EXPECT_EQ(form.OpeningName, kOddName);
    type(*form.Text2, "note");
    click(*form.Command2);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(catalogue.stored("Drive", "[id number] = 9", "prefered name"), text(kOddName));
}

TEST_F(Hostile, NamesFromDiscsStandOnOneLineAndAreNoMarkup) {
    SelectedFile = std::to_string(catalogue.addFile("C1D1S1", text(kOddName)));
    catalogue.addDirectory("C1D1S2", kOddName);
    auto& file = open<EXFile>();
    EXPECT_EQ(file.Label1->text(), kit::qt("File Name :  " + kOddName));
    EXPECT_EQ(file.Label1->textFormat(), Qt::PlainText);
    file.Unload();
    SelectedDirectory = "C1D1S2";
    auto& directory = open<EXDir>();
    EXPECT_EQ(directory.lblFields(0).shownText(), "a b cd & <b>e</b>");
    EXPECT_EQ(directory.lblFields(0).text(), kit::qt(kOddName));
}

TEST_F(Hostile, AHugeCommentOpensAndIsOnlyAddedTo) {
    std::string huge;
    while (huge.size() < 2'000'000)
        huge += "An error was found during the scan of a directory\r\n";
    catalogue.addDirectory("C1D1S2", "SOUNDS", {{"comments", huge}});
    SelectedDirectory = "C1D1S2";
    auto& form = open<EXDir>();
    type(*form.Text1, "end");
    click(*form.Command1);
    EXPECT_EQ(catalogue.stored("Directories", "[id number] like 'C1D1S2'", "comments"), db::Value(huge + "end"));
}

TEST_F(Hostile, AnAutorunFileOfOneEndlessWordOpens) {
    catalogue.addDisc(9, text("nine"), {{"autorun", std::string(300'000, 'x')}});
    SelectedDisc = "9";
    auto& form = open<EXCDROM>();
    form.SSTab1->setCurrentIndex(2);
    QCoreApplication::processEvents();
    EXPECT_EQ(form.Text1->text().size(), 300'000);
}

TEST_F(Hostile, AHugeNameOpensAndStays) {
    const std::string huge(3'000'000, 'N');
    catalogue.addDisc(9, text(huge), {{"volume name", huge}});
    SelectedDisc = "9";
    auto& form = open<EXCDROM>();
    type(*form.Text2, "note");
    click(*form.Command1);
    EXPECT_EQ(catalogue.stored("Drive", "[id number] = 9", "prefered name"), db::Value(huge));
}

// Numbers that name nothing

TEST_F(Hostile, ADiscThatIsNotThereLeavesTheFirstOne) {
    for (const char* nothing : {"77", "", "C1", "2 or 1"}) {
        SelectedDisc = nothing;
        auto& form = open<EXCDROM>();
        EXPECT_EQ(form.OpeningName, "one") << nothing;
        EXPECT_EQ(valueBeside(form, "CD-ROM Number :"), "1") << nothing;
        form.Unload();
    }
}

TEST_F(Hostile, ANewNameForADiscThatIsNotThereIsNotGivenToAnother) {
    SelectedDisc = "77";
    const auto before = catalogue.everything();
    auto& form = open<EXCDROM>();
    retype(*form.Text3, "new");
    EXPECT_EQ(endOfClick(*form.Command1, ErrorNumber::NoCurrentRecord), 1);
    EXPECT_EQ(catalogue.everything(), before);
}

TEST_F(Hostile, ARefusedNameForADiscThatIsNotThereIsNotGivenToItsHolder) {
    SelectedDisc = "77";
    const auto before = catalogue.everything();
    auto& form = open<EXCDROM>();
    type(*form.Text2, "note");
    retype(*form.Text3, "three");
    script.expect("This Preferred name was used once before for CD-ROM number  '3' which has "
                  "'TRIO' as its Volume "
                  "label. Please choose another name.",
                  kit::Buttons::Ok, kit::Icon::Exclamation, "Duplicate Preferred Name");
    EXPECT_EQ(endOfClick(*form.Command1, ErrorNumber::RecordGone), 1);
    EXPECT_EQ(catalogue.everything(), before);
}

TEST_F(Hostile, ADirectoryThatIsNotThereLeavesTheFirstOne) {
    SelectedDirectory = "C77D1";
    EXPECT_EQ(valueBeside(open<EXDir>(), "Directory Name :"), "D:\\");
}

TEST_F(Hostile, AFileWhoseDirectoryIsNotThereShowsTheFirstOnesPath) {
    SelectedDirectory = "C77D1";
    auto& form = open<EXFile>();
    EXPECT_EQ(form.Label1->text(), "File Name :  readme.txt");
    EXPECT_EQ(form.Label2->text(), "Path :  D:\\D:\\");
}

TEST_F(Hostile, ANumberThatIsNoCriterionIsPassedOverInTheDiscAndTheFile) {
    SelectedDisc = SelectedFile = SelectedDirectory = "it's";
    auto& disc = open<EXCDROM>();
    EXPECT_EQ(disc.OpeningName, "one");
    disc.Unload();
    EXPECT_EQ(open<EXFile>().Label1->text(), "File Name :  readme.txt");
}

TEST_F(Hostile, ANumberThatIsNoCriterionEndsTheProgramInTheDirectory) {
    SelectedDirectory = "it's";
    auto* form = show<EXDir>();
    form->Timer1->setEnabled(false);
    EXPECT_THROW(emit form->Timer1->Tick(), RuntimeError);
}

TEST_F(Hostile, EmptyTablesOpenEmptyWindows) {
    db::DBEngine::OpenDatabase(catalogue.path())->Execute("delete * from Drive");
    db::DBEngine::OpenDatabase(catalogue.path())->Execute("delete * from Directories");
    auto& disc = open<EXCDROM>();
    EXPECT_EQ(valueBeside(disc, "CD-ROM Number :"), "");
    EXPECT_FALSE(disc.Command1->isEnabled());
    disc.Unload();
    auto& directory = open<EXDir>();
    EXPECT_EQ(valueBeside(directory, "Directory Name :"), "");
    directory.Unload();
    auto& file = open<EXFile>();
    EXPECT_EQ(file.Label1->text(), "File Name :");
    EXPECT_EQ(file.Label3->text(), "CD-ROM Number :");
    click(*file.Command2);
    EXPECT_FALSE(isOpen());
}

TEST_F(Hostile, ADirectoryThatIsDeletedWhileItsWindowIsOpenEndsTheProgram) {
    auto& form = open<EXDir>();
    db::DBEngine::OpenDatabase(catalogue.path())->Execute("delete * from Directories where [id number] like 'C1D1S1'");
    const auto before = catalogue.everything();
    type(*form.Text1, "note");
    EXPECT_EQ(endOfClick(*form.Command1, ErrorNumber::RecordGone), 1);
    EXPECT_EQ(catalogue.everything(), before);
}

// Catalogues that can't be written or read

TEST_F(Hostile, ALockedCatalogueEndsTheProgramWhenItIsWritten) {
    auto& form = open<EXDir>();
    const auto before = catalogue.everything();
    type(*form.Text1, "note");
    {
        const OtherProgram other(catalogue.path());
        EXPECT_EQ(endOfClick(*form.Command1, ErrorNumber::CatalogueLocked), 1);
    }
    EXPECT_EQ(catalogue.everything(), before);
}

TEST_F(Hostile, ALockedCatalogueDoesNotOpen) {
    const OtherProgram other(catalogue.path());
    EXPECT_THROW(show<EXFile>(), RuntimeError);
    EXPECT_FALSE(isOpen());
}

TEST_F(Hostile, AMissingCatalogueDoesNotOpenAWindow) {
    std::filesystem::remove(catalogue.path());
    EXPECT_THROW(show<EXCDROM>(), RuntimeError);
    EXPECT_FALSE(isOpen());
}

TEST_F(Hostile, AReadOnlyCatalogueIsShownAndEndsTheProgramWhenItIsWritten) {
    const WithoutRights withoutRights(catalogue);
    auto& form = open<EXFile>();
    EXPECT_EQ(form.Label1->text(), "File Name :  readme.txt");
    type(*form.Text1, "note");
    EXPECT_EQ(endOfClick(*form.Command2, ErrorNumber::CatalogueReadOnly), 1);
}

// Catalogues in whose place another program has put something

TEST_F(Hostile, AReplacedCatalogueEndsTheProgramWhenItIsWrittenAndStaysAsItIs) {
    auto& form = open<EXFile>();
    type(*form.Text1, "note");
    const std::string left =
        putInPlace([this](const auto& other) { std::filesystem::rename(other, catalogue.path()); });
    EXPECT_EQ(endOfClick(*form.Command1, ErrorNumber::CatalogueReplaced), 1);
    EXPECT_TRUE(readFile(catalogue.path()) == left);
}

TEST_F(Hostile, AnOverwrittenCatalogueEndsTheProgramWhenItIsWrittenAndStaysAsItIs) {
    auto& form = open<EXDir>();
    type(*form.Text1, "note");
    const std::string left = putInPlace([this](const auto& other) {
        std::filesystem::copy_file(other, catalogue.path(), std::filesystem::copy_options::overwrite_existing);
    });
    EXPECT_EQ(endOfClick(*form.Command1, ErrorNumber::CatalogueReplaced), 1);
    EXPECT_TRUE(readFile(catalogue.path()) == left);
}

TEST_F(Hostile, ARemovedCatalogueEndsTheProgramWhenItIsWritten) {
    auto& form = open<EXCDROM>();
    type(*form.Text2, "note");
    std::filesystem::remove(catalogue.path());
    EXPECT_EQ(endOfClick(*form.Command1, ErrorNumber::CatalogueReplaced), 1);
    EXPECT_FALSE(std::filesystem::exists(catalogue.path()));
}

// Yields

TEST_F(Hostile, AWindowThatClosesDuringItsBackgroundsYieldGoesQuietly) {
    QPointer<EXDir> form = &open<EXDir>();
    QTimer::singleShot(0, form, [form] { form->Unload(); });
    emit form->Timer2->Tick();
    EXPECT_FALSE(isOpen());
    kit::runGroundActions();
    EXPECT_TRUE(form.isNull());
}
