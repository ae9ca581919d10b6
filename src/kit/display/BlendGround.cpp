#include "kit/display/BlendGround.h"

namespace discaro::kit {

void BlendGround::blendAnew(QWidget& window) {
    const Channels start = randomChannels();
    m_bands = blendBands(start, randomChannels());
    window.update();
}

void BlendGround::paint(QWidget& window) const {
    if (!m_bands)
        return;
    QPainter painter(&window);
    paintBlend(painter, window.rect(), *m_bands);
}

} // namespace discaro::kit
