#pragma once

#include <QtGui/QRegion>

namespace discaro::kit {

// A rectangle from (left, top) up to but without (right, bottom), its corners rounded by a quarter
// of an ellipse of the given width and height. An ellipse as large as the rectangle or larger gives
// an ellipse, equal sides a circle.
QRegion roundRectRegion(int left, int top, int right, int bottom, int ellipseWidth, int ellipseHeight);

} // namespace discaro::kit
