#pragma once

#include <QtWidgets/QApplication>

#include <functional>

namespace discaro::kit {

// The application object. An error that no handler takes ends here: its number and description are
// shown in a critical box, then the process ends with exit code 1 and commits nothing. That holds
// for errors in handlers that run during a yield of another handler, too. It also destroys the
// unloaded windows once no handler is on the stack, keeps the program running while no window is up,
// and lets an Enter key that is held choose one thing only.
class Application : public QApplication {
    Q_OBJECT
public:
    Application(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;
};

// Runs a step that is not an event handler, such as the program's entry procedure, with the same
// ending.
void reportingErrors(const std::function<void()>& step);

// Shows the box for the exception being handled and ends the process. To be called inside a catch
// block. While the box of another error is up it does nothing: the process ends with the answer.
void endWithCurrentError();

// Whether the process is ending by an error: timers and declared handlers rest while its box is up.
bool isEndingByError();

} // namespace discaro::kit
