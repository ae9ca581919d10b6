#include "support/ToolRun.h"

#include <array>
#include <cstdio>
#include <stdexcept>

namespace discaro::test {

std::string shellWord(const std::filesystem::path& path) {
    std::string word = "'";
    for (const char c : path.string())
        word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + "'";
}

std::string runTool(const std::string& command, const std::filesystem::path& folder) {
    const auto whole = "cd " + shellWord(folder) + " && timeout 120 sh -c " + shellWord(command) + " 2>/dev/null";
    std::FILE* pipe = ::popen(whole.c_str(), "r");
    if (pipe == nullptr)
        throw std::runtime_error("no shell");
    std::string output;
    std::array<char, 4096> piece;
    for (size_t got = 0; (got = std::fread(piece.data(), 1, piece.size(), pipe)) > 0;)
        output.append(piece.data(), got);
    if (::pclose(pipe) != 0)
        throw std::runtime_error(command + " failed in " + folder.string() + ":\n" + output);
    return output;
}

} // namespace discaro::test
