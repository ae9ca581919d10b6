#include "disc/ImageHelp.h"
#include "disc/folder/FolderMedium.h"
#include "disc/system/FileBytes.h"
#include "disc/system/KeptClosed.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

namespace discaro::disc {
namespace {

class KeptClosedTest : public testing::Test {
protected:
    KeptClosedTest() {
        std::filesystem::create_hard_link(path, folder.path() / "by another name");
        std::filesystem::create_symlink("kept", folder.path() / "linked");
    }

    // The length and the bytes that can be had of every file of the folder, one behind the other.
    std::vector<std::pair<uint64_t, size_t>> read() const {
        std::vector<std::pair<uint64_t, size_t>> lengths;
        for (const Entry& file : test::rootOf(medium).files) {
            const auto size = medium.fileFacts(medium.root(), file.place).size;
            const auto bytes = medium.open(medium.root(), file.place);
            std::array<std::byte, 16> buffer{};
            lengths.emplace_back(size, bytes ? bytes->read(0, buffer) : 0);
        }
        return lengths;
    }

    test::ScratchFolder folder;
    std::filesystem::path path = folder.write("kept", "content");
    FolderMedium medium{folder.path(), FolderMedium::Use::Disc};
};

TEST_F(KeptClosedTest, AFileIsNotReadByAnyNameAndItsFactsAreTold) {
    auto keeper = std::make_unique<KeptClosed>(path);
    for (const auto& [size, bytes] : read()) {
        EXPECT_EQ(size, 7U);
        EXPECT_EQ(bytes, 0U);
    }
    EXPECT_EQ(read().size(), 3U);
    EXPECT_THROW(FileBytes{path}, base::RuntimeError);
    keeper.reset();
    for (const auto& [size, bytes] : read())
        EXPECT_EQ(bytes, 7U);
    EXPECT_EQ(FileBytes(path).size(), 7U);
}

TEST_F(KeptClosedTest, OtherFilesAndPathsThatLeadNowhereStayAsTheyAre) {
    const KeptClosed keeper(folder.path() / "missing");
    const KeptClosed other(folder.write("other"));
    EXPECT_EQ(FileBytes(path).size(), 7U);
}

} // namespace
} // namespace discaro::disc
