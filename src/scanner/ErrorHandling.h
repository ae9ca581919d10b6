#pragma once

#include "base/RuntimeError.h"
#include "scanner/ScanOptions.h"
#include "scanner/ScanWatcher.h"

#include <functional>
#include <string>
#include <string_view>

namespace discaro::scanner {

// What a procedure of the walk does about a failing statement. The five procedures differ on purpose.
struct ErrorHandler {
    enum class Place { File, Directory };
    enum class AfterPrompt { RunAgain, EndProcedure };

    bool looksForConversion; // prompts at once for a data type conversion error
    Place place;             // what the log names
    AfterPrompt afterPrompt; // under the error action "cancel"
};

inline constexpr ErrorHandler kScanFilesHandler{true, ErrorHandler::Place::File, ErrorHandler::AfterPrompt::RunAgain};
inline constexpr ErrorHandler kCaptureFileHandler{false, ErrorHandler::Place::File,
                                                  ErrorHandler::AfterPrompt::EndProcedure};
inline constexpr ErrorHandler kCaptureFileMinimalHandler{true, ErrorHandler::Place::File,
                                                         ErrorHandler::AfterPrompt::EndProcedure};
// A damaged directory is told at the first look at its files.
inline constexpr ErrorHandler kDamagedDirectoryHandler{true, ErrorHandler::Place::Directory,
                                                       ErrorHandler::AfterPrompt::RunAgain};
inline constexpr ErrorHandler kScanDirectoryHandler{true, ErrorHandler::Place::Directory,
                                                    ErrorHandler::AfterPrompt::EndProcedure};
inline constexpr ErrorHandler kCompleteDirectoryHandler{false, ErrorHandler::Place::Directory,
                                                        ErrorHandler::AfterPrompt::EndProcedure};

// The scan's error log and the prompt, shared by all procedures of the walk.
class ErrorDesk {
public:
    enum class Next { Statement, SameStatement, EndOfProcedure };

    // The options and the watcher outlive the desk. placeName gives what the log names: the file or directory in
    // hand.
    using PlaceName = std::function<std::string(ErrorHandler::Place)>;
    ErrorDesk(const ScanOptions& options, ScanWatcher& watcher, PlaceName placeName);

    // Logs the error, asks as the handler and the error action say, and tells where the procedure goes on. A
    // statement runs again for as long as it fails, and its error is logged and asked about each time, until the
    // user wants the scan stopped. When it was the catalogue that failed, who stops the scan is told how.
    Next handle(const base::RuntimeError& error, const ErrorHandler& handler);

    // Ends the scan because the catalogue can't take it whole. The first reason is the one to tell, when the
    // transaction is over.
    void giveUp(const std::string& reason);
    // Empty as long as nothing ended the scan but the user.
    const std::string& reason() const { return m_reason; }

    // Whether something of the disc could not be read; whether the disc itself was not there; how many of its
    // directories were there and could be read only in part or not at all.
    bool discFailed() const { return m_discFailed; }
    bool discGone() const { return m_discGone; }
    int damagedDirectories() const { return m_damagedDirectories; }

    // Asks whether to stop; a yes sets the shared flag and lets pending events run.
    void AskStopOnError();

    // For each error: two line ends, the description, the place. Beyond kLongestLog bytes errors are only counted.
    static constexpr size_t kLongestLog = size_t{4} << 20;
    std::string ErrorLog() const;

private:
    const ScanOptions& m_options;
    ScanWatcher& m_watcher;
    PlaceName m_placeName;
    void log(const std::string& entry);

    std::string m_log;
    size_t m_unlogged = 0;
    std::string m_reason;
    bool m_discFailed = false;
    bool m_discGone = false;
    int m_damagedDirectories = 0;
};

// Runs one statement of a procedure under its handler. Returns false when the procedure ends here.
template <typename Statement>
bool runStatement(ErrorDesk& desk, const ErrorHandler& handler, Statement&& statement) {
    for (;;) {
        try {
            statement();
            return true;
        } catch (const base::RuntimeError& error) {
            switch (desk.handle(error, handler)) {
            case ErrorDesk::Next::Statement:
                return true;
            case ErrorDesk::Next::SameStatement:
                break;
            case ErrorDesk::Next::EndOfProcedure:
                return false;
            }
        }
    }
}

// Runs statements in order under one handler. Returns false when the procedure ended at one of them.
template <typename... Statements>
bool runStatements(ErrorDesk& desk, const ErrorHandler& handler, Statements&&... statements) {
    return (runStatement(desk, handler, statements) && ...);
}

} // namespace discaro::scanner
