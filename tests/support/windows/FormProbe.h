#pragma once

#include "kit/form/Form.h"

#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace discaro::test {

// A control of a window by the name of its table, "Command1(3)". The test ends when there is none
// of that class.
template <typename T>
T& control(const kit::Form& form, const char* name) {
    auto* found = form.findChild<T*>(QString::fromLatin1(name));
    if (!found)
        throw std::logic_error(form.name().toStdString() + " has no " + name + " of that class");
    return *found;
}

// Clicks in the middle of a control, which must be enabled and shown.
void click(QWidget& control);

// Types a text as a user would.
void typeInto(QWidget& control, const char* text);

// Moves the mouse over a control without a button.
void hover(QWidget& control);

// Lets the event loop run until the condition holds; false when it never did.
template <typename Condition>
bool waitFor(Condition condition) {
    return QTest::qWaitFor(condition, 5000);
}

// The controls whose text does not fit into their place, by name; empty for a sound window.
std::vector<std::string> cutTexts(const kit::Form& form);

// The controls that the keyboard reaches, in the order of the Tab key.
std::vector<std::string> tabOrder(const kit::Form& form);

// The controls that take the keyboard and have nothing that a screen reader could say.
std::vector<std::string> speechless(const kit::Form& form);

// The application's font, made larger for as long as this lives.
class LargerFont {
public:
    explicit LargerFont(double factor);
    ~LargerFont();
    LargerFont(const LargerFont&) = delete;
    LargerFont& operator=(const LargerFont&) = delete;

private:
    QFont m_before;
};

} // namespace discaro::test
