#pragma once

#include "app/Module1.h"
#include "app/Windows.h"
#include "kit/UnhandledErrors.h"
#include "scanner/Scanform.h"
#include "support/MemoryMedium.h"
#include "support/windows/Endings.h"
#include "support/windows/FormProbe.h"
#include "support/windows/ScriptedMsgBox.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

namespace discaro::test {

// The scan window over a catalogue of its own, with a disc in memory in a drive.
class WizardTest : public testing::Test {
protected:
    WizardTest();
    ~WizardTest() override;

    // Puts a disc into the tests' drive in the place of the one before.
    MemoryMedium& insert(MemoryNode root);

    // Opens the wizard; it stands on page 1.
    void open();

    // To a page by Next, with "Disc" as the name and the tests' drive chosen.
    void goTo(int page);
    // From page 1 through Finish to the scanning screen.
    void goToScanning();

    void chooseTestDrive();
    kit::Button& button(int index);
    void next() { click(button(2)); }
    void back() { click(button(1)); }

    static std::string said(const kit::TextBox& box) { return box.text().toStdString(); }
    bool isUp(const char* window) const { return app::Windows::IsLoaded(window); }
    int64_t count(const char* table) const;
    std::string field(const char* table, const char* name) const;
    // Adds a row to Drive, as an earlier scan left it.
    void addDisc(int64_t number, const char* name, const char* serial);

    ScriptedMsgBox box;
    CountedBeeps beeps;
    scanner::Scanform* form = nullptr;
    char letter = 0; // of the tests' drive

private:
    std::filesystem::path m_folder;
};

} // namespace discaro::test
