#pragma once

#include "app/Module1.h"
#include "db/DBEngine.h"
#include "db/value/Value.h"
#include "explorer/EXCDROM.h"
#include "explorer/EXDir.h"
#include "explorer/EXFile.h"
#include "support/catalogue/ScratchCatalogue.h"
#include "support/windows/Endings.h"
#include "support/windows/FormProbe.h"
#include "support/windows/FreshWindows.h"
#include "support/windows/ScriptedMsgBox.h"

#include <QtCore/QPointer>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace discaro::test {

using Fields = std::vector<std::pair<std::string, db::Value>>;

// A catalogue with rows that a test adds.
class TestCatalogue : public ScratchCatalogue {
public:
    void add(std::string_view table, const Fields& fields) const;
    void addDisc(int64_t number, const db::Value& name, Fields further = {}) const;
    // A directory below the root of disc 1.
    void addDirectory(const std::string& number, const std::string& name, Fields further = {}) const;
    // A file; returns its number.
    int64_t addFile(const std::string& directory, const db::Value& name, Fields further = {}) const;

    // A field of the row that the condition finds, as another program would read it.
    db::Value stored(std::string_view table, const std::string& condition, std::string_view field) const;
    // Every row of every table.
    std::vector<std::string> everything() const;
};

// The properties windows over a small catalogue: discs 1 to 3, named as their numbers in words, two
// directories of disc 1, and a file in the first of them.
class PropertiesTest : public ::testing::Test {
protected:
    PropertiesTest();
    ~PropertiesTest() override;

    // Shows a window as the program does, and lets its timer find the row. One window to a test.
    template <typename Window>
    Window& open() {
        auto* window = show<Window>();
        EXPECT_TRUE(waitFor([window] { return !window->Timer1->isEnabled(); }));
        return *window;
    }

    // The same, but stops before the timer.
    template <typename Window>
    Window* show() {
        auto* window = new Window;
        m_form = window;
        // The test decides when a timer that has not found its row yet may run.
        window->Show();
        return window;
    }

    bool isOpen() const { return m_form && !m_form->isUnloaded(); }

    // Types at the end of a box on whatever page.
    static void type(kit::TextBox& box, const char* text);
    // Replaces a box's text as a user does.
    static void retype(kit::TextBox& box, const char* text);

    TestCatalogue catalogue;

private:
    QPointer<kit::Form> m_form;
    const FreshWindows m_windows;

protected:
    ScriptedMsgBox script;
};

db::Value text(const std::string& utf8Text);
inline const db::Value kNull;

// The value beside a caption on a page of the window, or on its plate.
std::string valueBeside(const kit::Form& form, const char* caption);

} // namespace discaro::test
