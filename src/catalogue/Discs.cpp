#include "catalogue/Discs.h"

#include "base/Sentence.h"
#include "catalogue/Names.h"

namespace discaro::catalogue {

std::string rowCondition(std::string_view number) {
    return std::string("[id number] like '").append(number).append("'");
}

std::string duplicateNameMessage(db::Recordset& discs) {
    return base::filledIn(kDuplicateName,
                          {discs.Fields(drive::kIdNumber).Text(), discs.Fields(drive::kVolumeName).Text()});
}

std::span<const DiscFact> discFacts() {
    using namespace drive;
    static constexpr DiscFact kFacts[] = {
        {"cdnum", "CD-ROM Number", kIdNumber, true},
        {"pname", "Preferred Name", kPreferedName},
        {"label", "Volume Label", kVolumeName},
        {"snum", "Serial Number", kSerialNumber},
        {"fsys", "File System", kFileSystem},
        {"size", "Total Size", kTotalSize, true, " Mb"},
        {"size", "Free Size", kFreeSize, false, " Mb"},
        {"", "", ""},
        {"comment", "Comments", kComments},
        {"autrun", "Autorun", kAutorun},
    };
    return kFacts;
}

} // namespace discaro::catalogue
