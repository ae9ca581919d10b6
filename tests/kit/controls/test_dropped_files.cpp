#include "kit/controls/DroppedFiles.h"

#include <QtCore/QUrl>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace discaro;
using ::testing::ElementsAre;

TEST(DroppedFiles, AreTheLocalOnesInTheirOrder) {
    QMimeData data;
    data.setUrls({QUrl("file:///discs/b.iso"), QUrl("http://localhost/c.iso"), QUrl("file:///discs/a.iso")});
    EXPECT_THAT(kit::droppedFiles(data), ElementsAre("/discs/b.iso", "/discs/a.iso"));
    EXPECT_TRUE(kit::droppedFiles(QMimeData()).empty());
}

TEST(DroppedFiles, KeepTheBytesOfTheirNames) {
    QMimeData data;
    data.setUrls({QUrl("file:///discs/a%20b%FF.iso")});
    EXPECT_THAT(kit::droppedFiles(data), ElementsAre("/discs/a b\xFF.iso"));
}
