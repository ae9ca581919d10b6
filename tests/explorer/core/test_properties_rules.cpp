#include "base/RuntimeError.h"
#include "catalogue/Discs.h"
#include "db/DBEngine.h"
#include "explorer/CatalogueRig.h"
#include "explorer/PropertiesRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace discaro;
using namespace discaro::test;
using explorer::judgeName;
using explorer::NameVerdict;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

// Discs 1 to 4, the recordset on disc 2.
class JudgedName : public ::testing::Test {
protected:
    JudgedName() {
        for (const int number : {1, 2, 3, 4})
            catalogue.add(DiscRow{.number = number,
                                  .name = "disc " + std::to_string(number),
                                  .label = "VOLUME " + std::to_string(number)});
        discs = db::DBEngine::OpenDatabase(catalogue.path())->OpenRecordset("Drive");
        discs->FindFirst("[id number] like '2'");
    }

    NameVerdict judge(const std::string& wanted, const std::string& opening = "disc 2", const std::string& disc = "2") {
        return judgeName(*discs, {disc, opening, wanted}, [this](const std::string& message) {
            messages.push_back(message);
            stoodOn.push_back((*discs)("id number").Text());
        });
    }

    void rename(int number, const char* name) const { set(number, "prefered name", quotedText(name)); }
    void set(int number, const std::string& field, const std::string& value) const {
        catalogue.run("UPDATE Drive SET \"" + field + "\" = " + value +
                      " WHERE \"id number\" = " + std::to_string(number));
    }

    std::string current() { return (*discs)("id number").Text(); }

    CatalogueRig catalogue;
    std::unique_ptr<db::Recordset> discs;
    std::vector<std::string> messages;
    std::vector<std::string> stoodOn;
};

} // namespace

TEST_F(JudgedName, TheOpeningNameMovesNothing) {
    int moves = 0;
    discs->repositioned = [&] { ++moves; };
    EXPECT_EQ(judge("disc 2"), NameVerdict::Same);
    EXPECT_EQ(moves, 0);
}

TEST_F(JudgedName, ANameOfItsOwnIsFree) {
    EXPECT_EQ(judge("mine"), NameVerdict::Free);
    EXPECT_THAT(messages, IsEmpty());
    EXPECT_EQ(current(), "2");
}

TEST_F(JudgedName, ANameOfALaterDiscIsTaken) {
    EXPECT_EQ(judge("disc 4"), NameVerdict::Taken);
    EXPECT_THAT(messages, ElementsAre("This Preferred name was used once before for CD-ROM number  '4' which has "
                                      "'VOLUME 4' as its Volume label. Please choose another name."));
    EXPECT_THAT(stoodOn, ElementsAre("4"));
    EXPECT_EQ(current(), "2");
}

TEST_F(JudgedName, ANameOfAnEarlierDiscGoesUnnoticed) {
    EXPECT_EQ(judge("disc 1"), NameVerdict::Free);
    EXPECT_EQ(current(), "2");
}

TEST_F(JudgedName, TheFirstOfTheLaterDiscsIsTold) {
    rename(4, "disc 3");
    EXPECT_EQ(judge("disc 3"), NameVerdict::Taken);
    EXPECT_THAT(stoodOn, ElementsAre("3"));
}

TEST_F(JudgedName, AnotherSpellingIsAnotherName) {
    EXPECT_EQ(judge("DISC 2"), NameVerdict::Free);
    EXPECT_EQ(judge("Disc 3"), NameVerdict::Free);
    rename(3, "DISC 2");
    EXPECT_EQ(judge("DISC 2"), NameVerdict::Taken);
}

TEST_F(JudgedName, TheDiscItselfIsNotCompared) {
    rename(2, "second");
    EXPECT_EQ(judge("second", "disc 2"), NameVerdict::Free);
}

TEST_F(JudgedName, ADiscWithoutANameHasNone) {
    set(3, "prefered name", "NULL");
    EXPECT_EQ(judge(""), NameVerdict::Free);
    rename(4, "");
    EXPECT_EQ(judge(""), NameVerdict::Taken);
    EXPECT_THAT(stoodOn, ElementsAre("4"));
}

TEST_F(JudgedName, WhatTheHolderDoesNotHaveIsEmptyInTheMessage) {
    catalogue.add(DiscRow{.number = 5, .name = "five"});
    set(5, "volume name", "NULL");
    EXPECT_EQ(judge("five"), NameVerdict::Taken);
    EXPECT_THAT(messages, ElementsAre("This Preferred name was used once before for CD-ROM number  '5' which has "
                                      "'' as its Volume label. Please choose another name."));
}

TEST_F(JudgedName, TheLastDiscHasNoLaterOnes) {
    discs->MoveLast();
    EXPECT_EQ(judge("disc 1", "disc 4", "4"), NameVerdict::Free);
    EXPECT_EQ(current(), "4");
}

TEST_F(JudgedName, ADiscThatIsGoneIsNotFoundAgain) {
    EXPECT_EQ(judge("disc 3", "disc 2", "77"), NameVerdict::Taken);
    EXPECT_TRUE(discs->NoMatch());
}

TEST_F(JudgedName, ARecordsetOnNoRowSaysSo) {
    discs->MoveLast();
    discs->MoveNext();
    EXPECT_THROW(judge("mine"), base::RuntimeError);
}

TEST(IdCondition, IsACriterionThatMatchesOneNumber) {
    EXPECT_EQ(catalogue::rowCondition("C1D1S3"), "[id number] like 'C1D1S3'");
}
