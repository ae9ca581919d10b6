#pragma once

#include "kit/controls/Controls.h"

namespace discaro::kit {

// A label of one line for texts of any length, such as paths: one that is too long loses its middle on the screen, and
// is told whole by a tool tip and by screen readers.
class ElidedLabel : public Label {
    Q_OBJECT
public:
    explicit ElidedLabel(QWidget* parent = nullptr);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString fitted() const;
};

} // namespace discaro::kit
