#include "scanner/Texts.h"

#include "base/Number.h"
#include "base/Sentence.h"

#include <initializer_list>

namespace discaro::scanner {

using base::filledIn;
using base::numberText;

namespace {

// With an empty line between them.
std::string paragraphs(std::initializer_list<std::string_view> lines) {
    std::string text;
    for (const std::string_view line : lines)
        text.append(text.empty() ? "" : "\r\n\r\n").append(line);
    return text;
}

bool ignoresErrors(const ScanOptions& options) {
    return options.ErrorAction == "ignore";
}

std::string settingsSentence(const ScanOptions& options) {
    if (ignoresErrors(options))
        return filledIn("* This CD-ROM will be scanned with %1 details ignoring all errors.", {options.DetailLevel});
    return filledIn("* This CD-ROM will be scanned with %1 details not ignoring any errors.", {options.DetailLevel});
}

} // namespace

// ---- Into the catalogue

std::string reportSentence(const ScanOptions& options) {
    if (ignoresErrors(options))
        return filledIn("Scanned with %1 details ignoring all errors.", {options.DetailLevel});
    return filledIn("Scanned with %1 details not ignoring any errors.", {options.DetailLevel});
}

std::string initialComments(const ScanOptions& options, const std::string& userComments) {
    std::string comments = reportSentence(options);
    if (!userComments.empty())
        comments.append(kLineEnd).append(userComments);
    return comments;
}

std::string fileErrorText(std::string_view error, std::string_view path) {
    return filledIn("%1 in File :- %2", {error, path});
}

std::string directoryErrorText(std::string_view error, std::string_view path) {
    return filledIn("%1 in Directory :- %2", {error, path});
}

std::string moreErrorsText(size_t count) {
    return filledIn("%1 more errors", {std::to_string(count)});
}

// ---- The wizard's pages

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

std::string countText(double directories, double files) {
    return filledIn("%1 Directories\r\n%2 Files", {numberText(directories), numberText(files)});
}

std::string settingsText(const ScanSettings& settings) {
    return paragraphs({
        "* These are the final settings for your CD-ROM.",
        "* To start scanning press Finish.",
        "* To exit press Cancel.",
        filledIn("Preferred Name:\r\n      %1", {settings.preferredName}),
        filledIn("Drive Name:\r\n      %1", {settings.driveName}),
        filledIn("Comments:\r\n      %1", {settings.comments}),
        settingsSentence(settings.options),
        filledIn("* The CD-ROM contains :-\r\n   %1 Directories\r\n   %2 Files",
                 {numberText(settings.directories), numberText(settings.files)}),
    });
}

// ---- The scanning screen

std::string startText() {
    return paragraphs({
        "* Your CD-ROM will now be scanned.",
        "* This may take a lot of time.This depends on the number of files on your CD-ROM (the more files there are in a directory , the more time it takes to scan this directory) and the speed of your drive.",
        "* Press Start scan to begin , or Cancel to exit.",
    });
}

std::string directoryInHand(const disc::Lister& lister) {
    return filledIn("%1     (%2 File(s))", {lister.path(), std::to_string(lister.fileCount())});
}

std::string progressCaption(std::string_view caption, std::string_view done) {
    return filledIn("%1  (%2 Done)", {caption, done});
}

// ---- Message boxes

std::string duplicateSerialText(std::string_view preferredName) {
    return filledIn(
        "The CD-ROM named  '%1'  has the same serial number as this CD-ROM. You may have scanned it once before. Press Cancel to terminate this scan or press OK to ignore this fact and continue.",
        {preferredName});
}

std::string moreRefusedText(int64_t count) {
    return filledIn("%1 more can't be read either.", {std::to_string(count)});
}

std::string unsavedText(std::string_view reason) {
    return filledIn("The scan could not be saved. The catalogue stands as it was before.\n\n%1", {reason});
}

std::string discLostText(double kept, double counted, bool logged) {
    std::string text =
        filledIn("The CD-ROM could not be read to its end. %1 of the %2 files that were counted are in the catalogue.",
                 {numberText(kept), numberText(counted)});
    return text.append(logged ? " The errors are in the CD-ROM's comments." : "");
}

} // namespace discaro::scanner
