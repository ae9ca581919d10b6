#pragma once

namespace discaro::kit {

// Gives screen readers the right roles for the controls whose class alone does not tell: labels
// that are menu entries (buttons that can be pressed), LED displays and marquees (texts that
// change), pictures with a text, handles. To be called once by the application.
void installVoices();

} // namespace discaro::kit
