#pragma once

#include "base/Descriptor.h"
#include "disc/medium/Medium.h"

#include <memory>
#include <string>

namespace discaro::disc {

// The regular file of this name in an open directory. Null for anything else, which is never opened: a pipe would
// wait, a device would act; without a byte for one that is kept closed. Throws base::RuntimeError as throwSystemError
// does, and so does reading.
std::unique_ptr<ByteSource> openFolderFile(int directory, const std::string& name);

// The bytes of what is open for reading; none where that is nothing or no regular file. Throws as openFolderFile does.
std::unique_ptr<ByteSource> folderFile(base::Descriptor file);

} // namespace discaro::disc
