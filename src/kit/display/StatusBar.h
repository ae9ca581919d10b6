#pragma once

#include <QtWidgets/QLabel>
#include <QtWidgets/QWidget>

#include <vector>

namespace discaro::kit {

// A line at the foot of a window, divided into panels that are numbered from 1. A panel shows a text, or gives its
// place to another control such as a progress bar. The functions that take a panel throw base::RuntimeError
// InvalidValue when there is none of that number.
class StatusBar : public QWidget {
    Q_OBJECT
public:
    explicit StatusBar(QWidget* parent = nullptr);

    struct Panel {
        int width = 0;         // in logical pixels
        bool autoSize = false; // takes what room the others leave
        QString spoken;        // what a screen reader says before the panel's text
    };

    void setPanels(const std::vector<Panel>& panels);
    int panelCount() const { return static_cast<int>(m_panels.size()); }

    QString panelText(int panel) const;
    void setPanelText(int panel, const QString& text);
    bool isAutoSize(int panel) const;
    // A panel that loses its automatic size keeps the width that it has.
    void setAutoSize(int panel, bool autoSize);
    // The panel's place in the status bar, in logical pixels.
    QRect panelPlace(int panel) const;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Place {
        Panel panel;
        QLabel* label = nullptr;
    };

    const Place& at(int panel) const;
    Place& at(int panel) { return const_cast<Place&>(std::as_const(*this).at(panel)); }
    int widthOf(const Panel& panel) const;
    int logicalWidth() const;
    int logicalHeight() const;
    void lay();

    std::vector<Place> m_panels;
};

} // namespace discaro::kit
