#pragma once

#include "kit/SampleForm.h"
#include "support/windows/Endings.h"
#include "support/windows/FormProbe.h"
#include "support/windows/FreshWindows.h"
#include "support/windows/ScriptedMsgBox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::test {

// A test around one sample window; whatever it leaves behind is destroyed at its end.
class SampleTest : public ::testing::Test {
protected:
    ~SampleTest() override {
        if (form)
            form->Unload();
    }

    const FreshWindows windows;
    QPointer<SampleForm> form = new SampleForm;
};

} // namespace discaro::test
