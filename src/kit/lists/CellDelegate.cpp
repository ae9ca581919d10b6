#include "kit/lists/CellDelegate.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QTextLayout>
#include <QtWidgets/QListView>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolTip>

#include <algorithm>

namespace discaro::kit {

namespace {

// A column of small icons, in lines of the font.
constexpr int kSmallColumn = 10;

// How much of the selection's colour is left without the focus, of a hundred.
constexpr int kPale = 30;

const QChar kMore(0x2026);

enum class Look { Cell, Large, Small, List };

Look lookOf(const QListView* icons) {
    if (!icons)
        return Look::Cell;
    if (icons->viewMode() == QListView::IconMode)
        return Look::Large;
    return icons->flow() == QListView::LeftToRight ? Look::Small : Look::List;
}

const QListView* iconsOf(const QStyleOptionViewItem& option) {
    return qobject_cast<const QListView*>(option.widget);
}

// What styles leave free on either side of a picture and of a text.
int sideMargin(const QStyleOptionViewItem& option) {
    return option.widget->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, option.widget) + 1;
}

// Names are measured by the ten thousand: no more than the text is laid out.
int widthBeside(const QStyleOptionViewItem& option, const QString& text) {
    return option.decorationSize.width() + option.fontMetrics.horizontalAdvance(text) + 4 * sideMargin(option);
}

// The width that a row of icons can fill, scroll bar apart. One that fills the view's to the last pixel is too wide.
int roomFor(const QListView& icons) {
    const int bar = icons.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, icons.verticalScrollBar());
    return std::max(1, icons.maximumViewportSize().width() - bar - 1);
}

int widthInColumns(const QListView& icons, int line, int wanted) {
    const int room = roomFor(icons);
    const int column = room / std::max(1, room / (line * kSmallColumn));
    return std::min((wanted + column - 1) / column * column, room);
}

QSize roomBelow(const QStyleOptionViewItem& option, const QListView& icons) {
    const int line = option.fontMetrics.height();
    return icons.gridSize() - QSize(line / 2, line * 2 / 3);
}

// The text in two lines at most, broken inside a word where that does not fit; the end is left out then.
QString inTwoLines(const QString& text, const QFont& font, int width) {
    QTextOption breaks;
    breaks.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(text, font);
    layout.setTextOption(breaks);
    layout.beginLayout();
    QTextLine first = layout.createLine();
    if (first.isValid())
        first.setLineWidth(width);
    layout.endLayout();
    const auto end = first.isValid() ? first.textLength() : text.size();
    if (end >= text.size())
        return text;
    const QString rest = text.mid(end).trimmed();
    return text.left(end) + QChar(QChar::LineSeparator) + QFontMetrics(font).elidedText(rest, Qt::ElideRight, width);
}

QString belowPicture(const QStyleOptionViewItem& option, const QString& text) {
    const QListView* icons = iconsOf(option);
    const int room = roomBelow(option, *icons).width() - 2 * sideMargin(option);
    return inTwoLines(text, option.font, room);
}

// Whether what needs that width and stands on one side of its cell is seen from its beginning to its end. A view that
// is scrolled sideways hides the one or the other.
bool isInSight(int width, Qt::Alignment side, const QRect& cell, const QRect& seen) {
    const QRect place = QStyle::alignedRect(Qt::LeftToRight, side, QSize(width, cell.height()), cell);
    return width <= cell.width() && place.left() >= seen.left() && place.right() <= seen.right();
}

} // namespace

CellDelegate::CellDelegate(QObject* parent)
    : QStyledItemDelegate(parent) {}

bool CellDelegate::showsAll(const QStyleOptionViewItem& option, const QModelIndex& index, const QRect& cell,
                            const QRect& seen) const {
    const QString text = index.data(Qt::DisplayRole).toString();
    switch (lookOf(iconsOf(option))) {
    case Look::Large:
        return text.endsWith(kMore) || !belowPicture(option, text).endsWith(kMore);
    case Look::Small:
    case Look::List:
        return isInSight(widthBeside(option, text), Qt::AlignLeft, cell, seen);
    case Look::Cell:
        break;
    }
    const Qt::Alignment side(index.data(Qt::TextAlignmentRole).toInt());
    return isInSight(QStyledItemDelegate::sizeHint(option, index).width(), side, cell, seen);
}

bool CellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                             const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const QRect cell = view->visualRect(index);
    const QRect seen = view->viewport()->rect();
    const bool oneLine = !index.data(Qt::ToolTipRole).toString().contains(u'\n');
    if (!oneLine || !showsAll(option, index, cell, seen))
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    QToolTip::hideText();
    return true;
}

QSize CellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QListView* icons = iconsOf(option);
    const Look look = lookOf(icons);
    if (look == Look::Cell)
        return QStyledItemDelegate::sizeHint(option, index);
    if (look == Look::Large)
        return roomBelow(option, *icons);
    const int line = option.fontMetrics.height();
    const int wanted = widthBeside(option, index.data(Qt::DisplayRole).toString());
    const int width =
        look == Look::Small ? widthInColumns(*icons, line, wanted) : std::min(wanted + line / 2, roomFor(*icons));
    return {width, std::max(option.decorationSize.height(), line) + line / 3};
}

// Below a large picture a text stands in the middle, whatever the side of its column.
void CellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    if (lookOf(iconsOf(*option)) != Look::Large)
        return;
    option->displayAlignment = Qt::AlignHCenter | Qt::AlignTop;
    option->text = belowPicture(*option, option->text);
}

// One palette for as long as the colours are the same: styles keep pictures by it.
const QPalette& paleWithoutFocus(const QPalette& colours) {
    static qint64 of = 0;
    static QPalette made;
    if (of == colours.cacheKey())
        return made;
    const QColor ground = colours.color(QPalette::Active, QPalette::Base);
    const QColor mark = colours.color(QPalette::Active, QPalette::Highlight);
    const auto mix = [](int one, int other) { return (kPale * one + (100 - kPale) * other) / 100; };
    made = colours;
    made.setColor(
        QPalette::Inactive, QPalette::Highlight,
        QColor(mix(mark.red(), ground.red()), mix(mark.green(), ground.green()), mix(mark.blue(), ground.blue())));
    made.setColor(QPalette::Inactive, QPalette::HighlightedText, colours.color(QPalette::Active, QPalette::Text));
    of = colours.cacheKey();
    return made;
}

QPoint menuPlace(const QAbstractItemView& view) {
    const QRect cell = view.visualRect(view.currentIndex());
    const QRect seen = view.viewport()->rect();
    const QPoint below = cell.isValid() ? cell.bottomLeft() : QPoint();
    const QPoint inside(std::clamp(below.x(), seen.left(), seen.right()),
                        std::clamp(below.y(), seen.top(), seen.bottom()));
    return view.viewport()->mapToGlobal(inside);
}

} // namespace discaro::kit
