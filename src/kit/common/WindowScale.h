#pragma once

class QFont;

namespace discaro::kit {

// How much larger than the reference font a font is, in height or width, whichever is more; never
// below 1.
double fontScale(const QFont& font);

// The factor by which windows grow with the application's font: what Form::scale is once a window has heard of the
// font. For controls that have sizes of their own, such as columns and pictures.
double windowScale();

// Logical pixels as pixels of the screen, at that factor.
int scaledLength(double logical);

} // namespace discaro::kit
