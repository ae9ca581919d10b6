#include "explorer/PropertiesRules.h"

#include "catalogue/Discs.h"
#include "catalogue/Names.h"

namespace discaro::explorer {

namespace {

namespace drive = catalogue::drive;

// Goes forward to the next row that has the name; false at the end.
bool moveToHolder(db::Recordset& discs, const std::string& name) {
    for (discs.MoveNext(); !discs.Eof(); discs.MoveNext()) {
        const db::Field& held = discs.Fields(drive::kPreferedName);
        if (!held.IsNull() && held.Text() == name)
            return true;
    }
    return false;
}

} // namespace

NameVerdict judgeName(db::Recordset& discs, const NameChange& change,
                      const std::function<void(const std::string& message)>& tell) {
    if (change.wanted == change.opening)
        return NameVerdict::Same;
    const bool taken = moveToHolder(discs, change.wanted);
    if (taken)
        tell(catalogue::duplicateNameMessage(discs));
    discs.FindFirst(catalogue::rowCondition(change.disc));
    return taken ? NameVerdict::Taken : NameVerdict::Free;
}

} // namespace discaro::explorer
