#include "scanner_window/WizardTest.h"

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
    // The comments that the scan leaves, which tell whether errors were logged.
    std::string scannedComments() {
        goToScanning();
        click(*form->Command2);
        return field("drive", "Comments");
    }
};

constexpr auto kSentence = "Scanned with basic details ignoring all errors.";

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
    EXPECT_NE(settings().find("scanned with basic details ignoring all errors."),
              std::string::npos);
}

TEST_F(Options, EachDetailLevelIsTakenOver) {
    open();
    form->Option1->click();
    EXPECT_NE(settings().find("scanned with all details"), std::string::npos);
}

TEST_F(Options, MinimalDetailAndCancelAreTakenOver) {
    open();
    form->Option3->click();
    form->Option5->click();
    EXPECT_NE(settings().find("scanned with minimal details not ignoring any errors."),
              std::string::npos);
}

TEST_F(Options, AClickOnACaptionIsAClickOnItsButton) {
    open();
    emit form->Label10->Click();
    EXPECT_TRUE(form->Option1->value());
    emit form->Label17->Click();
    EXPECT_TRUE(form->Option6->value());
    EXPECT_TRUE(form->Option1->value()) << "the tabs' choices do not disturb each other";
}

TEST_F(Options, AreNotKeptForTheNextWizard) {
    open();
    form->Option1->click();
    form->Unload();
    form = nullptr;
    EXPECT_NE(settings().find("scanned with basic details"), std::string::npos);
}

TEST_F(Options, WithTheBoxLeftAloneErrorsAreLogged) {
    EXPECT_EQ(scannedComments(), std::string(kSentence) + "\r\n");
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
    EXPECT_EQ(scannedComments(), std::string(kSentence) + "\r\n");
}
