#pragma once

#include <QtCore/QString>

namespace discaro::kit {

// A text as one line of a list or tree shows it: line ends, tabs and other control characters as blanks, marks that
// turn the direction of what stands behind them left out, and no longer than anybody reads on one line. Names come
// from discs and may hold anything.
QString oneLine(const QString& text);

// A tool tip that is shown as it stands, whatever characters it holds.
QString plainToolTip(const QString& text);

// A text as a tool tip: plain, with its line ends, and no longer than a screen takes.
QString tipText(const QString& text);

} // namespace discaro::kit
