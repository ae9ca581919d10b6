#pragma once

#include "kit/controls/TextBox.h"

namespace discaro::kit {

// A value that is shown and not changed: it looks like a label, and the user can reach it with the
// Tab key, select it and copy it, and a screen reader reads it. The text stands on one line,
// cleaned as `oneLine` does. One that is too long is shortened on the screen until the box has the
// focus, and its tool tip tells it whole.
class ValueBox : public TextBox {
    Q_OBJECT
public:
    explicit ValueBox(QWidget* parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString& text);
    // Where a text that is too long loses something; at first its end.
    void setElideMode(Qt::TextElideMode mode);
    // What stands on the screen.
    QString shownText() const { return TextBox::text(); }

protected:
    bool event(QEvent* event) override;

private:
    void showLine();

    QString m_text;
    Qt::TextElideMode m_mode = Qt::ElideRight;
};

} // namespace discaro::kit
