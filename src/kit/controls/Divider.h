#pragma once

#include <QtWidgets/QWidget>

namespace discaro::kit {

// A handle between two parts of a window that stand side by side. It only tells where the user moves it to; the window
// moves the parts, and the handle with them.
//
// Keys, when Tab has brought the focus: Left and Right move it, Home and End as far as it goes, Enter is a double
// click.
class Divider : public QWidget {
    Q_OBJECT
public:
    explicit Divider(QWidget* parent = nullptr);

signals:
    void Moved(int left); // where its left edge is wanted, in its parent
    void DblClick();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_held = false; // by a press; the one that a double click ends with drags nothing
    int m_grip = 0;      // where it was taken hold of
};

} // namespace discaro::kit
