#include "support/windows/ScriptedMsgBox.h"

#include <gtest/gtest.h>

namespace discaro::test {

ScriptedMsgBox::ScriptedMsgBox()
    : m_before(kit::setAnswerer([this](const kit::Question& question) { return answer(question); })) {}

ScriptedMsgBox::~ScriptedMsgBox() {
    kit::setAnswerer(m_before);
    for (const auto& step : m_steps)
        ADD_FAILURE() << "never asked: " << step.question.text.toStdString();
}

ScriptedMsgBox& ScriptedMsgBox::expect(const QString& text, kit::Buttons buttons, kit::Icon icon, const QString& title,
                                       kit::Answer answer) {
    m_steps.push_back({{text, buttons, icon, title, nullptr}, answer, false});
    return *this;
}

ScriptedMsgBox& ScriptedMsgBox::expectTitled(const QString& title, kit::Icon icon, kit::Buttons buttons,
                                             kit::Answer answer) {
    m_steps.push_back({{{}, buttons, icon, title, nullptr}, answer, true});
    return *this;
}

kit::Answer ScriptedMsgBox::answer(const kit::Question& question) {
    ++m_asked;
    m_last = question;
    if (atQuestion)
        atQuestion();
    if (m_steps.empty()) {
        ADD_FAILURE() << "not expected: " << question.title.toStdString() << ": " << question.text.toStdString();
        return kit::Answer::Cancel;
    }
    const Step step = m_steps.front();
    m_steps.pop_front();
    const bool told = step.anyText || question.text == step.question.text;
    EXPECT_TRUE(told) << question.text.toStdString() << "\ninstead of\n" << step.question.text.toStdString();
    EXPECT_EQ(question.title.toStdString(), step.question.title.toStdString());
    EXPECT_EQ(question.icon, step.question.icon) << question.text.toStdString();
    EXPECT_EQ(question.buttons, step.question.buttons) << question.text.toStdString();
    return told ? step.answer : kit::Answer::Cancel;
}

} // namespace discaro::test
