#pragma once

#include "kit/form/Timer.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtGui/QIcon>
#include <QtWidgets/QMenu>
#include <QtWidgets/QSystemTrayIcon>

#include <memory>

namespace discaro::kit {

class Form;

// A window's icon in the tray. It is there while `visible`, from the end of its window's load
// handler to its unload. Where the desktop has no tray all settings keep their values and nothing
// is shown.
//
// Gestures: a left click or double click on the icon raises Restore; a right click opens a menu
// with "Restore" and "Minimize"; a middle click raises Minimise. While not `enabled` nothing is
// raised. With `trueClick` a double click raises Restore once; without it each of its two clicks
// does.
class TrayIcon : public QObject {
    Q_OBJECT
public:
    explicit TrayIcon(Form* window);
    ~TrayIcon() override;

    QString toolTipText() const { return m_toolTipText; }
    void setToolTipText(const QString& text);
    QIcon icon() const { return m_icon; }
    void setIcon(const QIcon& icon);
    // The icon that takes turns with `icon` while flashing; without one the icon is shown pale.
    QIcon flashIcon() const { return m_flashIcon; }
    void setFlashIcon(const QIcon& icon);

    bool isVisible() const { return m_visible; }
    void setVisible(bool visible);
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);
    bool trueClick() const { return m_trueClick; }
    void setTrueClick(bool trueClick) { m_trueClick = trueClick; }
    bool flashEnabled() const { return m_flashEnabled; }
    void setFlashEnabled(bool flashing);
    bool flashSound() const { return m_flashSound; }
    void setFlashSound(bool sound) { m_flashSound = sound; }
    int flashInterval() const { return m_flash.interval(); }
    void setFlashInterval(int milliseconds) { m_flash.setInterval(milliseconds); }

    // Whether the pale half of a flash shows.
    bool isFlashed() const { return m_flashed; }
    QMenu& menu() { return m_menu; }

    // What a gesture on the icon leads to.
    void activate(QSystemTrayIcon::ActivationReason reason);

signals:
    void Restore();
    void Minimise();

private:
    void leave();
    void showState();
    void flash();
    const QIcon& flashedIcon();
    void raise(void (TrayIcon::*notification)());

    QString m_toolTipText;
    QIcon m_icon;
    QIcon m_flashIcon;
    QIcon m_paleIcon; // null until it is needed
    bool m_visible = true;
    bool m_enabled = true;
    bool m_trueClick = true;
    bool m_flashEnabled = false;
    bool m_flashSound = false;
    bool m_flashed = false;
    bool m_left = false;
    QElapsedTimer m_lastClick;
    Timer m_flash;
    QMenu m_menu;
    std::unique_ptr<QSystemTrayIcon> m_tray;
};

} // namespace discaro::kit
