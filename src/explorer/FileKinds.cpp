#include "explorer/FileKinds.h"

#include "base/Text.h"

#include <string>
#include <unordered_map>

namespace discaro::explorer {

namespace {

struct KindGroup {
    std::string_view kind;
    std::string_view extensions;
};

constexpr KindGroup kGroups[] = {
    {"movie", ".avi .mov .dat .qtm .dxr .flc .fli"},
    {"exe", ".exe"}, // and two more kinds by the file's name
    {"dll", ".dll .vxd .sys"},
    {"cpl", ".cpl"},
    {"htm", ".htm .html .url .mht"},
    {"zip", ".zip .cab .arj .rar .pak"},
    {"music", ".wav .rmi .mid .mp3"},
    {"ini", ".ini .inf"},
    {"font", ".ttf .fon .fnt"},
    {"text", ".txt"},
    {"help", ".hlp .cnt .chm"},
    {"pdf", ".pdf"},
    {"scr", ".scr"},
    {"pic", ".ico .bmp .wmf .pic .pcx .icl"},
    {"jpg", ".jpg"},
    {"gif", ".gif"},
    {"tga", ".tga"},
    {"tiff", ".tif"},
    {"reg", ".reg"},
    {"cur", ".cur .ani"},
    {"xls", ".xls .xla .xlm .xlt .xlc .xlw .xlb"},
    {"ppt", ".ppt .pps .pot .ppa"},
    {"word", ".doc .wri .rtf .dot"},
    {"mdb", ".mdb .mde .mdw .mda"},
};

using Kinds = std::unordered_map<std::string_view, std::string_view>;

Kinds readGroups() {
    Kinds kinds;
    for (const KindGroup& group : kGroups)
        for (std::string_view rest = group.extensions; !rest.empty();) {
            const size_t blank = rest.find(' ');
            kinds.emplace(rest.substr(0, blank), group.kind);
            rest.remove_prefix(blank == std::string_view::npos ? rest.size() : blank + 1);
        }
    return kinds;
}

const Kinds& kindsByExtension() {
    static const Kinds kinds = readGroups();
    return kinds;
}

std::string_view programKind(std::string_view fileName) {
    if (base::equalAscii(fileName, "setup.exe"))
        return "setup";
    const bool uninstalls = base::equalAscii(fileName, "uninst.exe") || base::equalAscii(fileName, "uninstall.exe");
    return uninstalls ? "uninst" : "exe";
}

} // namespace

std::string_view fileKind(std::string_view extension, std::string_view fileName) {
    const auto& kinds = kindsByExtension();
    const auto found = kinds.find(base::lowerAscii(extension));
    if (found == kinds.end())
        return "file";
    return found->second == "exe" ? programKind(fileName) : found->second;
}

} // namespace discaro::explorer
