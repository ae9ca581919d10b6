#include "kit/form/Form.h"

#include "kit/common/Beep.h"
#include "kit/common/WindowScale.h"
#include "kit/program/Ground.h"
#include "kit/program/Yield.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtGui/QCloseEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>

#include <algorithm>
#include <cmath>
#include <utility>

namespace discaro::kit {

namespace {

constexpr int kPaintingLimit = 100;

Qt::WindowFlags flagsFor(Form::Border border) {
    if (border == Form::Border::None)
        return Qt::Window | Qt::FramelessWindowHint;
    const Qt::WindowFlags flags = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                  Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint;
    return border == Form::Border::Sizable ? flags | Qt::WindowMaximizeButtonHint : flags;
}

QFont sizedFont(const QFont& font, const QFont& base, double factor) {
    QFont sized = font;
    if (base.pointSizeF() > 0)
        sized.setPointSizeF(base.pointSizeF() * factor);
    else
        sized.setPixelSize(static_cast<int>(std::lround(base.pixelSize() * factor)));
    return sized;
}

} // namespace

Form::Form(const Facts& facts)
    : QWidget(nullptr, flagsFor(facts.border))
    , m_border(facts.border)
    , m_logicalSize(facts.size)
    , m_scale(fontScale(font())) {
    setObjectName(QString::fromLatin1(facts.name));
    setCaption(QString::fromUtf8(facts.caption));
    arrange();
}

Form::~Form() = default;

void Form::setCaption(const QString& caption) {
    if (caption == m_caption)
        return;
    m_caption = caption;
    // The toolkit puts a mark of its own in the place of "[*]"; doubled it stands for itself.
    setWindowTitle(QString(caption).replace("[*]", "[*][*]"));
}

void Form::Load() {
    if (m_stage != Stage::Made)
        return;
    m_stage = Stage::Loading;
    try {
        Form_Load();
    } catch (...) {
        finishUnload();
        throw;
    }
    if (m_stage != Stage::Loading)
        return;
    m_stage = Stage::Loaded;
    emit Loaded();
}

void Form::Show(Modality modality) {
    Load();
    if (m_stage == Stage::Unloading || m_stage == Stage::Unloaded)
        return;
    showAs(modality);
    if (modality == Modality::Modal)
        waitUntilLeft();
}

void Form::showAs(Modality modality) {
    const bool modal = modality == Modality::Modal;
    QWidget* opener = QApplication::activeWindow();
    if (!isVisible())
        setWindowModality(modal ? Qt::ApplicationModal : Qt::NonModal);
    if (!m_centred)
        centre();
    if (modal && opener && opener != this) {
        winId(); // makes the native window, which can then be told whom it belongs to
        windowHandle()->setTransientParent(opener->windowHandle());
    }
    show();
    raise();
    activateWindow();
}

void Form::waitUntilLeft() {
    if (!isVisible())
        return;
    QEventLoop loop;
    connect(this, &Form::Left, &loop, &QEventLoop::quit);
    loop.exec();
}

const QScreen* Form::display() const {
    const QWidget* opener = QApplication::activeWindow();
    return opener ? opener->screen() : screen();
}

// The frame is not known before the window is shown; a title bar's height is left for it.
QSize Form::roomForFrame() const {
    const bool frameless = m_border == Border::None;
    return {0, frameless ? 0 : style()->pixelMetric(QStyle::PM_TitleBarHeight)};
}

// A window larger than the screen hangs over on the right and at the foot, where neither title nor menus are.
void Form::centre() {
    m_centred = true;
    const QScreen* shownOn = display();
    if (!shownOn)
        return;
    const QRect available = shownOn->availableGeometry();
    QRect whole(QPoint(0, 0), size() + roomForFrame());
    whole.moveCenter(available.center());
    move(std::max(whole.left(), available.left()), std::max(whole.top(), available.top()));
}

void Form::openAt(QPoint place) {
    m_centred = true;
    const QScreen* display = QGuiApplication::screenAt(place + rect().center());
    if (!display)
        return centre();
    move(place);
}

void Form::Unload() {
    if (m_stage == Stage::Unloading || m_stage == Stage::Unloaded)
        return;
    m_stage = Stage::Unloading;
    try {
        Form_Unload();
    } catch (...) {
        finishUnload();
        throw;
    }
    finishUnload();
}

void Form::finishUnload() {
    m_stage = Stage::Unloaded;
    hide();
    emit Unloaded();
    giveBack();
    emit Left();
    atGround([doomed = QPointer<QObject>(this)] { delete doomed.data(); });
}

void Form::atUnload(std::function<void()> release) {
    m_releases.push_back(std::move(release));
}

void Form::giveBack() {
    while (!m_releases.empty()) {
        const auto release = std::move(m_releases.back());
        m_releases.pop_back();
        release();
    }
}

Form::State Form::state() const {
    return isMinimized() ? State::Minimised : State::Normal;
}

void Form::setState(State state) {
    const bool minimised = state == State::Minimised;
    setWindowState(minimised ? windowState() | Qt::WindowMinimized : windowState() & ~Qt::WindowMinimized);
}

void Form::awaitPainting() {
    QElapsedTimer clock;
    clock.start();
    while (isVisible() && !m_painted && clock.elapsed() < kPaintingLimit)
        yield();
}

void Form::addControl(QObject& control, const QRect& place, double fontFactor) {
    m_controls.push_back({&control, place, fontFactor});
    arrange(m_controls.back());
}

void Form::place(QWidget& control, const QRect& place) {
    const auto same = [&control](const Control& each) { return each.object == &control; };
    const auto found = std::find_if(m_controls.begin(), m_controls.end(), same);
    if (found == m_controls.end())
        return;
    found->place = place;
    arrange(*found);
}

void Form::setLogicalSize(QSize size) {
    m_logicalSize = size;
    if (m_border != Border::Sizable)
        return setFixedSize(firstSize());
    const bool hadFirstSize = minimumSize().isNull() || this->size() == minimumSize();
    setMinimumSize(firstSize());
    if (hadFirstSize)
        resize(firstSize());
}

void Form::resizeTo(QSize size) {
    QSize wanted = scaled(QRect(QPoint(0, 0), size)).size();
    if (const QScreen* shownOn = display())
        wanted = wanted.boundedTo(shownOn->availableSize() - roomForFrame());
    resize(wanted.expandedTo(firstSize()));
}

QRect Form::tablePlace(const QWidget& control) const {
    const auto same = [&control](const Control& each) { return each.object == &control; };
    const auto found = std::find_if(m_controls.begin(), m_controls.end(), same);
    return found == m_controls.end() ? QRect() : scaled(found->place);
}

int Form::scaled(double logical) const {
    return static_cast<int>(std::lround(logical * m_scale));
}

// Edges are scaled, not sizes, so that places that touch still touch.
QRect Form::scaled(const QRect& logical) const {
    const QPoint topLeft(scaled(logical.x()), scaled(logical.y()));
    const QPoint end(scaled(logical.x() + logical.width()), scaled(logical.y() + logical.height()));
    return QRect(topLeft, QSize(end.x() - topLeft.x(), end.y() - topLeft.y()));
}

QSize Form::logical(QSize pixels) const {
    return QSize(static_cast<int>(std::lround(pixels.width() / m_scale)),
                 static_cast<int>(std::lround(pixels.height() / m_scale)));
}

void Form::arrange() {
    setLogicalSize(m_logicalSize);
    for (const auto& control : m_controls)
        arrange(control);
    Form_Resize();
}

void Form::arrange(const Control& control) {
    auto* widget = qobject_cast<QWidget*>(control.object.data());
    if (!widget)
        return;
    if (control.fontFactor != 1.0)
        widget->setFont(sizedFont(widget->font(), font(), control.fontFactor));
    if (!control.place.isEmpty())
        widget->setGeometry(scaled(control.place));
}

bool Form::event(QEvent* event) {
    const bool result = QWidget::event(event);
    if (event->type() == QEvent::Paint)
        m_painted = true;
    return result;
}

// One that is held leaves one window only.
void Form::keyPressEvent(QKeyEvent* event) {
    const bool hasFrame = !windowFlags().testFlag(Qt::FramelessWindowHint);
    if (!hasFrame || !event->matches(QKeySequence::Cancel))
        QWidget::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        isLeftByEscape() ? static_cast<void>(close()) : Beep();
}

void Form::closeEvent(QCloseEvent* event) {
    event->ignore();
    Unload();
}

void Form::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::FontChange)
        return;
    const double before = std::exchange(m_scale, fontScale(font()));
    if (before != m_scale)
        arrange();
}

void Form::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    // A spontaneous one only says that the window is minimised or on another desktop.
    if (!event->spontaneous())
        emit Left();
}

void Form::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (m_border == Border::Sizable)
        Form_Resize();
}

} // namespace discaro::kit
