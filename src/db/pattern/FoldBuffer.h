#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace discaro::db {

// Folds many texts one after the other into memory of its own: base::foldedForComparison without its allocations for
// ASCII, and for the scripts whose letters never compose with one another. A search folds every name of the table: this
// takes a fifth of the time for ASCII and less than a tenth for others (bench/bench_store).
class FoldBuffer {
public:
    // Takes over the text with A to Z made small and everything else as it is. Returns whether all
    // of it is ASCII, in which case this is its folded form.
    bool lowerAscii(std::string_view text);

    // Takes over the folded form of any text.
    void fold(std::string_view text);

    // What was taken over last; valid until the next call.
    std::string_view view() const { return m_view; }

private:
    char* reserve(size_t size);
    bool foldSimple(std::string_view text);

    std::unique_ptr<char[]> m_memory;
    size_t m_capacity = 0;
    std::string m_composed;
    std::string_view m_view;
};

} // namespace discaro::db
