#pragma once

#include <QtGui/QKeyEvent>

namespace discaro::kit {

// Whether the key is Enter, be it the large one or that of the number pad.
inline bool isEnter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

// Whether the key presses what has the focus, as a click does.
inline bool isPress(const QKeyEvent& event) {
    return isEnter(event) || event.key() == Qt::Key_Space;
}

} // namespace discaro::kit
