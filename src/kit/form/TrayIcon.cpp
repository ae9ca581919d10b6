#include "kit/form/TrayIcon.h"

#include "kit/common/Beep.h"
#include "kit/form/Form.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

namespace discaro::kit {

namespace {

constexpr int kFlashMilliseconds = 1000;
constexpr int kTraySize = 64;
constexpr double kPale = 0.25;

QIcon paleIcon(const QIcon& icon) {
    QPixmap pale(kTraySize, kTraySize);
    pale.fill(Qt::transparent);
    QPainter painter(&pale);
    painter.setOpacity(kPale);
    painter.drawPixmap(0, 0, icon.pixmap(kTraySize, kTraySize));
    painter.end();
    return QIcon(pale);
}

// A tray may come after the program on these platforms; on others it is there or never.
bool mayHaveTray() {
    const QString platform = QGuiApplication::platformName();
    return platform == "xcb" || platform.startsWith("wayland") || QSystemTrayIcon::isSystemTrayAvailable();
}

} // namespace

TrayIcon::TrayIcon(Form* window)
    : QObject(window)
    , m_icon(QGuiApplication::windowIcon())
    , m_flash(this) {
    m_flash.setInterval(kFlashMilliseconds);
    m_menu.addAction("&Restore", this, [this] { raise(&TrayIcon::Restore); });
    m_menu.addAction("&Minimize", this, [this] { raise(&TrayIcon::Minimise); });
    connect(&m_flash, &Timer::Tick, this, &TrayIcon::flash);
    connect(window, &Form::Loaded, this, &TrayIcon::showState);
    connect(window, &Form::Unloaded, this, &TrayIcon::leave);
    if (!mayHaveTray())
        return;
    m_tray = std::make_unique<QSystemTrayIcon>();
    m_tray->setContextMenu(&m_menu);
    connect(m_tray.get(), &QSystemTrayIcon::activated, this, &TrayIcon::activate);
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::setToolTipText(const QString& text) {
    if (text == m_toolTipText)
        return;
    m_toolTipText = text;
    if (m_tray)
        m_tray->setToolTip(text);
}

void TrayIcon::setIcon(const QIcon& icon) {
    m_icon = icon;
    m_paleIcon = {};
    showState();
}

void TrayIcon::setFlashIcon(const QIcon& icon) {
    m_flashIcon = icon;
    showState();
}

void TrayIcon::setVisible(bool visible) {
    m_visible = visible;
    showState();
}

void TrayIcon::setEnabled(bool enabled) {
    m_enabled = enabled;
    for (auto* action : m_menu.actions())
        action->setEnabled(enabled);
}

void TrayIcon::setFlashEnabled(bool flashing) {
    m_flashEnabled = flashing;
    m_flash.setEnabled(flashing);
    if (!flashing)
        m_flashed = false;
    showState();
}

void TrayIcon::flash() {
    m_flashed = !m_flashed;
    if (m_flashSound && m_flashed && m_visible)
        Beep();
    showState();
}

void TrayIcon::showState() {
    if (!m_tray)
        return;
    const auto* window = qobject_cast<const Form*>(parent());
    const bool shown = m_visible && !m_left && window && window->isLoaded();
    if (shown && !m_icon.isNull())
        m_tray->setIcon(m_flashed ? flashedIcon() : m_icon);
    m_tray->setVisible(shown && !m_icon.isNull());
}

// The pale icon is drawn once: each new one would stay in the window library's cache of pixmaps.
const QIcon& TrayIcon::flashedIcon() {
    if (!m_flashIcon.isNull())
        return m_flashIcon;
    if (m_paleIcon.isNull())
        m_paleIcon = paleIcon(m_icon);
    return m_paleIcon;
}

void TrayIcon::activate(QSystemTrayIcon::ActivationReason reason) {
    const bool second = m_lastClick.isValid() && m_lastClick.elapsed() < QApplication::doubleClickInterval();
    if (reason == QSystemTrayIcon::Trigger) {
        m_lastClick.start();
        raise(&TrayIcon::Restore);
    } else if (reason == QSystemTrayIcon::DoubleClick && !(m_trueClick && second)) {
        raise(&TrayIcon::Restore);
    } else if (reason == QSystemTrayIcon::MiddleClick) {
        raise(&TrayIcon::Minimise);
    }
}

void TrayIcon::raise(void (TrayIcon::*notification)()) {
    if (m_enabled && !m_left)
        emit(this->*notification)();
}

void TrayIcon::leave() {
    m_visible = false;
    m_left = true;
    m_flash.stopForGood();
    showState();
}

} // namespace discaro::kit
