#include "kit/common/SpokenText.h"

#include <algorithm>

namespace discaro::kit {

QString spokenForm(const QString& labelText) {
    QString spoken;
    for (qsizetype place = 0; place < labelText.size(); ++place) {
        const bool mark = labelText[place] == u'&' && place + 1 < labelText.size();
        spoken += mark ? labelText[++place] : labelText[place];
    }
    spoken = spoken.simplified();
    while (spoken.endsWith(u':'))
        spoken = spoken.chopped(1).trimmed();
    return spoken;
}

bool hasWords(const QString& text) {
    return std::any_of(text.begin(), text.end(), [](QChar each) { return each.isLetterOrNumber(); });
}

} // namespace discaro::kit
