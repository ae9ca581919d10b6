#pragma once

#include "app/Module1.h"
#include "app/Windows.h"
#include "kit/form/Form.h"
#include "kit/form/Timer.h"
#include "support/catalogue/ScratchCatalogue.h"
#include "support/windows/Endings.h"
#include "support/windows/FormProbe.h"
#include "support/windows/FreshWindows.h"
#include "support/windows/ScriptedMsgBox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace discaro::test {

// What the windows of a test did, in order: "Search load", "Search unload".
using Log = std::vector<std::string>;

// Stands for a window that another room has: notes its loading and unloading.
class StubForm : public kit::Form {
public:
    StubForm(const char* name, Log& log, std::function<void(kit::Form&)> onLoad = {});

    kit::Timer* Timer2 = nullptr; // as the explorer's, which others start

protected:
    void Form_Load() override;
    void Form_Unload() override;

private:
    Log& m_log;
    std::function<void(kit::Form&)> m_onLoad;
};

// An application folder with an empty catalogue, the shell's own windows, and stubs for all others.
class AppTest : public ::testing::Test {
protected:
    AppTest();

    // A stub for a window, in the place of the one before. As a task window does, it unloads
    // Loading when it loads.
    void stub(const char* name, std::function<void(kit::Form&)> onLoad = {});

    // Adds a row for one disc.
    void addDisc();

    const std::filesystem::path& folder() const { return m_catalogue.folder(); }

    Log log;

private:
    const ScratchCatalogue m_catalogue;
    const FreshWindows m_windows;
};

} // namespace discaro::test
