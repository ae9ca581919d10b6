#pragma once

#include "disc/drives/Lister.h"

#include <functional>
#include <string>

namespace discaro::scanner {

// Lets go of the disc, which may be another one since it was looked at last, and moves to its root. Throws
// base::RuntimeError where the drive can't be read, or nothing of the root.
void readRoot(disc::Lister& lister, const std::string& root);

// Calls with each line of the disc's autorun.inf, without line ends; all lines count, whatever section they stand
// in. A disc without the file has none. Throws base::RuntimeError where the file can't be read; the lines before
// that have been given. Text beyond the first MiB is left out.
void readAutorunLines(disc::Lister& lister, const std::string& root,
                      const std::function<void(const std::string& line)>& line);

// The application name that a setup.ini gives (section "Startup", key "AppName"), at most 49
// characters, trimmed of blanks; empty when there is none. Throws base::RuntimeError where it can't be read.
std::string readSetupName(disc::Lister& lister, const std::string& path);

// Where a directory's setup.ini is looked for. In a root the path has two backslashes, which open it all the same.
std::string setupPath(const std::string& directory);

} // namespace discaro::scanner
