#include "kit/display/ElidedLabel.h"

#include "kit/common/CellText.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QToolTip>

namespace discaro::kit {

ElidedLabel::ElidedLabel(QWidget* parent)
    : Label(parent) {
    setWordWrap(false);
}

QString ElidedLabel::fitted() const {
    return fontMetrics().elidedText(oneLine(text()), Qt::ElideMiddle, contentsRect().width() - std::max(0, indent()));
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return Label::event(event);
    if (fitted() == text())
        QToolTip::hideText();
    else
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tipText(text()), this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawFrame(&painter);
    const QRect room = contentsRect().adjusted(std::max(0, indent()), 0, 0, 0);
    style()->drawItemText(&painter, room, static_cast<int>(alignment()) | Qt::TextSingleLine, palette(), isEnabled(),
                          fitted(), foregroundRole());
}

} // namespace discaro::kit
