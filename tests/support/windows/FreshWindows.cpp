#include "support/windows/FreshWindows.h"

#include "app/Windows.h"
#include "kit/common/Beep.h"
#include "kit/program/EndProgram.h"
#include "kit/program/MsgBox.h"
#include "kit/program/Yield.h"

#include <QtCore/QSettings>

namespace discaro::test {

namespace {

void keepSettingsIn(const QString& folder) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);
}

} // namespace

FreshWindows::FreshWindows() {
    reset();
    keepSettingsIn(QString::fromStdString(m_settings.path().string()));
}

FreshWindows::~FreshWindows() {
    reset();
    keepSettingsIn(qEnvironmentVariable("XDG_CONFIG_HOME"));
}

void FreshWindows::reset() {
    app::Windows::Clear();
    kit::setAnswerer({});
    kit::setEnder({});
    kit::setBeeper({});
    kit::setYieldPace(std::chrono::nanoseconds(0));
}

} // namespace discaro::test
