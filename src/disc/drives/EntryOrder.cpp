#include "disc/drives/EntryOrder.h"

#include "base/Text.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <unordered_set>
#include <utility>

namespace discaro::disc {

namespace {

struct Sortable {
    std::string key;
    Entry entry;
};

bool isBefore(const Sortable& left, const Sortable& right) {
    return std::tie(left.key, left.entry.name) < std::tie(right.key, right.entry.name);
}

bool hasSameName(const Sortable& left, const Sortable& right) {
    return left.entry.name == right.entry.name;
}

// New names for all but the first of each run of equal ones. Two runs can't arrive at the same new name, for their
// names differ before the number.
void distinguish(std::vector<Sortable>& sorted) {
    std::unordered_set<std::string> taken;
    for (const auto& item : sorted)
        taken.insert(item.entry.name);
    std::string run;
    size_t number = 1;
    for (auto& [key, entry] : sorted) {
        if (entry.name != run) {
            run = entry.name;
            number = 1;
            continue;
        }
        while (taken.contains(entry.name))
            entry.name = run + " (" + std::to_string(++number) + ")";
        key = base::orderKey(entry.name);
    }
}

} // namespace

void orderDirectories(std::vector<Entry>& directories) {
    std::vector<Sortable> sorted;
    sorted.reserve(directories.size());
    for (auto& entry : directories) {
        auto key = base::orderKey(entry.name);
        sorted.push_back({std::move(key), std::move(entry)});
    }
    std::ranges::stable_sort(sorted, isBefore);
    if (std::ranges::adjacent_find(sorted, hasSameName) != sorted.end()) {
        distinguish(sorted);
        std::ranges::stable_sort(sorted, isBefore);
    }
    std::ranges::transform(sorted, directories.begin(), [](Sortable& item) { return std::move(item.entry); });
}

std::optional<size_t> findDirectory(const std::vector<Entry>& directories, std::string_view name) {
    const auto key = base::orderKey(name);
    const auto placeOf = [&](std::string_view exact) {
        return std::ranges::partition_point(directories, [&](const Entry& entry) {
            const int order = base::orderKey(entry.name).compare(key);
            return order < 0 || (order == 0 && entry.name < exact);
        });
    };
    auto found = placeOf(name);
    if (found == directories.end() || found->name != name)
        found = placeOf({});
    if (found == directories.end() || base::orderKey(found->name) != key)
        return std::nullopt;
    return static_cast<size_t>(found - directories.begin());
}

std::optional<size_t> findFile(const std::vector<Entry>& files, std::string_view name) {
    auto found = std::ranges::find(files, name, &Entry::name);
    if (found == files.end())
        found = std::ranges::find_if(files, [&](const Entry& file) { return base::equalFolded(file.name, name); });
    if (found == files.end())
        return std::nullopt;
    return static_cast<size_t>(found - files.begin());
}

} // namespace discaro::disc
