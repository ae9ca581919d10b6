#pragma once

#include "disc/ImageHelp.h"
#include "disc/drives/Lister.h"
#include "support/MemoryMedium.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace discaro::disc {

// What all tests of the lister speak of.
using base::ErrorNumber;
using test::Asked;
using test::errorOf;
using test::file;
using test::folder;
using test::MemoryNode;
using test::numberOf;
using testing::ElementsAre;

// A table whose drive D: holds a tree of a test's own, and a lister on it.
class ListerFixture : public testing::Test {
protected:
    // The medium belongs to the table.
    test::MemoryMedium& insert(MemoryNode root) {
        auto medium = std::make_unique<test::MemoryMedium>(std::move(root));
        auto& result = *medium;
        table.addMedium(std::move(medium));
        return result;
    }

    std::vector<std::string> directories() const {
        std::vector<std::string> paths;
        paths.reserve(static_cast<size_t>(lister.listCount()));
        for (int i = 0; i < lister.listCount(); ++i)
            paths.push_back(lister.list(i));
        return paths;
    }

    std::vector<std::string> files(const std::string& directory) {
        std::vector<std::string> names;
        for (auto name = lister.firstFile(directory); !name.empty(); name = lister.nextFile())
            names.push_back(name);
        return names;
    }

    DriveTable table{[] { return Computer{}; }};
    Lister lister{table};
};

} // namespace discaro::disc
