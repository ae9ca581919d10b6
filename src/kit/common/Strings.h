#pragma once

#include <QtCore/QString>

#include <string>
#include <string_view>

namespace discaro::kit {

// Text is UTF-8 below the windows and QString in them; these two are the border.
inline QString qt(std::string_view utf8Text) {
    return QString::fromUtf8(utf8Text.data(), static_cast<qsizetype>(utf8Text.size()));
}
inline std::string utf8(const QString& text) {
    return text.toStdString();
}

} // namespace discaro::kit
