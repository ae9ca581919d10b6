#pragma once

#include "explorer/PropertiesForm.h"

// The rows that the tables of the three properties windows share: all have the same outline, a
// plate with the most important values, the pages, and the two buttons. Places are in logical
// pixels.
namespace discaro::explorer::properties {

inline constexpr int kWidth = 520;
inline constexpr int kMargin = 16;
inline constexpr int kInner = kWidth - 2 * kMargin;

// The plate: a caption and a value on each line. Its texts stand over those of the pages, which
// have a frame.
inline constexpr int kPagePadding = 14;
inline constexpr int kPlateSide = kPagePadding + 2;
inline constexpr int kPlateTop = 10;
inline constexpr int kPlateInner = kInner - 2 * kPlateSide;
inline constexpr int kLineHeight = 24;
inline constexpr int kHeadCaption = 132;
constexpr int plateHeight(int lines) {
    return lines * kLineHeight + 2 * kPlateTop;
}

// The pages, below the plate.
inline constexpr int kPageHeight = 216;
inline constexpr int kTabsHeight = kPageHeight + 30;
inline constexpr int kPageInner = kInner - 2 * kPagePadding;
inline constexpr int kRow = 27;
constexpr int tabsTop(int lines) {
    return kMargin + plateHeight(lines) + 12;
}

// The buttons, below the pages.
inline constexpr int kButtonWidth = 96;
inline constexpr int kButtonHeight = 30;
constexpr int buttonTop(int lines) {
    return tabsTop(lines) + kTabsHeight + 12;
}
constexpr QSize windowSize(int lines) {
    return {kWidth, buttonTop(lines) + kButtonHeight + 14};
}

inline const Qt::Alignment kLeft = Qt::AlignLeft | Qt::AlignVCenter;

template <typename Window>
auto headPlate(int lines) {
    return kit::control<Window>(&Window::Picture1, "Picture1").at(kMargin, kMargin, kInner, plateHeight(lines));
}

template <typename Window>
auto headCaption(int index, int line, const char* text) {
    return kit::control<Window>(&Window::lblLabels, "lblLabels", index)
        .at(kPlateSide, kPlateTop + line * kLineHeight, kHeadCaption, kLineHeight)
        .in(&Window::Picture1)
        .text(text)
        .align(kLeft)
        .labels(&Window::lblFields, index);
}

template <typename Window>
auto headValue(int index, int line) {
    return kit::control<Window>(&Window::lblFields, "lblFields", index)
        .at(kPlateSide + kHeadCaption, kPlateTop + line * kLineHeight, kPlateInner - kHeadCaption, kLineHeight)
        .in(&Window::Picture1);
}

template <typename Window>
auto tabPages(int lines, const QStringList& captions) {
    return kit::control<Window>(&Window::SSTab1, "SSTab1")
        .at(kMargin, tabsTop(lines), kInner, kTabsHeight)
        .pages(captions)
        .says("Properties");
}

template <typename Window>
auto fieldCaption(int index, int page, int row, const char* text, int width) {
    return kit::control<Window>(&Window::lblLabels, "lblLabels", index)
        .at(kPagePadding, kPagePadding + row * kRow, width, kLineHeight)
        .in(&Window::SSTab1, page)
        .text(text)
        .align(kLeft)
        .labels(&Window::lblFields, index);
}

template <typename Window>
auto fieldValue(int index, int page, int row, int captionWidth) {
    return kit::control<Window>(&Window::lblFields, "lblFields", index)
        .at(kPagePadding + captionWidth, kPagePadding + row * kRow, kPageInner - captionWidth, kLineHeight)
        .in(&Window::SSTab1, page);
}

// A box with its caption over it, from the top of a page.
template <typename Window, typename Base>
auto areaCaption(int index, int page, const char* text, kit::TextBox* Base::*box) {
    return kit::control<Window>(&Window::lblLabels, "lblLabels", index)
        .at(kPagePadding, kPagePadding - 4, kPageInner, 20)
        .in(&Window::SSTab1, page)
        .text(text)
        .align(kLeft)
        .labels(box);
}

template <typename Window, typename Base>
auto areaBox(kit::TextBox* Base::*member, const char* name, int page, int height) {
    return kit::control<Window>(member, name)
        .at(kPagePadding, kPagePadding + 20, kPageInner, height)
        .in(&Window::SSTab1, page)
        .multiLine();
}
inline constexpr int kWholePage = kPageHeight - 2 * kPagePadding - 20;

template <typename Window, typename Base>
auto applyButton(int lines, void (Base::*click)()) {
    return kit::control<Window>(&Window::Command1, "Command1")
        .at(kWidth - kMargin - 2 * kButtonWidth - 8, buttonTop(lines), kButtonWidth, kButtonHeight)
        .text("&Apply")
        .disabled()
        .onClick(click);
}

template <typename Window, typename Base>
auto okButton(int lines, void (Base::*click)()) {
    return kit::control<Window>(&Window::Command2, "Command2")
        .at(kWidth - kMargin - kButtonWidth, buttonTop(lines), kButtonWidth, kButtonHeight)
        .text("&OK")
        .onClick(click);
}

} // namespace discaro::explorer::properties
