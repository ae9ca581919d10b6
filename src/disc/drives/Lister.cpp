#include "disc/drives/Lister.h"

#include "disc/drives/EntryOrder.h"

#include <algorithm>
#include <utility>

namespace discaro::disc {

using base::ErrorNumber;
using base::RuntimeError;

// One directory with what it holds.
struct Lister::Level {
    std::shared_ptr<const Medium> medium;
    std::string name; // "D:" for the root
    size_t pathLength;
    Place place;
    Listing listing;
    std::optional<RuntimeError> damage; // until it was told
};

namespace {

constexpr size_t kRootLength = 3; // "D:\"

struct DrivePath {
    char letter;
    std::vector<std::string_view> names;
};

DrivePath parsed(std::string_view path) {
    if (path.size() < 2 || path[1] != ':' || (path.size() > 2 && path[2] != '\\'))
        throw RuntimeError(ErrorNumber::PathMissing, path);
    DrivePath result{path.front(), {}};
    path.remove_prefix(2);
    while (!path.empty()) {
        const auto name = path.substr(0, path.find('\\'));
        if (!name.empty())
            result.names.push_back(name);
        path.remove_prefix(std::min(name.size() + 1, path.size()));
    }
    return result;
}

std::string_view withoutEndingBackslash(std::string_view path) {
    while (path.ends_with('\\'))
        path.remove_suffix(1);
    return path;
}

// Whether the path is that of the name in the directory, whose path has no backslash at the end.
bool isPathOf(std::string_view path, std::string_view directory, std::string_view name) {
    return path.size() == directory.size() + 1 + name.size() && path.ends_with(name) &&
           path[directory.size()] == '\\' && path.starts_with(directory);
}

// Keeps the medium open as long as one of its files is.
class HeldSource : public ByteSource {
public:
    HeldSource(std::shared_ptr<const Medium> medium, std::unique_ptr<ByteSource> source)
        : m_medium(std::move(medium))
        , m_source(std::move(source)) {}

