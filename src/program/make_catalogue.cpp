// make_catalogue FOLDER [CATEGORIES]: makes an application folder ready as the program's own start does: an empty
// catalogue where none stands, and the category list copied beside it. What is there is never overwritten.
#include "program/ApplicationFolder.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::cerr << "usage: make_catalogue FOLDER [CATEGORIES]\n";
        return 2;
    }
    try {
        discaro::program::prepareApplicationFolder(argv[1], argc == 3 ? argv[2] : "");
    } catch (const std::exception& error) {
        std::cerr << "make_catalogue: " << error.what() << '\n';
        return 1;
    }
}
