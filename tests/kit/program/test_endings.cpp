#include "base/RuntimeError.h"
#include "kit/SampleTest.h"
#include "kit/program/UnhandledErrors.h"
#include "kit/program/Yield.h"

#include <QtCore/QTimer>

using namespace discaro;
using namespace discaro::test;
using base::ErrorNumber;
using base::RuntimeError;

namespace {

class Endings : public SampleTest {
protected:
    void SetUp() override { form->Show(); }

    // Presses the button whose handler fails, and gives the exit code of the end that follows. By
    // key: an exception that passes through a mouse event leaks what the window library keeps there.
    int endOfClick() {
        try {
            asHandler([this] { emit form->Command1(0).Click(); });
        } catch (const ProgramEnded& ended) {
            return ended.exitCode;
        }
        return -1;
    }

    const ThrowingEnd throwingEnd;
    ScriptedMsgBox script;
};

QString reportOf(const RuntimeError& error) {
    return QString("Run-time error %1:\n\n%2").arg(error.number()).arg(error.description().c_str());
}

} // namespace

TEST_F(Endings, AnErrorThatNoHandlerTakesIsReportedAndEndsTheProgram) {
    const RuntimeError error(ErrorNumber::NoTransaction);
    script.expect(reportOf(error), kit::Buttons::Ok, kit::Icon::Critical, "discaro-test");
    QCoreApplication::setApplicationName("discaro-test");
    form->onCommand = [&] { throw error; };
    EXPECT_EQ(endOfClick(), 1);
    EXPECT_FALSE(kit::isEndingByError());
}

TEST_F(Endings, AnErrorOfTheLanguagesLibraryIsReportedToo) {
    script.expect("Run-time error:\n\nno such thing", kit::Buttons::Ok, kit::Icon::Critical, "discaro-test");
    QCoreApplication::setApplicationName("discaro-test");
    form->onCommand = [] { throw std::out_of_range("no such thing"); };
    EXPECT_EQ(endOfClick(), 1);
}

TEST_F(Endings, AnErrorInAHandlerThatRunsDuringAYieldEndsTheProgramThere) {
    const RuntimeError error(ErrorNumber::DiskFull);
    script.expect(reportOf(error), kit::Buttons::Ok, kit::Icon::Critical, "discaro-test");
    QCoreApplication::setApplicationName("discaro-test");
    bool passedOver = true;
    form->onCommand = [&] {
        if (form->heard.back() == "click 3")
            throw error;
        passedOver = base::skipErrors([&] { asHandler([this] { emit form->Command1(3).Click(); }); });
    };
    EXPECT_EQ(endOfClick(), 1);
}

TEST_F(Endings, AnErrorThatAHandlerPassesOverEndsNothing) {
    form->onCommand = [] { EXPECT_FALSE(base::skipErrors([] { throw RuntimeError(ErrorNumber::NoCurrentRecord); })); };
    EXPECT_EQ(endOfClick(), -1);
}

TEST_F(Endings, TheEntryProcedureEndsInTheSameWay) {
    const RuntimeError error(ErrorNumber::FileMissing, "kvt.mde");
    script.expect(reportOf(error), kit::Buttons::Ok, kit::Icon::Critical, "discaro-test");
    QCoreApplication::setApplicationName("discaro-test");
    EXPECT_THROW(kit::reportingErrors([&] { throw error; }), ProgramEnded);
    EXPECT_NO_THROW(kit::reportingErrors([] {}));
}

TEST_F(Endings, TimersRestWhileTheReportIsUp) {
    QCoreApplication::setApplicationName("discaro-test");
    form->onCommand = [] { throw RuntimeError(ErrorNumber::DiskFull); };
    kit::setAnswerer([this](const kit::Question&) {
        form->Timer1->setEnabled(true);
        EXPECT_TRUE(kit::isEndingByError());
        EXPECT_FALSE(QTest::qWaitFor([this] { return form->heard.back() == "timer"; }, 50));
        return kit::Answer::Ok;
    });
    EXPECT_EQ(endOfClick(), 1);
}

TEST_F(Endings, DeclaredHandlersRestWhileTheReportIsUp) {
    QCoreApplication::setApplicationName("discaro-test");
    int runs = 0;
    form->onCommand = [&] {
        ++runs;
        throw RuntimeError(ErrorNumber::DiskFull);
    };
    kit::setAnswerer([this](const kit::Question&) {
        emit form->Command1(0).Click();
        return kit::Answer::Ok;
    });
    EXPECT_EQ(endOfClick(), 1);
    EXPECT_EQ(runs, 1);
}

TEST_F(Endings, ASecondErrorWaitsForTheAnswerToTheReport) {
    QCoreApplication::setApplicationName("discaro-test");
    form->onCommand = [] { throw RuntimeError(ErrorNumber::DiskFull); };
    int reports = 0;
    bool answered = false;
    kit::setAnswerer([&](const kit::Question&) {
        ++reports;
        kit::reportingErrors([] { throw RuntimeError(ErrorNumber::NoTransaction); });
        answered = true;
        return kit::Answer::Ok;
    });
    EXPECT_EQ(endOfClick(), 1);
    EXPECT_EQ(reports, 1);
    EXPECT_TRUE(answered);
}

TEST(EndProgram, EndsTheProcessAtOnceWithItsExitCode) {
    EXPECT_EXIT(kit::EndProgram(3), ::testing::ExitedWithCode(3), "");
}

TEST(EndProgram, RunsNoUnloadHandler) {
    EXPECT_EXIT(
        {
            auto* form = new SampleForm;
            form->onUnload = [] { fprintf(stderr, "unloaded"); };
            form->Show();
            kit::EndProgram();
        },
        ::testing::ExitedWithCode(0), "^$");
}

TEST(Beep, GoesThroughItsSeam) {
    const CountedBeeps beeps;
    kit::Beep();
    kit::Beep();
    EXPECT_EQ(beeps.count(), 2);
}
