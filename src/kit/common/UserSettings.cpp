#include "kit/common/UserSettings.h"

namespace discaro::kit {

QSettings userSettings(const QString& subkey) {
    const QStringList parts = subkey.split(u'\\', Qt::SkipEmptyParts);
    return QSettings(parts.value(parts.size() - 2), parts.value(parts.size() - 1));
}

} // namespace discaro::kit
