#pragma once

#include "kit/controls/Controls.h"

#include <QtGui/QKeyEvent>

namespace discaro::explorer {

// The keys of the properties windows, beside the access letters of the buttons. A box with several
// lines keeps Enter for itself.
enum class PropertiesKey { None, Ok, NextPage, PreviousPage };

// Enter; Ctrl with Tab or Page Down; Ctrl with Shift and Tab, or with Page Up.
PropertiesKey propertiesKey(const QKeyEvent& event);

// Shows the next page, or the one before; behind the last comes the first.
void turnPage(kit::Tabs& tabs, PropertiesKey key);

} // namespace discaro::explorer
