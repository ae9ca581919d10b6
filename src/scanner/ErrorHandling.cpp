#include "scanner/ErrorHandling.h"

#include "app/Module1.h"
#include "db/sqlite/SqliteError.h"
#include "scanner/Texts.h"

#include <utility>

namespace discaro::scanner {

namespace {

// The numbers of the discs stand together.
bool isOfDisc(const base::RuntimeError& error) {
    return error.number() >= static_cast<int>(base::ErrorNumber::PathMissing) &&
           error.number() <= static_cast<int>(base::ErrorNumber::FileDamaged);
}

} // namespace

ErrorDesk::ErrorDesk(const ScanOptions& options, ScanWatcher& watcher, PlaceName placeName)
    : m_options(options)
    , m_watcher(watcher)
    , m_placeName(std::move(placeName)) {}

ErrorDesk::Next ErrorDesk::handle(const base::RuntimeError& error, const ErrorHandler& handler) {
    m_discFailed |= isOfDisc(error);
    m_discGone |= error.is(base::ErrorNumber::DriveNotReady);
    const bool file = handler.place == ErrorHandler::Place::File;
    const bool damaged = isOfDisc(error) && !error.is(base::ErrorNumber::PathMissing);
    m_damagedDirectories += damaged && !file ? 1 : 0;
    if (handler.looksForConversion && error.is(base::ErrorNumber::DataTypeConversion))
        AskStopOnError();
    const std::string place = m_placeName(handler.place);
    log(file ? fileErrorText(error.description(), place) : directoryErrorText(error.description(), place));
    if (error.is(base::ErrorNumber::TransactionLost)) {
        giveUp(error.description());
        return Next::EndOfProcedure;
    }
    if (m_options.ErrorAction == "ignore")
        return Next::Statement;
    AskStopOnError();
    const bool stops = app::Module1::ScanCancelled == 1;
    if (stops && db::breaksTransaction(error))
        giveUp(error.description());
    if (handler.afterPrompt == ErrorHandler::AfterPrompt::EndProcedure)
        return Next::EndOfProcedure;
    return stops ? Next::Statement : Next::SameStatement;
}

void ErrorDesk::log(const std::string& entry) {
    if (m_log.size() + entry.size() > kLongestLog)
        ++m_unlogged;
    else
        m_log.append(kLineEnd).append(kLineEnd).append(entry);
}

std::string ErrorDesk::ErrorLog() const {
    std::string log = m_log;
    if (m_unlogged != 0)
        log.append(kLineEnd).append(kLineEnd).append(moreErrorsText(m_unlogged));
    return log;
}

void ErrorDesk::giveUp(const std::string& reason) {
    app::Module1::ScanCancelled = 1;
    if (m_reason.empty())
        m_reason = reason;
}

void ErrorDesk::AskStopOnError() {
    if (!m_watcher.userWantsStop())
        return;
    app::Module1::ScanCancelled = 1;
    m_watcher.yield();
}

} // namespace discaro::scanner
