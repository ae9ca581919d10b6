#include "catalogue/DiscDeletion.h"
#include "catalogue/Names.h"
#include "catalogue/core/CatalogueFile.h"
#include "db/DBEngine.h"

namespace discaro::catalogue {
namespace {

class DiscDeletion : public CatalogueFile {
protected:
    // The disc that stands current after the deletion of one of three.
    std::string currentAfterDeleting(int64_t place) const {
        const auto discs = open()->OpenRecordset(kDrive);
        for (const int64_t number : {1, 2, 3}) {
            discs->AddNew();
            (*discs)(drive::kIdNumber) = number;
            discs->Update();
        }
        discs->MoveTo(place);
        deleteCurrentDisc(*discs);
        EXPECT_TRUE(db::DBEngine::InTransaction()) << "the caller commits";
        EXPECT_EQ(discs->RecordCount(), 2);
        db::DBEngine::CommitTrans();
        return (*discs)(drive::kIdNumber).Text();
    }
};

TEST_F(DiscDeletion, GoesOnToTheDiscBehindTheDeletedOne) {
    EXPECT_EQ(currentAfterDeleting(1), "3");
}

TEST_F(DiscDeletion, BehindTheLastDiscGoesOnToTheFirst) {
    EXPECT_EQ(currentAfterDeleting(2), "1");
}

} // namespace
} // namespace discaro::catalogue
