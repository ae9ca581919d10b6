#include "kit/controls/TextBox.h"

#include "kit/common/Keys.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QTextOption>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>
#include <utility>

namespace discaro::kit {

namespace {

QString firstLine(const QString& text) {
    const auto isLineEnd = [](QChar each) { return each == u'\n' || each == u'\r'; };
    const auto* end = std::find_if(text.begin(), text.end(), isLineEnd);
    return text.left(end - text.begin());
}

// Finding the places where a text may be broken takes time with the square of the length of its
// longest word. Texts from discs need not have words.
bool hasEndlessWord(const QString& text) {
    constexpr int kLongestWord = 5000;
    int length = 0;
    return std::any_of(text.begin(), text.end(), [&length](QChar each) {
        length = each.isSpace() ? 0 : length + 1;
        return length > kLongestWord;
    });
}

// The area never holds an endless word while it breaks lines between words.
void giveToArea(QPlainTextEdit& area, const QString& text) {
    const bool anywhere = hasEndlessWord(text);
    if (anywhere)
        area.setWordWrapMode(QTextOption::WrapAnywhere);
    area.setPlainText(text);
    if (!anywhere)
        area.setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
}

bool isEnterPress(const QEvent& event) {
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto& press = static_cast<const QKeyEvent&>(event);
    return isEnter(press) && !press.isAutoRepeat();
}

} // namespace

TextBox::TextBox(QWidget* parent)
    : QWidget(parent)
    , m_line(new QLineEdit(this))
    , m_pace([this] { put(std::exchange(m_waiting, {})); }) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    connect(m_line, &QLineEdit::textChanged, this, &TextBox::Change);
    adopt(*m_line);
}

void TextBox::adopt(QWidget& editor) {
    layout()->addWidget(&editor);
    editor.installEventFilter(this);
    setFocusProxy(&editor);
    setFocusPolicy(Qt::StrongFocus);
}

void TextBox::setMultiLine() {
    if (m_area)
        return;
    const QString spoken = m_line->accessibleName();
    m_line->removeEventFilter(this);
    delete std::exchange(m_line, nullptr);
    m_area = new QPlainTextEdit(this);
    m_area->setTabChangesFocus(true);
    m_area->setAccessibleName(spoken);
    m_area->viewport()->installEventFilter(this);
    connect(m_area, &QPlainTextEdit::textChanged, this, &TextBox::Change);
    adopt(*m_area);
}

QWidget& TextBox::editor() const {
    return m_line ? static_cast<QWidget&>(*m_line) : static_cast<QWidget&>(*m_area);
}

QString TextBox::text() const {
    if (m_hasWaiting)
        return m_waiting;
    if (m_line)
        return m_line->text();
    return m_area->document()->isModified() ? m_area->toPlainText().replace("\n", "\r\n") : m_set;
}

void TextBox::setText(const QString& text) {
    m_pace.cancel();
    put(m_line ? firstLine(text) : text);
}

void TextBox::put(const QString& text) {
    m_hasWaiting = false;
    m_waiting.clear();
    if (m_line) {
        m_line->setText(text);
        m_line->setCursorPosition(0);
        return;
    }
    m_set = text;
    giveToArea(*m_area, text);
}

void TextBox::showText(const QString& text) {
    m_waiting = m_line ? firstLine(text) : text;
    m_hasWaiting = true;
    m_pace.changed();
}

void TextBox::setReadOnly(bool readOnly) {
    if (m_line)
        m_line->setReadOnly(readOnly);
    else
        m_area->setReadOnly(readOnly);
}

void TextBox::selectAll() {
    if (m_line)
        m_line->selectAll();
    else
        m_area->selectAll();
}

bool TextBox::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &editor() && event->type() == QEvent::KeyPress)
        m_editorsKey = event;
    else if (watched == &editor() && event->type() == QEvent::KeyRelease)
        m_editorsKey = nullptr;
    if (isEnterPress(*event) && watched == &editor())
        emit Enter();
    else if (event->type() == QEvent::FocusIn && watched == &editor())
        emit GotFocus();
    else if (event->type() == QEvent::FocusOut && watched == &editor())
        emit LostFocus();
    else if (event->type() == QEvent::MouseButtonRelease)
        emit Click();
    return QWidget::eventFilter(watched, event);
}

// Keys that are sent to the box itself belong to its editor. What the editor has no use for comes
// back here and goes on to the window.
void TextBox::keyPressEvent(QKeyEvent* event) {
    if (event == m_editorsKey)
        QWidget::keyPressEvent(event);
    else
        QCoreApplication::sendEvent(&editor(), event);
}

} // namespace discaro::kit
