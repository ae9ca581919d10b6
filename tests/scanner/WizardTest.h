#pragma once

#include "app/Module1.h"
#include "app/Windows.h"
#include "kit/program/UnhandledErrors.h"
#include "scanner/Scanform.h"
#include "support/MemoryMedium.h"
#include "support/catalogue/ScratchCatalogue.h"
#include "support/windows/Endings.h"
#include "support/windows/FormProbe.h"
#include "support/windows/FreshWindows.h"
#include "support/windows/ScriptedMsgBox.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>

namespace discaro::test {

// A drive whose disc is changed by a test.
class ChangeableMedium : public disc::Medium {
public:
    MemoryMedium& insert(MemoryNode root) {
        m_disc = std::make_unique<MemoryMedium>(std::move(root));
        return *m_disc;
    }

    disc::VolumeFacts facts() const override { return m_disc->facts(); }
    disc::Place root() const override { return m_disc->root(); }
    disc::Listing list(const disc::Place& parent, const disc::Place& directory) const override {
        return m_disc->list(parent, directory);
    }
    disc::FileFacts fileFacts(const disc::Place& directory, const disc::Place& file) const override {
        return m_disc->fileFacts(directory, file);
    }
    std::unique_ptr<disc::ByteSource> open(const disc::Place& directory, const disc::Place& file) const override {
        return m_disc->open(directory, file);
    }

private:
    std::unique_ptr<MemoryMedium> m_disc = std::make_unique<MemoryMedium>(folder(""));
};

// The scan window over a catalogue of its own, with a disc in memory in a drive.
class WizardTest : public testing::Test {
protected:
    WizardTest();

    // A disc drive more, with a disc in it; its letter.
    char addDrive(MemoryNode root);
    // From now on the wizard opens over the drives of this table.
    static void registerWizard(disc::DriveTable& table);

    // Puts a disc into a drive, at first that of all tests, in the place of the one before.
    MemoryMedium& insert(MemoryNode root, char driveLetter = 0);

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
    int64_t count(const char* table) const { return m_catalogue.count(table); }
    std::string field(const char* table, const char* name) const { return m_catalogue.field(table, {}, name); }
    // Adds a row to Drive, as an earlier scan left it.
    void addDisc(int64_t number, const char* name, const char* serial);

private:
    const ScratchCatalogue m_catalogue;
    std::map<char, ChangeableMedium*> m_discs;

protected:
    disc::DriveTable drives;
    char letter = 0; // of the drive that all tests have
    const FreshWindows windows;
    ScriptedMsgBox box;
    CountedBeeps beeps;
    scanner::Scanform* form = nullptr;
};

} // namespace discaro::test
