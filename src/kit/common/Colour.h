#pragma once

#include <QtGui/QColor>

#include <cstdint>

namespace discaro::kit {

// Colours as 24-bit numbers, laid out blue-green-red: 192 is a dark red, 16744576 is red 128, green
// 128, blue 255.
QColor colourOf(int32_t number);
int32_t numberOf(const QColor& colour);

// How well text of one colour reads on another: 1 (not at all) to 21 (black on white), the usual
// ratio of relative luminances; 4.5 and above reads well at every size.
double contrast(const QColor& text, const QColor& ground);

} // namespace discaro::kit
