#pragma once

#include "explorer/PropertiesForm.h"

namespace discaro::explorer {

// The properties of the directory that SelectedDirectory names: its counts, its totals and its
// comments.
class EXDir : public PropertiesForm {
    Q_OBJECT
public:
    EXDir();

protected:
    void Form_Load() override;

private:
    static const kit::FormTable<EXDir> kTable;

    void bindFields();
    void Timer1_Timer();
};

} // namespace discaro::explorer
