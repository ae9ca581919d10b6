#include "scanner/Texts.h"

#include "base/Number.h"

namespace discaro::scanner {

namespace {

// An entry of the settings: its heading, and its value on a line of its own, six blanks in.
std::string settingsEntry(std::string_view heading, std::string_view value) {
    return std::string(heading) + std::string(kLineEnd) + "      " + std::string(value) +
           std::string(kLineEnd) + std::string(kLineEnd);
}

std::string settingsLine(std::string_view line) {
    return std::string(line) + std::string(kLineEnd) + std::string(kLineEnd);
}

} // namespace

std::string rootPath(char driveLetter) {
    return std::string(1, driveLetter) + ":\\";
}

std::string scanManner(const ScanOptions& options) {
    return options.DetailLevel + " details " +
           (options.ErrorAction == "ignore" ? "ignoring all errors." : "not ignoring any errors.");
}

std::string reportSentence(const ScanOptions& options) {
    return "Scanned with " + scanManner(options);
}

std::string initialComments(const ScanOptions& options, const std::string& userComments) {
    if (userComments.empty())
        return reportSentence(options);
    return reportSentence(options) + std::string(kLineEnd) + userComments;
}

std::string directoryInHand(const disc::Lister& lister) {
    return lister.path() + "     (" + std::to_string(lister.fileCount()) + " File(s))";
}

std::string discLostText(double kept, double counted, bool logged) {
    return "The CD-ROM could not be read to its end. " + base::numberText(kept) + " of the " +
           base::numberText(counted) + " files that were counted are in the catalogue." +
           (logged ? " The errors are in the CD-ROM's comments." : "");
}

std::string settingsText(const ScanSettings& settings) {
    return settingsLine("* These are the final settings for your CD-ROM.") +
           settingsLine("* To start scanning press Finish.") +
           settingsLine("* To exit press Cancel.") +
           settingsEntry("Preferred Name:", settings.preferredName) +
           settingsEntry("Drive Name:", settings.driveName) +
           settingsEntry("Comments:", settings.comments) +
           settingsLine("* This CD-ROM will be scanned with " + scanManner(settings.options)) +
           "* The CD-ROM contains :-" + std::string(kLineEnd) + "   " +
           base::numberText(settings.directories) + " Directories" + std::string(kLineEnd) + "   " +
           base::numberText(settings.files) + " Files";
}

} // namespace discaro::scanner
