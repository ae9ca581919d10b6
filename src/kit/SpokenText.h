#pragma once

#include <QtCore/QString>

namespace discaro::kit {

// Gives screen readers the right roles for the controls whose class alone does not tell: labels
// that are menu entries (buttons that can be pressed), LED displays and marquees (texts that
// change), pictures with a text, handles. To be called once by the application.
void installSpokenTexts();

// A label's text as it is said: without the mark of the access letter and a colon at the end.
QString spokenForm(const QString& labelText);

// Whether a text holds any letter or digit; "_" alone says nothing.
bool hasWords(const QString& text);

// A tool tip that is shown as it stands, whatever characters it holds.
QString plainToolTip(const QString& text);

} // namespace discaro::kit
