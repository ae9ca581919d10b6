#include "catalogue/Names.h"
#include "db/DBEngine.h"
#include "scanner/WizardTest.h"

using namespace discaro;
using namespace discaro::test;

namespace {

class Options : public WizardTest {
protected:
    // What page 5 says of the settings.
    std::string settings() {
        goTo(5);
        return form->Text1->text().toStdString();
    }
    std::string numberOf(const std::string& name) {
        return db::DBEngine::OpenDatabase(app::Module1::cataloguePath())
            ->OpenRecordset("select * from drive where [prefered name] = '" + name + "'")
            ->Fields(catalogue::drive::kIdNumber)
            .Text();
    }
    void setScanned(int64_t number) {
        auto rows = db::DBEngine::OpenDatabase(app::Module1::cataloguePath())->OpenRecordset("master table");
        rows->Edit();
        (*rows)(catalogue::masterTable::kScannedCdRoms) = number;
        rows->Update();
    }
    // The comments that the scan leaves, which tell whether errors were logged.
    std::string scannedComments() {
        goToScanning();
        click(*form->Command2);
        return field("drive", "Comments");
    }
};

constexpr auto kSentence = "Scanned with basic details ignoring all errors.";
constexpr auto kSentenceBeforeLog = "Scanned with basic details ignoring all errors.\r\n";

} // namespace

TEST_F(Options, TheButtonShowsTheScreenAndOkLeavesIt) {
    open();
    click(*form->Command4);
    EXPECT_TRUE(form->Picture6->isVisible());
    EXPECT_FALSE(form->Picture1->isVisible());
    click(*form->Command3);
    EXPECT_FALSE(form->Picture6->isVisible());
    EXPECT_TRUE(form->Picture1->isVisible());
}

TEST_F(Options, TheDefaultsAreBasicIgnoreLogAndTheNextNumber) {
    open();
    EXPECT_TRUE(form->Option2->value());
    EXPECT_TRUE(form->Option4->value());
    EXPECT_TRUE(form->Option7->value());
    EXPECT_TRUE(form->Check2->value());
    EXPECT_NE(settings().find("scanned with basic details ignoring all errors."), std::string::npos);
}

TEST_F(Options, EachDetailLevelIsTakenOver) {
    open();
    form->Option1->click();
    EXPECT_NE(settings().find("scanned with all details"), std::string::npos);
}

TEST_F(Options, TheUsualChoicesCanBeTakenAgain) {
    open();
    form->Option1->click();
    form->Option2->click();
    form->Option5->click();
    form->Option4->click();
    EXPECT_NE(settings().find("scanned with basic details ignoring all errors."), std::string::npos);
}

TEST_F(Options, MinimalDetailAndCancelAreTakenOver) {
    open();
    form->Option3->click();
    form->Option5->click();
    EXPECT_NE(settings().find("scanned with minimal details not ignoring any errors."), std::string::npos);
}

TEST_F(Options, AClickOnACaptionIsAClickOnItsButton) {
    open();
    emit form->Label10->Click();
    EXPECT_TRUE(form->Option1->value());
    emit form->Label17->Click();
    EXPECT_TRUE(form->Option6->value());
    EXPECT_TRUE(form->Option1->value()) << "the tabs' choices do not disturb each other";
    emit form->Label11->Click();
    EXPECT_TRUE(form->Option2->value());
    emit form->Label12->Click();
    EXPECT_TRUE(form->Option3->value());
    emit form->Label14->Click();
    EXPECT_TRUE(form->Option5->value());
    emit form->Label13->Click();
    EXPECT_TRUE(form->Option4->value());
    emit form->Label16->Click();
    EXPECT_TRUE(form->Option7->value());
    emit form->Label15->Click();
    EXPECT_FALSE(form->Check2->value());
}

TEST_F(Options, TheScreensFitAtAnyFontSize) {
    for (const double factor : {1.0, 1.25, 1.5}) {
        const LargerFont font(factor);
        open();
        click(*form->Command4);
        for (int page = 0; page < 3; ++page) {
            form->SSTab1->setCurrentIndex(page);
            EXPECT_EQ(cutTexts(*form), std::vector<std::string>{}) << factor << ", " << page;
        }
        form->Unload();
    }
}

TEST_F(Options, TheTabKeyLeadsToTheTickedChoices) {
    open();
    form->Option5->click();
    for (const auto& [button, reached] : {std::pair{form->Option1, false},
                                          {form->Option2, true},
                                          {form->Option4, false},
                                          {form->Option5, true},
                                          {form->Option6, false},
                                          {form->Option7, true}})
        EXPECT_EQ(bool(button->focusPolicy() & Qt::TabFocus), reached) << button->objectName().toStdString();
}

TEST_F(Options, EscapeGoesBackToThePageAndTheButtonHasTheFocus) {
    open();
    click(*form->Command4);
    QTest::keyClick(form->Command3, Qt::Key_Escape);
    EXPECT_TRUE(form->Picture1->isVisible());
    EXPECT_EQ(form->focusWidget(), form->Command4);
}

TEST_F(Options, TheNumberOfADeletedDiscIsTakenWhenAnyFreeOneIsWanted) {
    addDisc(1, "One", "1111-1111");
    addDisc(3, "Three", "3333-3333");
    open();
    form->Option6->click();
    goToScanning();
    click(*form->Command2);
    EXPECT_EQ(numberOf("Disc"), "2");
}

TEST_F(Options, TheNextNumberIsTakenWhenTheChoiceWasTakenBack) {
    addDisc(1, "One", "1111-1111");
    addDisc(3, "Three", "3333-3333");
    setScanned(3);
    open();
    form->Option6->click();
    form->Option7->click();
    goToScanning();
    click(*form->Command2);
    EXPECT_EQ(numberOf("Disc"), "4");
}

TEST_F(Options, AreNotKeptForTheNextWizard) {
    open();
    form->Option1->click();
    form->Unload();
    form = nullptr;
    EXPECT_NE(settings().find("scanned with basic details"), std::string::npos);
}

TEST_F(Options, WithTheBoxLeftAloneErrorsAreLogged) {
    EXPECT_EQ(scannedComments(), kSentenceBeforeLog);
}

TEST_F(Options, TheFirstClickOnTheLogBoxUnticksItAndLogsNoMore) {
    open();
    form->Check2->click();
    EXPECT_FALSE(form->Check2->value());
    EXPECT_EQ(scannedComments(), kSentence);
}

TEST_F(Options, EveryLaterClickLeavesTheBoxUntickedAndLogsAgain) {
    open();
    for (int clicks = 1; clicks <= 3; ++clicks) {
        form->Check2->click();
        EXPECT_FALSE(form->Check2->value()) << clicks;
    }
    EXPECT_EQ(scannedComments(), kSentenceBeforeLog);
}
