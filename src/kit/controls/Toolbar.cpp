#include "kit/controls/Toolbar.h"

#include "base/RuntimeError.h"
#include "kit/common/CellText.h"
#include "kit/common/Keys.h"
#include "kit/common/Strings.h"
#include "kit/common/UserSettings.h"
#include "kit/common/WindowScale.h"

#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QButtonGroup>

#include <algorithm>
#include <map>

namespace discaro::kit {

namespace {

constexpr int kIcon = 16;
constexpr int kMargin = 2;
constexpr int kSeparatorWidth = 8;
constexpr int kNarrowSeparator = 3;

QString entryName(const QString& value, const QString& key) {
    return value + u'/' + key;
}

} // namespace

const QString Toolbar::kSeparator = QStringLiteral("-");

Toolbar::Toolbar(QWidget* parent)
    : QWidget(parent) {
    setFocusPolicy(Qt::TabFocus);
    connect(qApp, &QApplication::focusChanged, this, &Toolbar::noteFocus);
}

// The focus leaves a button that goes with it, when no more than its base is left.
Toolbar::~Toolbar() {
    disconnect(qApp, nullptr, this, nullptr);
}

// ---- Buttons

void Toolbar::setButtons(const std::vector<ToolbarButton>& buttons) {
    m_declared = buttons;
    std::map<int, QButtonGroup*> groups;
    for (const ToolbarButton& declared : m_declared) {
        makeButton(declared);
        if (declared.group == 0)
            continue;
        QButtonGroup*& group = groups[declared.group];
        if (!group)
            group = new QButtonGroup(this);
        m_buttons.back()->setCheckable(true);
        m_buttons.back()->setChecked(declared.pressed);
        group->addButton(m_buttons.back());
    }
    setArrangement(declaredArrangement());
}

void Toolbar::makeButton(const ToolbarButton& declared) {
    m_buttons.push_back(declared.key.isEmpty() ? nullptr : new QToolButton(this));
    if (declared.key.isEmpty())
        return;
    QToolButton* button = m_buttons.back();
    button->setObjectName(declared.key);
    button->setToolTip(plainToolTip(declared.tip));
    button->setAccessibleName(declared.tip);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->installEventFilter(this);
    connect(button, &QToolButton::clicked, this, [this, key = declared.key] { emit ButtonClick(key); });
}

void Toolbar::setPictures(const Pictures& pictures) {
    for (size_t place = 0; place < m_buttons.size(); ++place)
        if (m_buttons[place])
            m_buttons[place]->setIcon(pictures(m_declared[place].image));
}

QToolButton& Toolbar::button(const QString& key) const {
    for (QToolButton* each : m_buttons)
        if (each && each->objectName() == key)
            return *each;
    throw base::RuntimeError(base::ErrorNumber::InvalidValue, "no button " + utf8(key));
}

bool Toolbar::isPressed(const QString& key) const {
    return button(key).isChecked();
}

void Toolbar::setPressed(const QString& key) {
    button(key).setChecked(true);
}

bool Toolbar::isButtonEnabled(const QString& key) const {
    return button(key).isEnabled();
}

void Toolbar::setButtonEnabled(const QString& key, bool enabled) {
    button(key).setEnabled(enabled);
    const QWidget* stop = focusProxy();
    if (!stop || !stop->isVisibleTo(this) || !stop->isEnabledTo(this))
        putFirstInReach();
}

// ---- Layout

QStringList Toolbar::declaredArrangement() const {
    QStringList keys;
    for (const ToolbarButton& declared : m_declared)
        keys << (declared.key.isEmpty() ? kSeparator : declared.key);
    return keys;
}

void Toolbar::setArrangement(const QStringList& keys) {
    const QStringList known = declaredArrangement();
    m_arrangement.clear();
    for (const QString& key : keys) {
        const bool separator = key == kSeparator && m_arrangement.size() < 3 * known.size();
        if (separator || (known.contains(key) && !m_arrangement.contains(key)))
            m_arrangement << key;
    }
    for (QToolButton* each : m_buttons)
        if (each)
            each->setVisible(m_arrangement.contains(each->objectName()));
    putFirstInReach();
    lay();
}

std::vector<QToolButton*> Toolbar::inOrder() const {
    std::vector<QToolButton*> shown;
    for (const QString& key : m_arrangement)
        if (key != kSeparator)
            shown.push_back(&button(key));
    return shown;
}

// Where there is not room for all, separators and then buttons get narrower.
void Toolbar::lay() {
    const auto buttons = static_cast<int>(inOrder().size());
    const int separators = static_cast<int>(m_arrangement.size()) - buttons;
    const int side = height() - 2 * kMargin;
    const int wide = scaledLength(kSeparatorWidth);
    const bool fits = buttons * side + separators * wide <= width();
    const int gap = fits ? wide : kNarrowSeparator;
    const int room = (width() - separators * gap) / std::max(buttons, 1);
    const int across = std::clamp(room, 1, std::max(side, 1));
    const int icon = std::min(scaledLength(kIcon), across);
    int left = 0;
    m_separators.clear();
    for (const QString& key : m_arrangement) {
        if (key == kSeparator) {
            m_separators.push_back(left + gap / 2);
            left += gap;
            continue;
        }
        QToolButton& placed = button(key);
        placed.setIconSize(QSize(icon, icon));
        placed.setGeometry(left, kMargin, across, side);
        left += across;
    }
    update();
}

void Toolbar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    const int inset = height() / 5;
    for (const int left : m_separators)
        painter.drawLine(left, inset, left, height() - inset);
}

