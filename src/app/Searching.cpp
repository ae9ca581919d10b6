#include "app/Searching.h"

#include "app/Texts.h"
#include "kit/display/Shape.h"

namespace discaro::app {

using kit::control;

namespace {

constexpr int kDiameter = 100;

} // namespace

const kit::FormTable<Searching> Searching::kTable{
    control(&Searching::Image1, "Image1")
        .at(0, 0, kDiameter, kDiameter)
        .picture(":/pictures/searching.svg")
        .says(kSearching),
};

Searching::Searching()
    : Form({.name = "Searching", .caption = "Searching", .size = {kDiameter, kDiameter}, .border = Border::None}) {
    setAttribute(Qt::WA_TranslucentBackground);
    kTable.build(*this);
}

void Searching::Form_Load() {
    const int diameter = scaled(kDiameter);
    setMask(kit::roundRectRegion(0, 0, diameter, diameter, diameter, diameter));
}

} // namespace discaro::app
