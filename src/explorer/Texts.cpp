#include "explorer/Texts.h"

#include "base/Number.h"
#include "base/Sentence.h"
#include "explorer/NumberFormats.h"

namespace discaro::explorer {

using base::filledIn;

std::string discNumberText(std::string_view number) {
    return filledIn("CD-ROM Number : %1", {number});
}

std::string discNodeText(std::string_view number) {
    return filledIn("CD-ROM Number  %1", {number});
}

std::string fileCountText(int64_t count) {
    return filledIn("%1 File(s)", {base::numberText(count)});
}

std::string totalSizeText(const db::Value& kilobytes) {
    constexpr double kKilobytes = 1024;
    const db::Value megabytes = db::isNull(kilobytes) ? kilobytes : db::Value(db::numberOf(kilobytes) / kKilobytes);
    return filledIn("Total Size = %1 MB", {standardText(megabytes)});
}

std::string fileSizeSumText(double kilobytes) {
    return filledIn("File Size = %1 KB", {base::numberText(kilobytes)});
}

} // namespace discaro::explorer
