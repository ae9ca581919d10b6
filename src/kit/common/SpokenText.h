#pragma once

#include <QtCore/QString>

namespace discaro::kit {

// A label's text as it is said: without the mark of the access letter and a colon at the end.
QString spokenForm(const QString& labelText);

// Whether a text holds any letter or digit; "_" alone says nothing.
bool hasWords(const QString& text);

} // namespace discaro::kit
