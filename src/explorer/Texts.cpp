#include "explorer/StatusTexts.h"

#include "base/Number.h"
#include "explorer/NumberFormats.h"

namespace discaro::explorer {

std::string fileCountText(int64_t count) {
    return base::numberText(count) + " File(s)";
}

std::string totalSizeText(const db::Value& kilobytes) {
    constexpr double kKilobytes = 1024;
    const db::Value megabytes = db::isNull(kilobytes) ? kilobytes : db::Value(db::numberOf(kilobytes) / kKilobytes);
    return "Total Size = " + standardText(megabytes) + " MB";
}

std::string fileSizeSumText(double kilobytes) {
    return "File Size = " + base::numberText(kilobytes) + " KB";
}

} // namespace discaro::explorer
