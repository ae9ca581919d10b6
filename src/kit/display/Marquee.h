#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

namespace discaro::kit {

// A line of text that runs from right to left, over and over, in the colours of its palette. It
// moves only while it can be seen.
class Marquee : public QWidget {
    Q_OBJECT
public:
    static constexpr double kPixelsPerSecond = 32.0;

    explicit Marquee(QWidget* parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString& text);
    void setScrolling(bool scrolling);
    // Whether it moves at the moment.
    bool isMoving() const { return m_frames.isActive(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void advance();
    void startOrStop();
    double period() const;
    QBrush ink() const;

    QString m_text;
    bool m_scrolling = false;
    double m_offset = 0.0;
    QElapsedTimer m_lastFrame;
    QTimer m_frames;
};

} // namespace discaro::kit
