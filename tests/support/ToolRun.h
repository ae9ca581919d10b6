#pragma once

#include <filesystem>
#include <string>

namespace discaro::test {

// Runs a shell command in a folder and returns what it prints on its standard output. Throws std::runtime_error when it
// fails or takes longer than two minutes.
std::string runTool(const std::string& command, const std::filesystem::path& folder = ".");

// A file name as one word of a shell command.
std::string shellWord(const std::filesystem::path& path);

} // namespace discaro::test
