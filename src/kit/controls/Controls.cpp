#include "kit/controls/Controls.h"

#include "base/RuntimeError.h"
#include "kit/common/CellText.h"
#include "kit/common/Keys.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionButton>
#include <QtWidgets/QStyledItemDelegate>
#include <QtWidgets/QToolTip>

#include <algorithm>
#include <functional>

namespace discaro::kit {

namespace {

constexpr int kWholeText = Qt::UserRole + 1;
constexpr int kFile = Qt::UserRole + 2;
constexpr int kPath = Qt::UserRole + 3;

// As high as the label, and as wide as its text with round ends beside it.
void drawPill(QLabel& label, const QPen& pen, const QBrush& brush) {
    const QRect text = label.style()->itemTextRect(label.fontMetrics(), label.contentsRect(),
                                                   static_cast<int>(label.alignment()), true, label.text());
    const int ends = label.height() / 2 + 2;
    const QRectF room = QRectF(label.rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    const QRectF place = room.intersected(QRectF(text.left() - ends, 0, text.width() + 2 * ends, label.height()));
    QPainter painter(&label);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    painter.setBrush(brush);
    painter.drawRoundedRect(place, place.height() / 2, place.height() / 2);
}

// Shows the files' names in a column of their own, paler than the drives; one that is too long loses its middle.
class DriveDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& given, const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, given, index);
        QStyleOptionViewItem option = given;
        initStyleOption(&option, index);
        const auto* style = option.widget ? option.widget->style() : QApplication::style();
        const QRect text = style->subElementRect(QStyle::SE_ItemViewItemText, &option, option.widget);
        const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1;
        const QRect room = text.adjusted(margin + fileColumn(option, index), 0, -margin, 0);
        const bool selected = option.state.testFlag(QStyle::State_Selected);
        QColor ink = option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
        ink.setAlphaF(kPaler);
        painter->save();
        painter->setPen(ink);
        painter->drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          option.fontMetrics.elidedText(index.data(kFile).toString(), Qt::ElideMiddle, room.width()));
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, option.fontMetrics.height() / 2);
    }

private:
    static constexpr float kPaler = 0.75F;

    // Behind the widest of the drives.
    static int fileColumn(const QStyleOptionViewItem& option, const QModelIndex& index) {
        int widest = 0;
        for (int row = 0; row < index.model()->rowCount(); ++row)
            widest = std::max(widest, option.fontMetrics.horizontalAdvance(index.sibling(row, 0).data().toString()));
        return widest + 2 * option.fontMetrics.height();
    }
};

} // namespace

Label::Label(QWidget* parent)
    : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setMouseTracking(true);
}

void Label::setText(const QString& text) {
    if (text == this->text())
        return;
    QLabel::setText(text);
    emit Change();
}

QColor Label::foreColour() const {
    return palette().color(QPalette::Active, QPalette::WindowText);
}

void Label::setForeColour(const QColor& colour) {
    QPalette colours = palette();
    colours.setColor(QPalette::Active, QPalette::WindowText, colour);
    colours.setColor(QPalette::Inactive, QPalette::WindowText, colour);
    setPalette(colours);
}

void Label::setDisabledColour(const QColor& colour) {
    QPalette colours = palette();
    colours.setColor(QPalette::Disabled, QPalette::WindowText, colour);
    setPalette(colours);
}

void Label::setGround(const QColor& colour) {
    if (colour == m_ground)
        return;
    m_ground = colour;
    update();
}

void Label::makeEntry(const QColor& focusMark) {
    m_focusMark = focusMark;
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
}

void Label::mouseMoveEvent(QMouseEvent* event) {
    emit MouseMove(event->position().toPoint());
}

void Label::mousePressEvent(QMouseEvent* event) {
    m_pressed = true;
    event->accept();
}

void Label::mouseReleaseEvent(QMouseEvent* event) {
    const bool inside = rect().contains(event->position().toPoint());
    if (std::exchange(m_pressed, false) && inside)
        emit Click();
}

void Label::keyPressEvent(QKeyEvent* event) {
    if (isEntry() && isPress(*event))
        emit Click();
    else
        QLabel::keyPressEvent(event);
}

void Label::focusInEvent(QFocusEvent* event) {
    QLabel::focusInEvent(event);
    update();
}

void Label::focusOutEvent(QFocusEvent* event) {
    QLabel::focusOutEvent(event);
    update();
}

void Label::paintEvent(QPaintEvent* event) {
    if (m_ground.isValid())
        drawPill(*this, Qt::NoPen, m_ground);
    if (!isEntry()) {
        QLabel::paintEvent(event);
        return;
    }
    drawEntry();
    if (hasFocus())
        drawPill(*this, QPen(m_focusMark, 1.5), Qt::NoBrush);
}

// The base class would treat a label with a focus as a text to edit, with colours of its own while
// it is disabled.
void Label::drawEntry() {
    QPainter painter(this);
    const int wrapping = wordWrap() ? Qt::TextWordWrap : Qt::TextSingleLine;
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()) | wrapping, palette(), isEnabled(),
                          text(), foregroundRole());
}

// Enter presses the button that has the focus, as Space does.
Button::Button(QWidget* parent)
    : QPushButton(parent) {
    setAutoDefault(true);
    connect(this, &QPushButton::clicked, this, &Button::Click);
}

