#include "disc/system/MountTable.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

namespace discaro::disc {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kBlanks = " \t";

std::vector<std::string_view> split(std::string_view text, std::string_view separators) {
    std::vector<std::string_view> parts;
    while (true) {
        const auto begin = text.find_first_not_of(separators);
        if (begin == std::string_view::npos)
            return parts;
        const auto end = std::min(text.find_first_of(separators, begin), text.size());
        parts.push_back(text.substr(begin, end - begin));
        text.remove_prefix(end);
    }
}

bool isOctal(std::string_view digits) {
    return digits.size() == 3 && digits[0] <= '3' &&
           std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '7'; });
}

// The kernel writes blank, tab, line feed and backslash as a backslash and three octal digits.
std::string unescaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (size_t at = 0; at < text.size(); ++at) {
        const auto digits = text.substr(std::min(at + 1, text.size()), 3);
        if (text[at] != '\\' || !isOctal(digits)) {
            result += text[at];
            continue;
        }
        const int value = (digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0');
        result += static_cast<char>(value);
        at += 3;
    }
    return result;
}

bool hasOption(std::string_view options, std::string_view wanted) {
    return std::ranges::count(split(options, ","), wanted) > 0;
}

struct MountLine {
    std::string_view id;
    std::string_view parent;
    Mount mount;
};

// "36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 - ext3 /dev/root rw,errors=continue"; between the options and the
// lone dash stand any number of tags.
std::optional<MountLine> parseLine(std::string_view line) {
    constexpr size_t kFixed = 6;
    const auto fields = split(line, kBlanks);
    if (fields.size() < kFixed)
        return std::nullopt;
    const auto dash = std::find(fields.begin() + kFixed, fields.end(), "-");
    if (fields.end() - dash < 3)
        return std::nullopt;
    const bool readOnly = hasOption(fields[5], "ro") || (fields.end() - dash > 3 && hasOption(dash[3], "ro"));
    return MountLine{fields[0], fields[1],
                     Mount{std::string(fields[2]), unescaped(fields[3]), unescaped(fields[4]), std::string(dash[1]),
                           unescaped(dash[2]), readOnly}};
}

// "sr2" before "sr10".
bool inNumberOrder(const std::string& left, const std::string& right) {
    return std::pair(left.size(), std::string_view(left)) < std::pair(right.size(), std::string_view(right));
}

void sortUnique(std::vector<std::string>& names) {
    std::ranges::sort(names, inNumberOrder);
    names.erase(std::unique(names.begin(), names.end()), names.end());
}

std::string readText(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string readLine(const fs::path& path) {
    std::string text = readText(path);
    return text.substr(0, text.find('\n'));
}

std::vector<std::string> namesIn(const fs::path& folder, std::string_view beginning) {
    std::vector<std::string> names;
    std::error_code failure;
    for (fs::directory_iterator at(folder, failure), end; !failure && at != end; at.increment(failure)) {
        const auto name = at->path().filename().string();
        if (name.starts_with(beginning))
            names.push_back(name);
    }
    return names;
}

const fs::path kBlockDevices = "/sys/block";

std::vector<OpticalDrive> readOpticalDrives() {
    auto names = parseDriveNames(readText("/proc/sys/dev/cdrom/info"));
    std::ranges::move(namesIn(kBlockDevices, "sr"), std::back_inserter(names));
    sortUnique(names);
    std::vector<OpticalDrive> drives;
    drives.reserve(names.size());
    for (const auto& name : names)
        drives.push_back({"/dev/" + name, readLine(kBlockDevices / name / "dev")});
    return drives;
}

// Drives on the universal serial bus call themselves fixed when they are disks, but come and go all the same.
bool canBePulledOut(const std::string& device) {
    if (readLine(kBlockDevices / device / "removable") == "1")
        return true;
    std::error_code failure;
    return fs::read_symlink(kBlockDevices / device, failure).string().find("/usb") != std::string::npos;
}

std::set<std::string> readRemovableDevices() {
    std::set<std::string> devices;
    for (const auto& device : namesIn(kBlockDevices, "")) {
        if (!canBePulledOut(device))
            continue;
        devices.insert("/dev/" + device);
        for (const auto& partition : namesIn(kBlockDevices / device, device))
            devices.insert("/dev/" + partition);
    }
    return devices;
}

} // namespace

std::vector<Mount> parseMountInfo(std::string_view text) {
    std::vector<MountLine> lines;
    std::set<std::pair<std::string_view, std::string>> covered;
    for (const auto line : split(text, "\n")) {
        if (auto parsed = parseLine(line)) {
            covered.emplace(parsed->parent, parsed->mount.point);
            lines.push_back(std::move(*parsed));
        }
    }
    std::vector<Mount> mounts;
    for (auto& line : lines) {
        const bool hidden = line.id != line.parent && covered.contains({line.id, line.mount.point});
        if (!hidden)
            mounts.push_back(std::move(line.mount));
    }
    return mounts;
}

std::vector<std::string> parseDriveNames(std::string_view text) {
    constexpr std::string_view kHead = "drive name:";
    std::vector<std::string> names;
    for (auto line : split(text, "\n")) {
        if (!line.starts_with(kHead))
            continue;
        line.remove_prefix(kHead.size());
        for (const auto name : split(line, kBlanks))
            names.emplace_back(name);
    }
    std::erase_if(names, [](const std::string& name) { return name.find('/') != std::string::npos; });
    sortUnique(names);
    return names;
}

const Mount* mountOf(std::span<const Mount> mounts, std::string_view path) {
    const auto holds = [path](std::string_view point) {
        const bool isRoot = point == "/";
        return path.starts_with(point) && (isRoot || path.size() == point.size() || path[point.size()] == '/');
    };
    const Mount* best = nullptr;
    for (const auto& mount : mounts) {
        if (holds(mount.point) && (!best || mount.point.size() >= best->point.size()))
            best = &mount;
    }
    return best;
}

std::vector<Mount> readMounts() {
    return parseMountInfo(readText("/proc/self/mountinfo"));
}

Computer readComputer() {
    return {readMounts(), readOpticalDrives(), readRemovableDevices()};
}

} // namespace discaro::disc
