#pragma once

#include <string>

namespace discaro::scanner {

// The four choices that steer a scan. They live as long as the scan window.
struct ScanOptions {
    std::string DetailLevel = "basic";  // "all", "basic" or "minimal"
    std::string ErrorAction = "ignore"; // "ignore" or "cancel"
    std::string LogErrors = "true";     // "true" or "false"
    std::string UseFreeNumber;          // "true" for any free number, "" for the next number
};

} // namespace discaro::scanner
