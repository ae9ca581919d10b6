#pragma once

#include "kit/program/MsgBox.h"

#include <deque>
#include <functional>

namespace discaro::test {

// Answers questions in the order told, as long as it lives. A question that was not told, or is
// another than the next told one, fails the test and is answered Cancel; one told and not asked
// fails it at the end.
class ScriptedMsgBox {
public:
    ScriptedMsgBox();
    ~ScriptedMsgBox();
    ScriptedMsgBox(const ScriptedMsgBox&) = delete;
    ScriptedMsgBox& operator=(const ScriptedMsgBox&) = delete;

    ScriptedMsgBox& expect(const QString& text, kit::Buttons buttons, kit::Icon icon, const QString& title,
                           kit::Answer answer = kit::Answer::Ok);

    // The same for a box whose text the engine words.
    ScriptedMsgBox& expectTitled(const QString& title, kit::Icon icon, kit::Buttons buttons = kit::Buttons::Ok,
                                 kit::Answer answer = kit::Answer::Ok);

    // Runs while each box is up, if it is set.
    std::function<void()> atQuestion;

    // What was asked last.
    const kit::Question& last() const { return m_last; }
    int asked() const { return m_asked; }

private:
    struct Step {
        kit::Question question;
        kit::Answer answer;
        bool anyText = false;
    };

    kit::Answer answer(const kit::Question& question);

    std::deque<Step> m_steps;
    kit::Question m_last;
    int m_asked = 0;
    kit::Answerer m_before;
};

} // namespace discaro::test
