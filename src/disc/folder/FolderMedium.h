#pragma once

#include "base/Descriptor.h"
#include "disc/medium/Medium.h"

#include <filesystem>
#include <memory>
#include <string>

namespace discaro::disc {

class FolderTree;

// What stands for a folder's volume label: its last path component, empty for "/".
std::string folderLabel(const std::filesystem::path& folder);

// A directory tree of the computer as a medium. Names keep their bytes. Symbolic links are listed as files. One that
// leads to a file inside the folder has that file's facts and bytes; others have facts of their own and, like pipes,
// devices and sockets, which have length 0, no bytes. A directory that stands inside itself fails with DirectoryLoop,
// one that is gone with PathMissing, a root that can't be opened with DriveNotReady. For one thread.
//
// Facts. Label: folderLabel. Sizes: those of the file system for a mounted one, 0 for a folder that stands for a disc.
// File system: "CDFS", "UDF", or the kernel's name of the type. Serial: made from the file system's identity and the
// folder's place in it, so it is the same each time, and differs between folders.
class FolderMedium : public Medium {
public:
    enum class Use {
        Mount, // a mounted file system, with its free space
        Disc,  // a folder that stands for a disc: no free space
    };

    // The folder need not exist yet, nor still; every call looks.
    FolderMedium(std::filesystem::path root, Use use);
    ~FolderMedium() override;

    VolumeFacts facts() const override;
    Place root() const override;
    Listing list(const Place& parent, const Place& directory) const override;
    FileFacts fileFacts(const Place& directory, const Place& file) const override;
    std::unique_ptr<ByteSource> open(const Place& directory, const Place& file) const override;

private:
    // A place's number is that of the directory that lists it, its raw name the rest. The root has neither.
    uint32_t numberOf(const Place& directory) const;
    base::Descriptor linked(uint32_t directory, const std::string& name, int access) const;

    Use m_use;
    std::unique_ptr<FolderTree> m_tree;
};

} // namespace discaro::disc
