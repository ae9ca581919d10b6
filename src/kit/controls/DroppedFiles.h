#pragma once

#include <QtCore/QMimeData>

#include <filesystem>
#include <vector>

namespace discaro::kit {

// The files and folders of this computer among what is dragged, in its order and with the bytes of their names as the
// file system has them, which need not be text.
std::vector<std::filesystem::path> droppedFiles(const QMimeData& data);

} // namespace discaro::kit
