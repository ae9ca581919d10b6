#include "scanner/Texts.h"

#include "base/Number.h"

#include <initializer_list>

namespace discaro::scanner {

namespace {

// An entry of the settings: its heading, and its value on a line of its own, six blanks in.
std::string settingsEntry(std::string_view heading, std::string_view value) {
    return std::string(heading) + std::string(kLineEnd) + "      " + std::string(value) + std::string(kLineEnd) +
           std::string(kLineEnd);
}

std::string settingsLine(std::string_view line) {
    return std::string(line) + std::string(kLineEnd) + std::string(kLineEnd);
}

// With an empty line between them.
std::string paragraphs(std::initializer_list<std::string_view> lines) {
    std::string text;
    for (const std::string_view line : lines)
        text.append(text.empty() ? "" : "\r\n\r\n").append(line);
    return text;
}

} // namespace

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

std::string welcomeText() {
    return paragraphs({
        "* The following screens will help you complete the task of scanning your CD-ROM.",
        "* If you wish to exit at any time just press cancel.",
        "* If you want to go back to a certain screen to verify or change your enteries , use the Back button.",
        "* You can choose the detail level and error action by pressing the Options button now.",
    });
}

std::string nameText() {
    return paragraphs({
        "* Enter a name that you wish to identify your CD-ROM with. This name will be referred to as the 'Preferred Name' in the future.",
        "* If you leave this entry empty , the volume label can be used instead.",
        "* Also choose the drive you are going to scan.",
    });
}

std::string startText() {
    return paragraphs({
        "* Your CD-ROM will now be scanned.",
        "* This may take a lot of time.This depends on the number of files on your CD-ROM (the more files there are in a directory , the more time it takes to scan this directory) and the speed of your drive.",
        "* Press Start scan to begin , or Cancel to exit.",
    });
}

std::string settingsText(const ScanSettings& settings) {
    return settingsLine("* These are the final settings for your CD-ROM.") +
           settingsLine("* To start scanning press Finish.") + settingsLine("* To exit press Cancel.") +
           settingsEntry("Preferred Name:", settings.preferredName) + settingsEntry("Drive Name:", settings.driveName) +
           settingsEntry("Comments:", settings.comments) +
           settingsLine("* This CD-ROM will be scanned with " + scanManner(settings.options)) +
           "* The CD-ROM contains :-" + std::string(kLineEnd) + "   " + base::numberText(settings.directories) +
           " Directories" + std::string(kLineEnd) + "   " + base::numberText(settings.files) + " Files";
}

} // namespace discaro::scanner
