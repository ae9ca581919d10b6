// make_tree FOLDER FILES DIRECTORIES: a tree of small files, spread evenly over directories three levels deep.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr int kChildren = 12; // directories in a directory

std::vector<fs::path> makeDirectories(const fs::path& root, size_t count) {
    std::vector<fs::path> directories{root};
    for (size_t parent = 0; directories.size() < count; ++parent)
        for (int i = 0; i < kChildren && directories.size() < count; ++i) {
            directories.push_back(directories[parent] / ("DIR" + std::to_string(directories.size())));
            fs::create_directory(directories.back());
        }
    return directories;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: make_tree FOLDER FILES DIRECTORIES\n";
        return 2;
    }
    const fs::path root = argv[1];
    const size_t files = std::stoul(argv[2]);
    fs::create_directories(root);
    const auto directories = makeDirectories(root, std::stoul(argv[3]));
    static constexpr const char* kExtensions[] = {".txt", ".exe", ".bmp", ".dll", ".html", ""};
    for (size_t i = 0; i < files; ++i) {
        const auto name = "file" + std::to_string(i) + kExtensions[i % 6];
        std::ofstream(directories[i % directories.size()] / name) << "file number " << i << '\n';
    }
}
