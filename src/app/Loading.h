#pragma once

#include "kit/form/FormTable.h"

namespace discaro::app {

// The please-wait box between two windows: exactly as large as its text.
class Loading : public kit::Form {
public:
    Loading();

    kit::Label* Label1 = nullptr; // the text

protected:
    void Form_Load() override;

private:
    static const kit::FormTable<Loading> kTable;
};

} // namespace discaro::app
