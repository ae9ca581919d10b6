#pragma once

#include "kit/Controls.h"

#include <QtGui/QKeyEvent>

namespace discaro::explorer {

// The keys of the properties windows, beside the access letters of the buttons. A box with several
// lines keeps Enter for itself.
enum class PropertiesKey { None, Ok, NextPage, PreviousPage };

// Enter; Ctrl with Tab or Page Down; Ctrl with Shift and Tab, or with Page Up.
PropertiesKey propertiesKey(const QKeyEvent& event);

// Shows the next page, or the one before; behind the last comes the first.
void turnPage(kit::Tabs& tabs, PropertiesKey key);

// Does what a key means in a properties window; false when it means nothing there.
template <typename Window>
bool obeyKey(Window& window, const QKeyEvent& event) {
    const PropertiesKey key = propertiesKey(event);
    if (key == PropertiesKey::Ok)
        window.Command2->click();
    else if (key != PropertiesKey::None)
        turnPage(*window.SSTab1, key);
    return key != PropertiesKey::None;
}

} // namespace discaro::explorer
