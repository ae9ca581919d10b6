#pragma once

#include "base/RuntimeError.h"
#include "db/engine/EditBuffer.h"
#include "db/engine/Participant.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace discaro::db {

// Writes the fields of a mask in the row of that number; false when the row is gone.
class RowSaver : public std::enable_shared_from_this<RowSaver> {
public:
    virtual bool write(int64_t number, const EditBuffer& row, uint64_t mask) = 0;

protected:
    ~RowSaver() = default;
};

// As long as it lives, the saves of changed rows (Edit and Update) outside a transaction cost one commit for all of
// them, or one for each `most`: until it comes they are kept in memory. Each takes effect at once for all handles of
// the process and throws what it would throw by itself. On disc they are with End, or with the group's own end, which
// passes over errors. Until then the file is locked for other programs from the first save on, and stays open; a
// process that is killed leaves all of them or none.
//
// A save that fails takes nothing else with it: what was saved before stays. Where the file can't take the group as a
// whole, since a full disk has no room for its journal for instance, its saves are done again one by one, and so are
// those that follow. Should one of them fail now, which its Update could not tell any more, End throws the first such
// error; the others are kept.
//
// Any other write, a new row, a deletion or the beginning of a transaction, first commits what was saved before it. A
// group within another one, or within a transaction, belongs to that. Saves in a second file are done one by one.
class SaveGroup {
public:
    explicit SaveGroup(size_t most = 100'000);
    ~SaveGroup();
    SaveGroup(const SaveGroup&) = delete;
    SaveGroup& operator=(const SaveGroup&) = delete;

    // Commits. The group goes on: what is saved after it is committed by the next End.
    void End();

    // For those who write. The group in force, null when there is none.
    static SaveGroup* current();
    // Whether a save in that file is for the group. Where a transaction is open none is.
    bool takes(const Participant& file) const;
    // Has the row written; false when it is gone.
    bool save(Participant& file, RowSaver& saver, int64_t number, const EditBuffer& row, uint64_t mask);
    // Before a write of another kind: commits what there is. Its errors wait for End.
    void giveWay();

private:
    struct Save {
        std::shared_ptr<RowSaver> saver;
        int64_t number;
        uint64_t mask;
        std::vector<EditBuffer::Slot> values; // of the fields in the mask
    };

    void doOneByOne();
    void forget();

    const size_t m_most;
    bool m_inForce = false;
    bool m_saving = false;
    bool m_oneByOne = false;
    std::shared_ptr<Participant> m_file; // in whose file saves wait for the commit
    std::vector<Save> m_saves;
    std::optional<base::RuntimeError> m_failure;
};

} // namespace discaro::db
