#pragma once

#include "kit/form/FormTable.h"

namespace discaro::app {

// Shown while a query runs: a round picture.
class Searching : public kit::Form {
public:
    Searching();

    kit::Picture* Image1 = nullptr; // a magnifier over a disc

protected:
    void Form_Load() override;

private:
    static const kit::FormTable<Searching> kTable;
};

} // namespace discaro::app
