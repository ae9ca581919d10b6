#pragma once

#include <QtGui/QIcon>
#include <QtWidgets/QWidget>

namespace discaro::kit {

// A drawing from a resource, fitted into its place and kept sharp at every scale.
// Its text, when it has one, is what a screen reader says; a picture without one is decoration.
class Picture : public QWidget {
    Q_OBJECT
public:
    explicit Picture(QWidget* parent = nullptr);

    // A resource name such as ":/pictures/face.svg"; an unknown one leaves the picture empty.
    void setSource(const QString& resource);

signals:
    void Click();
    void DoubleClick();
    // Positions in the picture as it stood at the event, and on the screen; in pixels.
    void MouseDown(QPoint position, QPoint global);
    void MouseMove(QPoint position, QPoint global);
    void MouseUp(QPoint position, QPoint global);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    QIcon m_drawing;
};

} // namespace discaro::kit
