#pragma once

#include <QtCore/QSettings>

namespace discaro::kit {

// What is kept for the user from one run to the next. The subkey names organisation and application by its last two
// parts, as in "Software\Maker\Program".
QSettings userSettings(const QString& subkey);

} // namespace discaro::kit