    uint64_t size() const override { return m_source->size(); }
    size_t read(uint64_t offset, std::span<std::byte> buffer) const override { return m_source->read(offset, buffer); }

private:
    std::shared_ptr<const Medium> m_medium;
    std::unique_ptr<ByteSource> m_source;
};

template <typename Level>
void readListing(Level& level, const Place& parent) {
    level.listing = level.medium->list(parent, level.place);
    orderDirectories(level.listing.directories);
    if (!level.listing.damage.empty())
        level.damage.emplace(ErrorNumber::DirectoryDamaged, level.listing.damage);
}

template <typename Chain>
bool holdsPlace(const Chain& chain, const Place& place) {
    return std::ranges::any_of(chain, [&](const auto& level) {
        return level->place.number == place.number && level->place.detail == place.detail;
    });
}

} // namespace

Lister::Lister(const DriveTable& drives)
    : m_drives(drives) {}

Lister::~Lister() = default;

void Lister::setPath(std::string_view drivePath) {
    const std::string before = m_path;
    const bool anew = m_chain.empty();
    if (!stepDown(drivePath) && !stepUp(drivePath)) {
        m_chain = chainTo(drivePath);
        m_path = pathOf(m_chain);
    }
    m_lastListed = 0;
    if ((anew || m_path != before) && changed) {
        const auto call = changed; // which may set another one
        call();
    }
}

// The path that list() gave last is the usual one to come.
bool Lister::stepDown(std::string_view path) {
    if (m_chain.empty() || m_lastListed >= m_chain.back()->listing.directories.size())
        return false;
    const auto& entry = m_chain.back()->listing.directories[m_lastListed];
    if (!isPathOf(path, withoutEndingBackslash(m_path), entry.name))
        return false;
    auto level = readLevel(m_chain, entry);
    m_path = path;
    m_chain.push_back(std::move(level));
    return true;
}

bool Lister::stepUp(std::string_view path) {
    if (m_chain.size() < 2 || path != parentPath())
        return false;
    m_path.resize(path.size());
    m_chain.pop_back();
    return true;
}

std::string_view Lister::parentPath() const {
    if (m_chain.size() < 2)
        return m_path;
    return std::string_view(m_path).substr(0, m_chain[m_chain.size() - 2]->pathLength);
}

std::string Lister::pathOf(const Chain& chain) {
    std::string path = chain.front()->name;
    for (auto level = chain.begin() + 1; level != chain.end(); ++level)
        path += "\\" + (*level)->name;
    return chain.size() == 1 ? path + "\\" : path;
}

Lister::Chain Lister::chainFromRoot(char letter) const {
    auto medium = m_drives.share(letter);
    const std::string name = DriveTable::rootText(letter).substr(0, 2);
    if (!m_chain.empty() && m_chain.front()->medium == medium && m_chain.front()->name == name)
        return {m_chain.front()};
    const auto place = medium->root();
    auto level = std::make_shared<Level>(Level{std::move(medium), name, kRootLength, place, {}, {}});
    readListing(*level, place);
    return {level};
}

Lister::Chain Lister::chainTo(std::string_view path) const {
    const auto wanted = parsed(path);
    auto chain = chainFromRoot(wanted.letter);
    bool kept = !m_chain.empty() && chain.front() == m_chain.front();
    for (const auto name : wanted.names) {
        const auto& directories = chain.back()->listing.directories;
        const auto index = findDirectory(directories, name);
        if (!index)
            throw RuntimeError(ErrorNumber::PathMissing, path);
        const auto depth = chain.size();
        kept = kept && depth < m_chain.size() && m_chain[depth]->name == directories[*index].name;
        chain.push_back(kept ? m_chain[depth] : readLevel(chain, directories[*index]));
    }
    return chain;
}

Lister::LevelPtr Lister::readLevel(const Chain& above, const Entry& entry) {
    const auto& parent = *above.back();
    const auto base = above.size() == 1 ? kRootLength : parent.pathLength + 1;
    auto level =
        std::make_shared<Level>(Level{parent.medium, entry.name, base + entry.name.size(), entry.place, {}, {}});
    if (above.size() > kMostLevels || level->pathLength > kLongestPath)
        level->damage.emplace(ErrorNumber::DirectoryDamaged, "too many levels of directories");
    else if (holdsPlace(above, entry.place))
        level->damage.emplace(ErrorNumber::DirectoryLoop);
    if (level->damage)
        return level;
    try {
        readListing(*level, parent.place);
    } catch (const RuntimeError& error) {
        level->listing = {};
        level->damage = error;
    }
    return level;
}

void Lister::reread() {
    const std::string path = m_path;
    Chain before = std::exchange(m_chain, {});
    try {
        setPath(path);
    } catch (...) {
        m_chain = std::move(before);
        throw;
    }
}

void Lister::letGo() {
    m_chain.clear();
    m_fileLevel.reset();
    m_enumeration = {};
}

int Lister::listCount() const {
    return m_chain.empty() ? 0 : static_cast<int>(m_chain.back()->listing.directories.size());
}

std::string Lister::list(int index) const {
    constexpr int kParent = -2;
    if (index == kParent)
        return std::string(parentPath());
    if (index < 0 || index >= listCount())
        throw RuntimeError(ErrorNumber::InvalidValue);
    m_lastListed = static_cast<size_t>(index);
    std::string path(withoutEndingBackslash(m_path));
    path += '\\';
    path += m_chain.back()->listing.directories[m_lastListed].name;
    return path;
}

std::optional<RuntimeError> Lister::takeDamage() {
    if (m_chain.empty())
        return std::nullopt;
    return std::exchange(m_chain.back()->damage, std::nullopt);
}

Lister::LevelPtr Lister::directoryAt(std::string_view path) const {
    const bool current = withoutEndingBackslash(path) == withoutEndingBackslash(m_path);
    return current && !m_chain.empty() ? m_chain.back() : chainTo(path).back();
}

void Lister::setFilePath(std::string_view drivePath) {
    m_fileLevel = directoryAt(drivePath);
}

int Lister::fileCount() const {
    return m_fileLevel ? static_cast<int>(m_fileLevel->listing.files.size()) : 0;
}

std::string Lister::firstFile(std::string_view directoryPath) {
    m_enumeration = {};
    base::skipErrors([&] { m_enumeration.level = directoryAt(directoryPath); });
    m_enumeration.base = withoutEndingBackslash(directoryPath);
    return nextFile();
}

std::string Lister::nextFile() {
    auto& current = m_enumeration;
    current.facts.reset();
    if (current.level && current.next < current.level->listing.files.size())
        return current.level->listing.files[current.next++].name;
    current = {};
    return {};
}

bool Lister::isEnumerated(std::string_view path) const {
    const auto& current = m_enumeration;
    return current.next > 0 && isPathOf(path, current.base, current.level->listing.files[current.next - 1].name);
}

Lister::Found Lister::find(std::string_view path) const {
    if (isEnumerated(path))
        return {m_enumeration.level, m_enumeration.next - 1};
    const auto end = path.rfind('\\');
    if (end == std::string_view::npos)
        throw RuntimeError(ErrorNumber::PathMissing, path);
    auto level = directoryAt(path.substr(0, end));
    const auto index = findFile(level->listing.files, path.substr(end + 1));
    if (!index)
        throw RuntimeError(ErrorNumber::PathMissing, path);
    return {std::move(level), *index};
}

FileFacts Lister::readFacts(const Found& file) {
    const auto& level = *file.level;
    return level.medium->fileFacts(level.place, level.listing.files[file.index].place);
}

template <typename Value>
Value Lister::fact(std::string_view path, Value FileFacts::*value) {
    if (!isEnumerated(path))
        return readFacts(find(path)).*value;
    auto& facts = m_enumeration.facts;
    if (!facts)
        facts = readFacts(find(path));
    return (*facts).*value;
}

uint64_t Lister::fileLength(std::string_view path) {
    return fact(path, &FileFacts::size);
}

std::time_t Lister::fileTime(std::string_view path) {
    return fact(path, &FileFacts::modified);
}

unsigned Lister::fileAttributes(std::string_view path) {
    return fact(path, &FileFacts::attributes);
}

std::unique_ptr<ByteSource> Lister::openFile(std::string_view path) {
    const auto file = find(path);
    const auto& level = *file.level;
    auto source = level.medium->open(level.place, level.listing.files[file.index].place);
    return std::make_unique<HeldSource>(level.medium, std::move(source));
}

bool Lister::hasFile(std::string_view path) {
    return base::skipErrors([&] { find(path); });
}

} // namespace discaro::disc
