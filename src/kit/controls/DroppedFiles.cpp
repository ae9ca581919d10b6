#include "kit/controls/DroppedFiles.h"

#include <QtCore/QUrl>

namespace discaro::kit {

std::vector<std::filesystem::path> droppedFiles(const QMimeData& data) {
    std::vector<std::filesystem::path> files;
    for (const QUrl& url : data.urls())
        if (url.isLocalFile())
            files.emplace_back(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString());
    return files;
}

} // namespace discaro::kit
