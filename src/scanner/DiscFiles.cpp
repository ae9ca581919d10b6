#include "scanner/DiscFiles.h"

#include "base/Text.h"
#include "disc/text/IniFile.h"
#include "disc/text/TextLines.h"

namespace discaro::scanner {

namespace {

// What the platform's reader takes for a value, its end mark included.
constexpr int kBufferLength = 50;

} // namespace

void readRoot(disc::Lister& lister, const std::string& root) {
    lister.letGo();
    lister.setPath(root);
    lister.setFilePath(root);
    if (lister.listCount() == 0 && lister.fileCount() == 0)
        if (const auto damage = lister.takeDamage())
            throw *damage;
}

void readAutorunLines(disc::Lister& lister, const std::string& root,
                      const std::function<void(const std::string& line)>& line) {
    const std::string path = root + "autorun.inf";
    if (!lister.hasFile(path))
        return;
    const auto file = lister.openFile(path);
    disc::readTextLines(*file, disc::kTextLimit, [&](std::string_view text) { line(std::string(text)); });
}

std::string setupPath(const std::string& directory) {
    return directory + "\\setup.ini";
}

std::string readSetupName(disc::Lister& lister, const std::string& path) {
    const auto file = lister.openFile(path);
    const auto name = disc::privateProfileString(*file, "Startup", "AppName", "", kBufferLength);
    if (name.copied == 0)
        return {};
    return std::string(base::trimBlanks(name.text));
}

} // namespace discaro::scanner
