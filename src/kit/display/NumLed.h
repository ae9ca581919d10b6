#pragma once

#include "kit/common/Pace.h"

#include <QtWidgets/QWidget>

namespace discaro::kit {

// A display of lit segments for digits, blank, '+', '-' and ':'; other characters stay dark. It
// takes every caption at once and paints some thirty times a second at most.
class NumLed : public QWidget {
    Q_OBJECT
public:
    explicit NumLed(QWidget* parent = nullptr);

    QString caption() const { return m_caption; }
    QString text() const { return m_caption; }
    void setCaption(const QString& caption);
    void setText(const QString& text) { setCaption(text); }

signals:
    void Click();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString m_caption;
    Pace m_pace;
};

} // namespace discaro::kit
