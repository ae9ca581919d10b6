// The main function of test programs with windows: an application on the offscreen platform, in the
// font that the windows were drawn for, in which every warning of the window library fails the
// running test.

#include "kit/display/ImageList.h"
#include "kit/program/UnhandledErrors.h"
#include "kit/program/Yield.h"
#include "support/ScratchFolder.h"

#include <QtGui/QFont>

#include <gtest/gtest.h>

using namespace discaro;

namespace {

void failOnWarning(QtMsgType type, const QMessageLogContext&, const QString& message) {
    const bool noise =
        message.startsWith("This plugin does not support") || message.endsWith("not accepted by receiving widget");
    if (type == QtDebugMsg || type == QtInfoMsg || noise)
        return;
    ADD_FAILURE() << "window library: " << message.toStdString();
}

QFont referenceFont() {
    QFont font("DejaVu Sans");
    font.setPixelSize(12);
    return font;
}

} // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const test::ScratchFolder own;
    for (const char* folder : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"})
        qputenv(folder, QByteArray::fromStdString(own.path().string()));
    qInstallMessageHandler(failOnWarning);
    kit::Application application(argc, argv);
    QApplication::setStyle("fusion");
    QApplication::setFont(referenceFont());
    QGuiApplication::setWindowIcon(kit::pictureIcon(":/pictures/discaro.svg"));
    kit::setYieldPace(std::chrono::nanoseconds(0));
    return RUN_ALL_TESTS();
}
