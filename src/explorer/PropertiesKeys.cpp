#include "explorer/PropertiesKeys.h"

#include "kit/common/Keys.h"

namespace discaro::explorer {

PropertiesKey propertiesKey(const QKeyEvent& event) {
    const int key = event.key();
    if (event.modifiers().testFlag(Qt::ControlModifier)) {
        const bool back = event.modifiers().testFlag(Qt::ShiftModifier);
        if (key == Qt::Key_PageDown || (key == Qt::Key_Tab && !back))
            return PropertiesKey::NextPage;
        if (key == Qt::Key_PageUp || key == Qt::Key_Backtab || (key == Qt::Key_Tab && back))
            return PropertiesKey::PreviousPage;
        return PropertiesKey::None;
    }
    return kit::isEnter(event) && !event.isAutoRepeat() ? PropertiesKey::Ok : PropertiesKey::None;
}

void turnPage(kit::Tabs& tabs, PropertiesKey key) {
    const int step = key == PropertiesKey::NextPage ? 1 : tabs.count() - 1;
    tabs.setCurrentIndex((tabs.currentIndex() + step) % tabs.count());
}

} // namespace discaro::explorer
