#include "explorer/DiscList.h"

#include "base/RuntimeError.h"
#include "catalogue/Names.h"
#include "explorer/Queries.h"
#include "explorer/UnlessLocked.h"

namespace discaro::explorer {

std::vector<Disc> readDiscs(db::Database& catalogue) {
    using namespace catalogue::drive;
    const auto rows = catalogue.OpenRecordset(kDiscsQuery);
    std::vector<Disc> discs;
    skipErrorsUnlessLocked([&] {
        for (; !rows->Eof(); rows->MoveNext())
            skipErrorsUnlessLocked([&] {
                discs.push_back({(*rows)(kPreferedName).Text(), (*rows)(kIdNumber).Text()});
            });
    });
    return discs;
}

std::string discLine(std::string_view name, std::string_view number) {
    return std::string(name).append("       (CD-ROM No. ").append(number).append(")");
}

} // namespace discaro::explorer
