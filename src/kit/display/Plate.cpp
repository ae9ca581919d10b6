#include "kit/display/Plate.h"

#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionTabWidgetFrame>

namespace discaro::kit {

void Plate::paintEvent(QPaintEvent*) {
    QStyleOptionTabWidgetFrame option;
    option.initFrom(this);
    option.lineWidth = 1;
    option.shape = QTabBar::RoundedNorth;
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_FrameTabWidget, &option, &painter, this);
}

} // namespace discaro::kit
