#include "db/rows/IndexWalk.h"

#include "base/Text.h"

#include <algorithm>
#include <cstddef>

namespace discaro::db {

namespace {

// One row in so many is remembered with its text, so that the place of a text can be looked for.
constexpr size_t kSampled = 16;

struct Sample {
    size_t place;
    size_t begin; // of its text, which ends where that of the next one begins
};

} // namespace

size_t mostRows(Store& store, const Table& table) {
    constexpr int64_t kMost = 1 << 24;
    const auto statement = store.statement("SELECT max(rowid) FROM " + quotedName(table.definition->name));
    const StatementRun run(*statement);
    return run->step() ? static_cast<size_t>(std::clamp<int64_t>(run->integer(0), 0, kMost)) : 0;
}

// Takes the rows in the order of the index.
class IndexWalk::Collector : public RowTaker {
public:
    explicit Collector(size_t mostRows) {
        plain.reserve(mostRows);
        m_samples.reserve(mostRows / kSampled + 1);
        m_texts.reserve(mostRows);
    }

    bool take(int64_t number, const RowText& text) override {
        if (!text.plain) {
            beyond.add(number, text);
            return false;
        }
        if (plain.size() % kSampled == 0 && !text.null) {
            m_samples.push_back({plain.size(), m_texts.size()});
            m_texts += text.bytes;
        }
        plain.push_back(number);
        return false;
    }

    // Sorts what is not plain, and makes the samples ready for the search.
    void finish() {
        beyond.sort();
        m_texts = base::lowerAscii(m_texts);
    }

    // The last sample in front of a key, null when there is none.
    const Sample* before(std::string_view key) const {
        const auto behind =
            std::ranges::upper_bound(m_samples, key, {}, [this](const Sample& sample) { return textOf(sample); });
        return behind == m_samples.begin() ? nullptr : &*(behind - 1);
    }

    std::string_view textOf(const Sample& sample) const {
        const bool last = &sample == &m_samples.back();
        const size_t end = last ? m_texts.size() : (&sample + 1)->begin;
        return std::string_view(m_texts).substr(sample.begin, end - sample.begin);
    }

    std::vector<int64_t> plain;
    TextSorter beyond;

private:
    std::vector<Sample> m_samples;
    std::string m_texts;
};

// Goes through a stretch of the index once more to put the other rows between the plain ones.
class IndexWalk::Merger : public RowTaker {
public:
    explicit Merger(const Collector& rows)
        : m_rows(rows) {
        m_numbers.reserve(rows.plain.size() + rows.beyond.size());
    }

    bool finished() const { return m_next == m_rows.beyond.size(); }
    const Sample* start() const { return m_rows.before(m_rows.beyond.key(m_next)); }

    // Takes over the plain rows in front of a place.
    void copyTo(size_t place) {
        place = std::max(place, m_place);
        const auto from = m_rows.plain.begin() + static_cast<std::ptrdiff_t>(m_place);
        const auto to = m_rows.plain.begin() + static_cast<std::ptrdiff_t>(place);
        m_numbers.insert(m_numbers.end(), from, to);
        m_place = place;
        m_started = false;
    }

    bool take(int64_t number, const RowText& text) override {
        if (!text.plain)
            return false;
        // Rows with the same text as the first one may stand in front of it.
        m_started = m_started || number == m_rows.plain[m_place];
        if (!m_started)
            return false;
        if (insertBefore(text) && (finished() || farAhead()))
            return true;
        m_numbers.push_back(number);
        ++m_place;
        return false;
    }

    std::vector<int64_t> result() {
        while (!finished())
            m_numbers.push_back(m_rows.beyond.number(m_next++));
        copyTo(m_rows.plain.size());
        return std::move(m_numbers);
    }

private:
    bool insertBefore(const RowText& text) {
        const size_t first = m_next;
        const std::string_view lowered = m_buffer.lowerAscii(text.bytes) ? m_buffer.view() : std::string_view();
        while (!finished() && m_rows.beyond.key(m_next) < lowered)
            m_numbers.push_back(m_rows.beyond.number(m_next++));
        return m_next != first;
    }

    bool farAhead() const {
        const Sample* sample = start();
        return sample != nullptr && sample->place > m_place + 2 * kSampled;
    }

    const Collector& m_rows;
    FoldBuffer m_buffer;
    std::vector<int64_t> m_numbers;
    size_t m_place = 0; // in the plain rows
    size_t m_next = 0;  // in the others
    bool m_started = false;
};

IndexWalk::IndexWalk(Store& store, const RowQuery& walked, std::string_view field)
    : m_store(store)
    , m_query(walked)
    , m_field(quotedName(field)) {}

std::string IndexWalk::sql(std::string_view further) const {
    return "SELECT 1" + m_query.from(std::string(further) + "discaro_take(rowid, " + m_field + ")") + " ORDER BY " +
           m_field + " COLLATE NOCASE";
}

bool IndexWalk::possible() {
    return !m_store.plan(sql("")).sorts && !m_store.plan(sqlFrom()).sorts;
}

// The walk from a text on.
std::string IndexWalk::sqlFrom() const {
    return sql(m_field + " >= " + m_query.nextPlaceholder() + " COLLATE NOCASE AND ");
}

bool IndexWalk::walk(RowTaker& taker, std::optional<std::string_view> from) {
    const auto statement = m_store.statement(from ? sqlFrom() : sql(""));
    const Connection::TakerScope scope(m_store.connection(), taker);
    const StatementRun run(*statement);
    run->bindAll(m_query.bindings);
    if (from)
        run->bind(m_query.nextParameter(), *from);
    return run->step();
}

std::vector<int64_t> IndexWalk::numbers() {
    Collector collector(mostRows(m_store, *m_query.table));
    walk(collector, {});
    if (collector.beyond.size() == 0)
        return std::move(collector.plain);
    return merged(collector);
}

std::vector<int64_t> IndexWalk::merged(Collector& collected) {
    collected.finish();
    Merger merger(collected);
    bool more = !collected.plain.empty();
    while (more && !merger.finished()) {
        const Sample* sample = merger.start();
        merger.copyTo(sample == nullptr ? 0 : sample->place);
        more = sample == nullptr ? walk(merger, {}) : walk(merger, collected.textOf(*sample));
    }
    return merger.result();
}

} // namespace discaro::db
