#pragma once

namespace discaro::program {

// Makes all windows known to the registry. The only place that includes them.
void registerWindows();

} // namespace discaro::program
