#pragma once

#include "kit/controls/Controls.h"

namespace discaro::kit {

// A panel with a ground of its own, like that of a tab page: text on it reads on whatever
// background the window has.
class Plate : public Panel {
    Q_OBJECT
public:
    using Panel::Panel;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace discaro::kit
