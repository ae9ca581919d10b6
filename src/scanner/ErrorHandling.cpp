#include "scanner/ErrorHandling.h"

#include "app/Module1.h"
#include "scanner/Texts.h"

namespace discaro::scanner {

ErrorDesk::ErrorDesk(const ScanOptions& options, ScanWatcher& watcher, PlaceName placeName)
    : m_options(options), m_watcher(watcher), m_placeName(std::move(placeName)) {}

ErrorDesk::Next ErrorDesk::handle(const base::RuntimeError& error, const ErrorHandler& handler) {
    if (handler.looksForConversion && error.is(base::ErrorNumber::DataTypeConversion))
        AskStopOnError();
    const bool file = handler.place == ErrorHandler::Place::File;
    m_log.append(kLineEnd).append(kLineEnd).append(error.description());
    m_log.append(file ? " in File :- " : " in Directory :- ").append(m_placeName(handler.place));
    if (m_options.ErrorAction == "ignore")
        return Next::Statement;
    AskStopOnError();
    return handler.afterPrompt == ErrorHandler::AfterPrompt::RunAgain ? Next::SameStatement
                                                                      : Next::EndOfProcedure;
}

void ErrorDesk::AskStopOnError() {
    if (!m_watcher.askStopOnError())
        return;
    app::Module1::ScanCancelled = 1;
    m_watcher.yield();
}

} // namespace discaro::scanner
