// make_catalogue FOLDER [CATEGORIES]: makes an application folder ready as the program's own start does: an empty
// catalogue where none stands, and the category list copied beside it. What is there is never overwritten, and while
// the program runs in that folder nothing is touched.
#include "app/SingleInstance.h"
#include "program/ApplicationFolder.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::cerr << "usage: make_catalogue FOLDER [CATEGORIES]\n";
        return 2;
    }
    const discaro::app::SingleInstance instance({}, argv[1]);
    if (instance.prevInstance()) {
        std::cout << argv[1] << ": in use by the program, it stays as it is\n";
        return 0;
    }
    try {
        discaro::program::prepareApplicationFolder(argv[1], argc == 3 ? argv[2] : "");
    } catch (const std::exception& error) {
        std::cerr << "make_catalogue: " << error.what() << '\n';
        return 1;
    }
}
