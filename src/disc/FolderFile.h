#pragma once

#include "base/Descriptor.h"
#include "base/RuntimeError.h"
#include "disc/Medium.h"

#include <memory>
#include <string>

namespace discaro::disc {

// What the system says of a failure.
std::string systemText(int error);

// PathMissing when the name is gone or no longer what it was, DriveNotReady when the disc or its drive is gone, else
// ReadFailure: a scratch and a disc that was torn out may both give EIO.
base::ErrorNumber systemErrorNumber(int error);

// Throws base::RuntimeError of that number.
[[noreturn]] void throwSystemError(int error);

// The regular file of this name in an open directory. Null for anything else, which is never opened: a pipe would
// wait, a device would act; without a byte for one that is kept closed. Throws base::RuntimeError as throwSystemError
// does, and so does reading.
std::unique_ptr<ByteSource> openFolderFile(int directory, const std::string& name);

// The bytes of what is open for reading; none where that is nothing or no regular file. Throws as openFolderFile does.
std::unique_ptr<ByteSource> folderFile(base::Descriptor file);

} // namespace discaro::disc
