#include "kit/common/CellText.h"

#include <QtCore/QStringList>
#include <QtGui/QTextDocument>

#include <algorithm>

namespace discaro::kit {

namespace {

constexpr qsizetype kLongestLine = 1000;
constexpr qsizetype kLongestTip = 2000;
constexpr qsizetype kMostTipLines = 30;
const QChar kMore(0x2026);

bool isPlain(QChar each) {
    return each.unicode() >= 0x20 && each.unicode() < 0x7F;
}

// Embeddings, overrides and isolates, which show a name in another order than it has. The marks that only give a
// neutral sign its side stay: names in scripts from right to left need them.
bool turnsDirection(QChar each) {
    const char16_t code = each.unicode();
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

bool breaksLine(QChar each) {
    const char16_t code = each.unicode();
    return each.category() == QChar::Other_Control || code == QChar::LineSeparator || code == QChar::ParagraphSeparator;
}

QString shortened(const QString& text, qsizetype longest) {
    return text.size() > longest ? text.left(longest) + kMore : text;
}

} // namespace

QString oneLine(const QString& text) {
    if (text.size() <= kLongestLine && std::all_of(text.begin(), text.end(), isPlain))
        return text;
    QString line;
    for (const QChar each : shortened(text, kLongestLine)) {
        if (turnsDirection(each))
            continue;
        const bool second = each == u'\n' && line.endsWith(u' ');
        if (!second)
            line += breaksLine(each) ? QChar(u' ') : each;
    }
    return line;
}

QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? text.toHtmlEscaped().prepend(QStringLiteral("<span>")) : text;
}

QString tipText(const QString& text) {
    QString tip = shortened(text, kLongestTip);
    tip.remove(u'\r');
    const QStringList lines = tip.split(u'\n');
    if (lines.size() > kMostTipLines)
        tip = lines.mid(0, kMostTipLines).join(u'\n') + u'\n' + kMore;
    return plainToolTip(tip);
}

} // namespace discaro::kit
