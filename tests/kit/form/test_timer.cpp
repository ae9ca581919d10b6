#include "kit/SampleTest.h"
#include "kit/program/Yield.h"

using namespace discaro;
using namespace discaro::test;

namespace {

class Timer : public SampleTest {
protected:
    long ticks() const { return std::count(form->heard.begin(), form->heard.end(), "timer"); }
};

} // namespace

TEST_F(Timer, TicksWhileEnabled) {
    form->Show();
    form->Timer1->setEnabled(true);
    EXPECT_TRUE(waitFor([this] { return ticks() >= 3; }));
}

TEST_F(Timer, AHandlerThatDisablesItMakesItOneShot) {
    form->onTimer = [this] { form->Timer1->setEnabled(false); };
    form->Show();
    form->Timer1->setEnabled(true);
    EXPECT_TRUE(waitFor([this] { return ticks() == 1; }));
    EXPECT_FALSE(QTest::qWaitFor([this] { return ticks() > 1; }, 50));
}

// Timers and tray icons go when it is told; what the window holds may take long to be given back.
TEST_F(Timer, HearsOfTheUnloadBeforeWhatTheWindowHoldsIsGivenBack) {
    std::vector<std::string> order;
    QObject::connect(form, &kit::Form::Unloaded, form, [&] { order.emplace_back("unloaded"); });
    form->Show();
    form->atUnload([&] { order.emplace_back("given back"); });
    form->Unload();
    EXPECT_EQ(order, (std::vector<std::string>{"unloaded", "given back"}));
}

TEST_F(Timer, AnIntervalOfZeroNeverTicks) {
    form->Timer1->setInterval(0);
    form->Timer1->setEnabled(true);
    EXPECT_TRUE(form->Timer1->isEnabled());
    EXPECT_FALSE(QTest::qWaitFor([this] { return ticks() > 0; }, 50));
    form->Timer1->setInterval(-5);
    EXPECT_EQ(form->Timer1->interval(), 0);
}

TEST_F(Timer, ItsHandlerIsNotEnteredAgainWhileItYields) {
    int depth = 0;
    int deepest = 0;
    form->onTimer = [&] {
        deepest = std::max(deepest, ++depth);
        for (int more = 0; more < 200; ++more)
            kit::yield();
        --depth;
    };
    form->Timer1->setEnabled(true);
    EXPECT_TRUE(waitFor([this] { return ticks() >= 3; }));
    EXPECT_EQ(deepest, 1);
}

TEST_F(Timer, AQuickOneWaitsUntilItsWindowIsPainted) {
    bool painted = false;
    form->onTimer = [&] {
        painted = form->isPainted();
        form->Timer1->setEnabled(false);
    };
    form->Timer1->setEnabled(true);
    form->Show();
    EXPECT_TRUE(waitFor([this] { return ticks() == 1; }));
    EXPECT_TRUE(painted);
}

TEST_F(Timer, AQuickOneOfAHiddenWindowDoesNotWait) {
    form->Load();
    form->Timer1->setEnabled(true);
    EXPECT_TRUE(waitFor([this] { return ticks() >= 1; }));
    EXPECT_FALSE(form->isPainted());
}
