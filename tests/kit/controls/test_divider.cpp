#include "kit/controls/Divider.h"
#include "kit/program/Yield.h"
#include "support/windows/FormProbe.h"

#include <QtGui/QMouseEvent>
#include <QtWidgets/QLineEdit>

#include <gmock/gmock.h>

using namespace discaro;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class Divider : public testing::Test {
protected:
    Divider() {
        parent.resize(400, 100);
        handle.setGeometry(150, 20, 5, 60);
        QObject::connect(&handle, &kit::Divider::Moved, [this](int left) {
            lefts.push_back(left);
            handle.move(left, handle.y());
        });
        QObject::connect(&handle, &kit::Divider::DblClick, [this] { ++doubles; });
    }
    void moveTo(int x, Qt::MouseButtons held) {
        QMouseEvent event(QEvent::MouseMove, QPoint(x, 10), handle.mapToGlobal(QPoint(x, 10)), Qt::NoButton, held, {});
        QApplication::sendEvent(&handle, &event);
    }

    QWidget parent;
    kit::Divider handle{&parent};
    std::vector<int> lefts;
    int doubles = 0;
};

} // namespace

TEST_F(Divider, TellsWhereItsEdgeIsDraggedTo) {
    QTest::mousePress(&handle, Qt::LeftButton, {}, QPoint(3, 10));
    moveTo(13, Qt::LeftButton);
    EXPECT_EQ(handle.x(), 160);
    moveTo(3 - 60, Qt::LeftButton);
    EXPECT_THAT(lefts, ElementsAre(160, 100));
}

TEST_F(Divider, StaysWhereItIsWithoutTheButton) {
    moveTo(20, Qt::NoButton);
    moveTo(20, Qt::RightButton);
    EXPECT_THAT(lefts, IsEmpty());
    EXPECT_EQ(handle.cursor().shape(), Qt::SplitHCursor);
}

TEST_F(Divider, TellsADoubleClick) {
    QTest::mouseDClick(&handle, Qt::LeftButton, {}, QPoint(2, 10));
    EXPECT_EQ(doubles, 1);
    QTest::mouseDClick(&handle, Qt::RightButton, {}, QPoint(2, 10));
    EXPECT_EQ(doubles, 1);
}

TEST_F(Divider, KeysMoveItByAStepOrToTheEnds) {
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Left, Qt::Key_Left, Qt::Key_Home, Qt::Key_End})
        QTest::keyClick(&handle, key);
    EXPECT_THAT(lefts, ElementsAre(158, 150, 142, 0, 400));
    QTest::keyClick(&handle, Qt::Key_Return);
    EXPECT_EQ(doubles, 1);
}

TEST_F(Divider, OtherKeysAreTheWindows) {
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, {});
    QApplication::sendEvent(&handle, &escape);
    EXPECT_FALSE(escape.isAccepted());
    EXPECT_THAT(lefts, IsEmpty());
}

TEST_F(Divider, TheFocusComesByTabAndIsSeen) {
    QLineEdit line(&parent);
    line.setFocus();
    parent.show();
    parent.activateWindow();
    kit::yield();
    QTest::mouseClick(&handle, Qt::LeftButton, {}, QPoint(2, 10));
    EXPECT_FALSE(handle.hasFocus());
    const QImage without = handle.grab().toImage();
    QTest::keyClick(&line, Qt::Key_Tab);
    EXPECT_TRUE(handle.hasFocus());
    EXPECT_NE(handle.grab().toImage(), without);
    EXPECT_EQ(handle.grab().toImage().pixelColor(0, 0), handle.palette().color(QPalette::Highlight));
}

TEST_F(Divider, TheMouseMovingOnAfterADoubleClickDragsNothing) {
    QTest::mousePress(&handle, Qt::LeftButton, {}, QPoint(2, 10));
    QTest::mouseRelease(&handle, Qt::LeftButton, {}, QPoint(2, 10));
    QTest::mouseDClick(&handle, Qt::LeftButton, {}, QPoint(2, 10));
    moveTo(3, Qt::LeftButton);
    EXPECT_THAT(lefts, IsEmpty());
    QTest::mouseRelease(&handle, Qt::LeftButton, {}, QPoint(3, 10));
    QTest::mousePress(&handle, Qt::LeftButton, {}, QPoint(2, 10));
    moveTo(12, Qt::LeftButton);
    EXPECT_THAT(lefts, ElementsAre(160)) << "it can be taken hold of again";
}
