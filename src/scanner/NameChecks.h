#pragma once

#include "db/Recordset.h"

#include <functional>
#include <optional>
#include <string>

namespace discaro::scanner {

// The message for the first disc that already has exactly this preferred name, case included; nothing when none has.
std::optional<std::string> takenNameMessage(db::Recordset& discs, const std::string& preferredName);

// Asks once for each disc with this serial number, in the table's order. Returns whether all were passed over;
// the first refusal ends the walk.
using SerialQuestion = std::function<bool(const std::string& text)>;
bool duplicateSerialsPassed(db::Recordset& discs, const std::string& serial, const SerialQuestion& goOn);

} // namespace discaro::scanner
