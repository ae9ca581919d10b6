#include "kit/program/UnhandledErrors.h"

#include "base/RuntimeError.h"
#include "kit/common/Keys.h"
#include "kit/common/Strings.h"
#include "kit/program/EndProgram.h"
#include "kit/program/Ground.h"
#include "kit/program/MsgBox.h"
#include "kit/program/Texts.h"
#include "kit/program/Voices.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QPlainTextEdit>

// The resources of a static library have to be asked for, and outside of any namespace.
static void takeInPictures() {
    Q_INIT_RESOURCE(pictures);
}

namespace discaro::kit {

namespace {

bool g_endingByError = false;

class Ending {
public:
    Ending() { g_endingByError = true; }
    ~Ending() { g_endingByError = false; }
};

// A key that is held must not choose one thing after another through windows and message boxes. In a text of several
// lines it makes line ends.
bool isHeldEnter(const QObject& receiver, const QEvent& event) {
    if (event.type() != QEvent::KeyPress || qobject_cast<const QPlainTextEdit*>(&receiver))
        return false;
    const auto& press = static_cast<const QKeyEvent&>(event);
    return isEnter(press) && press.isAutoRepeat();
}

QString currentErrorText() {
    try {
        throw;
    } catch (const base::RuntimeError& error) {
        return QString(kRunTimeError).arg(error.number()).arg(qt(error.description()));
    } catch (const std::exception& error) {
        return QString(kErrorWithoutNumber).arg(QString::fromUtf8(error.what()));
    }
}

} // namespace

Application::Application(int& argc, char** argv)
    : QApplication(argc, argv) {
    takeInPictures();
    installVoices();
    setQuitOnLastWindowClosed(false);
}

bool Application::notify(QObject* receiver, QEvent* event) {
    if (isHeldEnter(*receiver, *event))
        return true;
    const Handling handling;
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception&) {
        endWithCurrentError();
        return false;
    }
}

void reportingErrors(const std::function<void()>& step) {
    try {
        step();
    } catch (const std::exception&) {
        endWithCurrentError();
    }
}

void endWithCurrentError() {
    if (g_endingByError)
        return;
    const Ending ending;
    MsgBox(currentErrorText(), Buttons::Ok, Icon::Critical, QCoreApplication::applicationName());
    EndProgram(1);
}

bool isEndingByError() {
    return g_endingByError;
}

} // namespace discaro::kit