void Button::mousePressEvent(QMouseEvent* event) {
    m_hadPress = true;
    QPushButton::mousePressEvent(event);
}

void Button::mouseDoubleClickEvent(QMouseEvent* event) {
    if (m_hadPress)
        QPushButton::mouseDoubleClickEvent(event);
}

void Button::hideEvent(QHideEvent* event) {
    m_hadPress = false;
    QPushButton::hideEvent(event);
}

MenuButton::MenuButton(QWidget* parent)
    : Button(parent) {}

void MenuButton::initStyleOption(QStyleOptionButton* option) const {
    Button::initStyleOption(option);
    option->features |= QStyleOptionButton::HasMenu;
}

CheckBox::CheckBox(QWidget* parent)
    : QCheckBox(parent) {
    connect(this, &QCheckBox::toggled, this, &CheckBox::Click);
}

OptionButton::OptionButton(QWidget* parent)
    : QRadioButton(parent) {
    connect(this, &QRadioButton::toggled, this, [this](bool chosen) {
        if (!chosen)
            return;
        leadTabToChosen();
        emit Click();
    });
    leadTabToChosen(); // which may be one that was made before
}

void OptionButton::focusInEvent(QFocusEvent* event) {
    QRadioButton::focusInEvent(event); // leads the Tab key to the one with the focus
    leadTabToChosen();
}

void OptionButton::leadTabToChosen() {
    if (!parentWidget())
        return;
    const auto group = parentWidget()->findChildren<OptionButton*>(QString(), Qt::FindDirectChildrenOnly);
    const bool anyChosen = std::any_of(group.begin(), group.end(), std::mem_fn(&OptionButton::value));
    for (auto* each : group)
        each->setFocusPolicy(each->value() || !anyChosen ? Qt::StrongFocus : Qt::ClickFocus);
}

ComboBox::ComboBox(QWidget* parent)
    : QComboBox(parent) {
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QComboBox::currentIndexChanged, this, &ComboBox::changeIndex);
    connect(this, &QComboBox::currentTextChanged, this, &ComboBox::Change);
    connect(this, &QComboBox::activated, this, &ComboBox::choose);
}

QString ComboBox::text() const {
    const QVariant whole = currentData(kWholeText);
    return whole.isValid() && !isEditable() ? whole.toString() : currentText();
}

void ComboBox::addLine(const QString& text, const QVariant& value) {
    addItem(oneLine(text), value);
    setItemData(count() - 1, text, kWholeText);
}

bool ComboBox::setText(const QString& text) {
    const int index = findText(text);
    if (index >= 0)
        setCurrentIndex(index);
    else if (isEditable())
        setEditText(text);
    return currentText() == text;
}

void ComboBox::changeIndex(int index) {
    m_clickIsDue = false;
    if (index >= 0)
        emit Click();
}

// The user's choice of the item that was chosen before changes no index, and still counts.
void ComboBox::choose() {
    if (std::exchange(m_clickIsDue, false))
        emit Click();
}

void ComboBox::showPopup() {
    m_clickIsDue = true;
    QComboBox::showPopup();
}

void ComboBox::wheelEvent(QWheelEvent* event) {
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

QString ComboBox::tip() const {
    const QString own = currentData(Qt::ToolTipRole).toString();
    return own.isEmpty() ? tipText(currentData(kWholeText).toString()) : own;
}

bool ComboBox::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || !toolTip().isEmpty() || tip().isEmpty())
        return QComboBox::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tip(), this);
    return true;
}

DriveList::DriveList(QWidget* parent)
    : ComboBox(parent) {
    setItemDelegate(new DriveDelegate(this));
}

void DriveList::addDrive(const QString& drive, const QString& file, const QString& path) {
    addItem(drive);
    if (file.isEmpty())
        return;
    const int index = count() - 1;
    setItemData(index, file, kFile);
    setItemData(index, path, kPath);
    setItemData(index, tipText(path), Qt::ToolTipRole);
    setItemData(index, drive + QStringLiteral(", ") + file, Qt::AccessibleTextRole);
}

QString DriveList::file(int index) const {
    return itemData(index, kFile).toString();
}

QString DriveList::path(int index) const {
    return itemData(index, kPath).toString();
}

Panel::Panel(QWidget* parent)
    : QWidget(parent) {}

void Panel::mouseReleaseEvent(QMouseEvent* event) {
    QWidget::mouseReleaseEvent(event);
    if (rect().contains(event->position().toPoint()))
        emit Click();
}

Frame::Frame(QWidget* parent)
    : QGroupBox(parent) {}

Tabs::Tabs(QWidget* parent)
    : QTabWidget(parent) {
    connect(this, &QTabWidget::currentChanged, this, &Tabs::Change);
}

void Tabs::setPages(const QStringList& captions) {
    for (const auto& caption : captions)
        addTab(new QWidget, caption);
}

QWidget& Tabs::page(int index) const {
    QWidget* found = widget(index);
    if (!found)
        throw base::RuntimeError(base::ErrorNumber::InvalidValue, "no page " + std::to_string(index));
    return *found;
}

} // namespace discaro::kit
