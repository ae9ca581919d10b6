#pragma once

#include "disc/drives/Lister.h"
#include "scanner/ScanOptions.h"

#include <string>
#include <string_view>

// What the wizard and the scan say.
namespace discaro::scanner {

// The line end of texts that go into the catalogue and into the wizard's boxes.
inline constexpr std::string_view kLineEnd = "\r\n";

// ---- Into the catalogue

// The sentence that opens the disc's comments: "Scanned with basic details ignoring all errors."
std::string reportSentence(const ScanOptions& options);

// The comments that the disc's row begins with: the report sentence, then the user's own text when there is one.
std::string initialComments(const ScanOptions& options, const std::string& userComments);

// An error and where it was met, as the log has it.
std::string fileErrorText(std::string_view error, std::string_view path);
std::string directoryErrorText(std::string_view error, std::string_view path);

// The end of a log that had no room for all errors.
std::string moreErrorsText(size_t count);

// ---- The wizard's pages

std::string welcomeText();
std::string nameText();
inline constexpr const char* kCommentsText =
    "* Enter any comments that you would like to be associated with this CD-ROM.";
inline constexpr const char* kCheckText = "* The program will now quickly check your CD-ROM's information.";

// What the quick scan has counted.
std::string countText(double directories, double files);

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

inline constexpr const char* kDiscImageTip =
    "Read image files or a folder as discs. You can also drop them on this window.";

// The dialogs that ask for images and for a folder.
inline constexpr const char* kChooseImages = "Read a disc image";
inline constexpr const char* kImageKinds = "Disc images (*.iso *.bin *.cue *.nrg *.img *.mdf);;All files (*)";
inline constexpr const char* kChooseFolder = "Read a folder as a disc";

// ---- The options

inline constexpr const char* kAllDetails =
    "Scan all of the file details.(Name, size, extension, date, time, attributes, number of icons in file and the internal information.)";
inline constexpr const char* kBasicDetails =
    "Scan the basic file details only. (Name, size, extension, date, time, attributes.)";
inline constexpr const char* kMinimalDetails = "Scan minimal details.(File name only.)";

inline constexpr const char* kOnError =
    "If an error is found during the scan process what would you like the program to do?";
inline constexpr const char* kIgnoreErrors = "Ignore the error and carry on scanning.";
inline constexpr const char* kStopAtErrors = "Cancel the operation and delete the added entries.";
inline constexpr const char* kLogErrors = "Log the errors to the CD-ROM's Comments";

inline constexpr const char* kNumbering =
    "When giving a number to a new CD-ROM that will be scanned, would you prefer to use :-";
inline constexpr const char* kFreeNumber = "Any free number (Those of deleted CD-ROM enteries).";
inline constexpr const char* kNextNumber = "The next number in the list (Number of last CD-ROM + 1).";

// ---- The scanning screen

std::string startText();
inline constexpr const char* kFinishedText =
    "* Your CD-ROM was successfully scanned. Press Finish to return to the Main Menu.";

// Each counter and clock gives way to its other side.
inline constexpr const char* kSeeFilesToCome = "Click to see the decremental counter.";
inline constexpr const char* kSeeFilesDone = "Click to see the incremental counter.";
inline constexpr const char* kSeeRemainingTime = "Click to see the approximate remaining time.";
inline constexpr const char* kSeeElapsedTime = "Click to see the elapsed time.";

// "D:\DIR     (12 File(s))": the directory in hand.
std::string directoryInHand(const disc::Lister& lister);

// The window's caption with what is done of the scan, as "12 %".
std::string progressCaption(std::string_view caption, std::string_view done);

// ---- Message boxes

inline constexpr const char* kErrorTitle = "Error";

inline constexpr const char* kNoName = "You must enter a Preferred name.";
inline constexpr const char* kNoDiscDrive = "You must choose a CD-ROM Drive";

// That another disc has the serial number of the one in the drive.
std::string duplicateSerialText(std::string_view preferredName);
inline constexpr const char* kDuplicateSerialTitle = "Duplicate Serial Number";

// Below the images and folders that can't be read, where there are too many for a box.
std::string moreRefusedText(int64_t count);

inline constexpr const char* kQuickScanFailed =
    "An error was found during the Quickscan operation. The scan will be cancelled.";
inline constexpr const char* kQuickScanFailedTitle = "Error during Quickscan";

inline constexpr const char* kUnfinishedScan =
    "The last CD-ROM scan was not successfully terminated. This may cause your database to act wierdly. If this happens try repairing your database or restore it from the database workshop.";

inline constexpr const char* kStopQuestion =
    "You have choosen to terminate the scan process. The scan operation will be stopped and the scanned enteries will be deleted. Press OK to proceed with deletion or press Cancel to continue.";
inline constexpr const char* kStopQuestionTitle = "Cancel Scan";

inline constexpr const char* kStopOnErrorQuestion =
    "An error was found during the scan process. The scan operation will be stopped and the scanned enteries will be deleted. Press OK to proceed with deletion or press Cancel to ignore this error.";
inline constexpr const char* kScanErrorTitle = "Error during Scan";

// After a scan of which nothing is kept: why.
std::string unsavedText(std::string_view reason);

// After a scan whose disc went away during the walk: how many of the counted files are in the catalogue, and where
// the errors are kept when they are.
std::string discLostText(double kept, double counted, bool logged);

} // namespace discaro::scanner
