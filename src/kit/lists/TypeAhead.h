#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QString>

namespace discaro::kit {

// The beginning of a text that a user is typing to get to a row. It begins anew after a pause; the same letter again
// and again goes from one row with that letter to the next.
class TypeAhead {
public:
    struct Search {
        QString beginning;
        bool fromNext; // whether the row that the user is on is the last one to look at, not the first
    };

    Search typed(const QString& keys);

    // Whether a row's text begins so, blanks at its head and case apart.
    static bool fits(const QString& text, const QString& beginning);

private:
    QString m_typed;
    QElapsedTimer m_last;
};

} // namespace discaro::kit
