#include "scanner/NameChecks.h"

#include "catalogue/Discs.h"
#include "catalogue/Names.h"
#include "scanner/Texts.h"

namespace discaro::scanner {

namespace drive = catalogue::drive;

namespace {

std::string fieldText(db::Recordset& discs, std::string_view field) {
    return db::textOf(discs.Fields(field).Value());
}

// Null is equal to nothing, the empty text included.
bool hasSerial(db::Recordset& discs, const std::string& serial) {
    const db::Value value = discs.Fields(drive::kSerialNumber).Value();
    return !db::isNull(value) && db::textOf(value) == serial;
}

} // namespace

std::optional<std::string> takenNameMessage(db::Recordset& discs, const std::string& preferredName) {
    if (discs.RecordCount() != 0)
        discs.MoveFirst();
    for (; !discs.Eof(); discs.MoveNext())
        if (fieldText(discs, drive::kPreferedName) == preferredName)
            return catalogue::duplicateNameMessage(discs);
    return std::nullopt;
}

bool duplicateSerialsPassed(db::Recordset& discs, const std::string& serial, const SerialQuestion& goOn) {
    if (discs.RecordCount() != 0)
        discs.MoveFirst();
    for (; !discs.Eof(); discs.MoveNext())
        if (hasSerial(discs, serial) && !goOn(duplicateSerialText(fieldText(discs, drive::kPreferedName))))
            return false;
    return true;
}

} // namespace discaro::scanner
