#include "explorer/PropertiesKeys.h"

namespace discaro::explorer {

namespace {

bool isOneOf(int key, int first, int second) {
    return key == first || key == second;
}

} // namespace

PropertiesKey propertiesKey(const QKeyEvent& event) {
    const int key = event.key();
    if (event.modifiers().testFlag(Qt::ControlModifier)) {
        const bool back = event.modifiers().testFlag(Qt::ShiftModifier);
        if (key == Qt::Key_PageDown || (key == Qt::Key_Tab && !back))
            return PropertiesKey::NextPage;
        if (isOneOf(key, Qt::Key_PageUp, Qt::Key_Backtab) || (key == Qt::Key_Tab && back))
            return PropertiesKey::PreviousPage;
        return PropertiesKey::None;
    }
    const bool enter = isOneOf(key, Qt::Key_Return, Qt::Key_Enter);
    return enter && !event.isAutoRepeat() ? PropertiesKey::Ok : PropertiesKey::None;
}

void turnPage(kit::Tabs& tabs, PropertiesKey key) {
    const int step = key == PropertiesKey::NextPage ? 1 : tabs.count() - 1;
    tabs.setCurrentIndex((tabs.currentIndex() + step) % tabs.count());
}

} // namespace discaro::explorer