void Toolbar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    lay();
}

void Toolbar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        lay();
}

// ---- Keyboard

// One button at a time is the toolbar's stop of the Tab key.
void Toolbar::putInReach(QToolButton& reached) {
    for (QToolButton* each : m_buttons)
        if (each)
            each->setFocusPolicy(each == &reached ? Qt::TabFocus : Qt::NoFocus);
    setFocusProxy(&reached);
}

// Where none can be pressed the stop stays where it was, and the Tab key passes over it.
void Toolbar::putFirstInReach() {
    const auto shown = inOrder();
    const auto first = std::ranges::find_if(shown, [this](const QToolButton* each) { return each->isEnabledTo(this); });
    if (first != shown.end())
        putInReach(**first);
}

void Toolbar::noteFocus(QWidget* before, QWidget* now) {
    if (now && isAncestorOf(now) && before && !isAncestorOf(before) && before->window() == window())
        m_cameFrom = before;
}

bool Toolbar::eventFilter(QObject* watched, QEvent* event) {
    auto* pressed = qobject_cast<QToolButton*>(watched);
    if (pressed && event->type() == QEvent::KeyPress)
        return keyPressed(*pressed, static_cast<const QKeyEvent&>(*event));
    return QWidget::eventFilter(watched, event);
}

bool Toolbar::keyPressed(QToolButton& from, const QKeyEvent& event) {
    const int key = event.key();
    if (key == Qt::Key_Left || key == Qt::Key_Right) {
        goTo(key == Qt::Key_Left ? -1 : 1, from);
        return true;
    }
    if (key != Qt::Key_Escape && !isPress(event))
        return false;
    if (m_cameFrom)
        m_cameFrom->setFocus();
    if (key != Qt::Key_Escape)
        from.click();
    return true;
}

void Toolbar::goTo(int step, const QToolButton& from) {
    const auto shown = inOrder();
    auto place = std::ranges::find(shown, &from) - shown.begin();
    const auto count = static_cast<std::ptrdiff_t>(shown.size());
    for (std::ptrdiff_t tried = 0; tried < count; ++tried) {
        place = (place + step + count) % count;
        QToolButton& next = *shown[static_cast<size_t>(place)];
        if (!next.isEnabled())
            continue;
        putInReach(next);
        next.setFocus(Qt::TabFocusReason);
        return;
    }
}

// ---- The user's own layout

void Toolbar::SaveToolbar(const QString& key, const QString& subkey, const QString& value) const {
    userSettings(subkey).setValue(entryName(value, key), m_arrangement);
}

bool Toolbar::RestoreToolbar(const QString& key, const QString& subkey, const QString& value) {
    const QSettings settings = userSettings(subkey);
    const QString entry = entryName(value, key);
    // A layout without buttons is kept as a value that counts as none.
    if (!settings.contains(entry))
        return false;
    setArrangement(settings.value(entry).toStringList());
    return true;
}

} // namespace discaro::kit
