#pragma once

#include <QtGui/QKeyEvent>

namespace discaro::kit {

// Whether the key is Enter, be it the large one or that of the number pad.
inline bool isEnter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace discaro::kit
