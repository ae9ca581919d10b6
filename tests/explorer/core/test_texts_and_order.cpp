#include "explorer/CatalogueRig.h"
#include "explorer/DiscList.h"
#include "explorer/ListingOrder.h"
#include "explorer/Texts.h"

#include <gtest/gtest.h>

#include <set>

namespace discaro::explorer {

TEST(StatusTexts, TellCountAndSizes) {
    EXPECT_EQ(fileCountText(0), "0 File(s)");
    EXPECT_EQ(fileCountText(1), "1 File(s)");
    EXPECT_EQ(fileCountText(50000), "50000 File(s)");
    EXPECT_EQ(totalSizeText(db::Value(1536.0)), "Total Size = 1.50 MB");
    EXPECT_EQ(totalSizeText(db::Value(0.0)), "Total Size = 0.00 MB");
    EXPECT_EQ(totalSizeText(db::Value()), "Total Size =  MB");
    EXPECT_EQ(fileSizeSumText(30), "File Size = 30 KB");
    EXPECT_EQ(fileSizeSumText(1234567), "File Size = 1234567 KB");
}

TEST(DiscList, ALineIsTheNameAndTheNumber) {
    EXPECT_EQ(discLine("Games", "12"), "Games       (CD-ROM No. 12)");
    EXPECT_EQ(discLine("", ""), "       (CD-ROM No. )");
}

TEST(DiscList, DiscsComeInTheOrderOfTheCatalogue) {
    const test::CatalogueRig rig;
    rig.add(test::DiscRow{.number = 9, .name = "Zoo"});
    rig.add(test::DiscRow{.number = 2, .name = "Atlas"});
    rig.run("INSERT INTO Drive(\"id number\") VALUES (4)");
    app::Module1::OpenCatalogue();
    const auto discs = readDiscs(*app::Module1::CatalogueDb);
    ASSERT_EQ(discs.size(), 3U);
    EXPECT_EQ(discs[0].name, "Zoo");
    EXPECT_EQ(discs[0].number, "9");
    EXPECT_EQ(discs[1].number, "2");
    EXPECT_EQ(discs[2].name, "");
}

TEST(ListingOrder, SixKeysHaveWordsHeadersAndItemsOfTheirOwn) {
    std::set<std::string_view> words;
    std::set<int> headers;
    std::set<std::string_view> items;
    for (const OrderKey& key : orderKeys()) {
        words.insert(key.word);
        headers.insert(key.header);
        items.insert({key.menuItem, key.popUpItem});
    }
    EXPECT_EQ(words.size(), 6U);
    EXPECT_EQ(headers, (std::set<int>{1, 2, 4, 5, 7, 8}));
    EXPECT_EQ(items.size(), 12U);
}

TEST(ListingOrder, FormattedColumnsAreSortedByTheHiddenOnes) {
    EXPECT_EQ(orderKeyOf("filename")->sortColumn, 0);
    EXPECT_EQ(orderKeyOf("filesize")->sortColumn, 2);
    EXPECT_EQ(orderKeyOf("fileext")->sortColumn, 3);
    EXPECT_EQ(orderKeyOf("filedate")->sortColumn, 5);
    EXPECT_EQ(orderKeyOf("fileattrib")->sortColumn, 6);
    EXPECT_EQ(orderKeyOf("numoficons")->sortColumn, 8);
    EXPECT_EQ(orderKeyOf("nothing"), nullptr);
    EXPECT_EQ(orderKeyOfHeader(2)->word, "filesize");
    for (const int hidden : {0, 3, 6, 9})
        EXPECT_EQ(orderKeyOfHeader(hidden), nullptr);
}

} // namespace discaro::explorer
