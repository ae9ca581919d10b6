#include "kit/WindowScale.h"

#include "kit/Form.h"

#include <QtWidgets/QApplication>

#include <cmath>

namespace discaro::kit {

double windowScale() {
    return fontScale(QApplication::font());
}

int scaledLength(double logical) {
    return static_cast<int>(std::lround(logical * windowScale()));
}

} // namespace discaro::kit
