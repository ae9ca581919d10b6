#include "app/Loading.h"

#include "app/Texts.h"

namespace discaro::app {

using kit::control;

namespace {

const QColor kInk(236, 238, 255);
const QColor kGround(22, 26, 54);
constexpr int kMargin = 14;

void dress(kit::Label& label) {
    label.setFrameStyle(QFrame::Panel | QFrame::Raised);
    label.setMargin(kMargin);
    label.setWordWrap(false);
}

} // namespace

const kit::FormTable<Loading> Loading::kTable{
    control(&Loading::Label1, "Label1").at(0, 0, 240, 48).text(kLoading).size(1.25).set(dress),
};

Loading::Loading()
    : Form({.name = "Loading", .caption = "Discaro", .size = {240, 48}, .border = Border::None}) {
    // The window paints its ground itself: one that its label covered whole would never hear of a painting, and the
    // way from window to window waits for that of this one.
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, kInk);
    colours.setColor(QPalette::Window, kGround);
    setPalette(colours);
    kTable.build(*this);
}

void Loading::Form_Load() {
    Label1->adjustSize();
    Label1->move(0, 0);
    setFixedSize(Label1->size());
}

} // namespace discaro::app
