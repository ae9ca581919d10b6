#pragma once

#include "disc/drives/Lister.h"
#include "scanner/ScanOptions.h"

#include <string>
#include <string_view>

namespace discaro::scanner {

// The line end of texts that go into the catalogue and into the wizard's boxes.
inline constexpr std::string_view kLineEnd = "\r\n";

// "basic details ignoring all errors." and its like: how the disc is scanned, for the settings and the report.
std::string scanManner(const ScanOptions& options);

// The sentence that opens the disc's comments: "Scanned with basic details ignoring all errors."
std::string reportSentence(const ScanOptions& options);

// The comments that the disc's row begins with: the report sentence, then the user's own text when there is one.
std::string initialComments(const ScanOptions& options, const std::string& userComments);

// "D:\DIR     (12 File(s))": the directory in hand.
std::string directoryInHand(const disc::Lister& lister);

// After a scan whose disc went away during the walk: how many of the counted files are in the catalogue, and where
// the errors are kept when they are.
std::string discLostText(double kept, double counted, bool logged);

// What to do on the wizard's pages, and before the scan.
std::string welcomeText();
std::string nameText();
inline constexpr std::string_view kCommentsText =
    "* Enter any comments that you would like to be associated with this CD-ROM.";
inline constexpr std::string_view kCheckText = "* The program will now quickly check your CD-ROM's information.";
std::string startText();

// What page 5 of the wizard shows before anything is written.
struct ScanSettings {
    std::string preferredName;
    std::string driveName;
    std::string comments;
    ScanOptions options;
    double directories = 0;
    double files = 0;
};
std::string settingsText(const ScanSettings& settings);

} // namespace discaro::scanner
