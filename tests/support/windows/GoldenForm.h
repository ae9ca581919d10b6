#pragma once

#include "kit/form/Form.h"

#include <string>

namespace discaro::test {

// A window's controls as text, one a line in the order of the form table: name, class, place in
// logical pixels, text, tool tip, whether enabled and visible, and what a screen reader says where
// that is another thing.
std::string describe(const kit::Form& form);

// Compares the description with tests/ROOM/golden/WINDOW.txt. With DISCARO_UPDATE_GOLDEN=1 in the
// environment the file is written instead.
void expectGolden(const kit::Form& form, const std::string& room);

// The same for another description that is kept there, by its file's name without the ending.
void expectGolden(const std::string& described, const std::string& room, const std::string& name);

} // namespace discaro::test
