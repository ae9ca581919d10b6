#pragma once

#include "kit/display/ColourBlend.h"

#include <QtWidgets/QWidget>

#include <optional>

namespace discaro::kit {

// The background of a window that a timer blends anew between two random colours. Until the first
// change the window has its usual one.
class BlendGround {
public:
    // Draws new colours and has the window painted again.
    void blendAnew(QWidget& window);
    // Paints it over the whole window; to be called in the window's paint event.
    void paint(QWidget& window) const;

    const std::optional<BlendBands>& bands() const { return m_bands; }

private:
    std::optional<BlendBands> m_bands;
};

} // namespace discaro::kit
