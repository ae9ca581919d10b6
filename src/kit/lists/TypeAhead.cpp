#include "kit/lists/TypeAhead.h"

#include <QtWidgets/QApplication>

#include <algorithm>

namespace discaro::kit {

TypeAhead::Search TypeAhead::typed(const QString& keys) {
    if (!m_last.isValid() || m_last.elapsed() > QApplication::keyboardInputInterval())
        m_typed.clear();
    m_last.start();
    const bool first = m_typed.isEmpty();
    m_typed += keys;
    const QChar letter = m_typed.isEmpty() ? QChar() : m_typed.front();
    const bool oneLetter = std::all_of(m_typed.begin(), m_typed.end(), [&](QChar each) { return each == letter; });
    if (oneLetter)
        return {QString(letter), true};
    return {m_typed, first};
}

bool TypeAhead::fits(const QString& text, const QString& beginning) {
    return QStringView(text).trimmed().startsWith(beginning, Qt::CaseInsensitive);
}

} // namespace discaro::kit
