#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <functional>
#include <vector>

namespace discaro::kit {

// Base class of every window. A window is made, loaded, shown, and at its end unloaded:
//
//   Load     runs Form_Load, once. Show loads first. When Form_Load fails the window is gone,
//            without Form_Unload.
//   Unload   runs Form_Unload, once; then the window hides, Unloaded is emitted (its timers and
//            tray icons listen, and the registry of windows), and what was given to atUnload is
//            released. Closing by the frame is an unload.
//
// An unloaded window stays a valid object until no handler of any window is on the stack, so that a
// handler that yielded can go on using its members; then it is destroyed by itself. Handlers
// declared in the form table no longer run from the moment of unloading on. A window is always made
// with `new`, and nobody deletes it.
//
// Escape leaves a window that has a frame as the frame's close button does, unless the window says
// that something typed would be lost.
//
// Places are told in logical pixels for the reference font. They grow with the font in use: `scale`
// is the factor.
class Form : public QWidget {
    Q_OBJECT
public:
    enum class Modality { Modeless, Modal };
    enum class State { Normal, Minimised };
    enum class Border { Fixed, None, Sizable };

    struct Facts {
        const char* name = nullptr;    // the window's name in the registry, also its object name
        const char* caption = nullptr; // UTF-8
        QSize size;                    // in logical pixels; of a sizable window the first and least size
        Border border = Border::Fixed;
    };

    // A control as the form table declared it.
    struct Control {
        QPointer<QObject> object;
        QRect place;             // in logical pixels; empty for controls that are not seen
        double fontFactor = 1.0; // its font's size as a multiple of the window's
    };

    QString name() const { return objectName(); }
    QString caption() const { return m_caption; }
    void setCaption(const QString& caption);

    void Load();
    // A modal window makes its opener wait: Show returns when it has been unloaded or hidden.
    void Show(Modality modality = Modality::Modeless);
    void Hide() { hide(); }
    void Unload();

    bool isLoaded() const { return m_stage == Stage::Loaded; }
    bool isUnloaded() const { return m_stage == Stage::Unloaded; }

    State state() const;
    void setState(State state);

    // The controls in the order of the form table.
    const std::vector<Control>& controls() const { return m_controls; }
    void addControl(QObject& control, const QRect& place, double fontFactor = 1.0);
    // Moves a control of the form table to another place of its parent.
    void place(QWidget& control, const QRect& place);
    QSize logicalSize() const { return m_logicalSize; }
    void setLogicalSize(QSize size);
    // A sizable window takes this size, in logical pixels, as far as the screen that it comes up on has room for it,
    // but is never smaller than its first size.
    void resizeTo(QSize size);
    // The size of the form table, and the place that it gives a control, as pixels of the screen.
    QSize firstSize() const { return scaled(QRect(QPoint(0, 0), m_logicalSize)).size(); }
    QRect tablePlace(const QWidget& control) const;

    // Whether its first painting is done.
    bool isPainted() const { return m_painted; }
    // Yields until it is painted, for at most a tenth of a second: a window just shown on a real
    // screen has to hear from the window system first. A window that is not visible is not waited
    // for.
    void awaitPainting();

    // How much larger than the reference the font is; never below 1.
    double scale() const { return m_scale; }
    // Logical pixels as pixels of the screen.
    int scaled(double logical) const;
    QRect scaled(const QRect& logical) const;
    QSize logical(QSize pixels) const;

    // Something to give back when the window is unloaded, such as an open data source; the last
    // given goes first.
    void atUnload(std::function<void()> release);
    // Gives it all back now: for a window whose end shows another one that needs the same.
    void giveBack();

signals:
    // Form_Load is done.
    void Loaded();
    void Unloaded();
    // The window has been hidden or unloaded, by whatever way.
    void Left();

protected:
    explicit Form(const Facts& facts);
    ~Form() override;

    virtual void Form_Load() {}
    virtual void Form_Unload() {}
    // Runs when a sizable window has another size, and when its controls were put back into the places of the table.
    virtual void Form_Resize() {}

    // Opens the window there, and not in the middle of the screen, as far as the screen has it.
    void openAt(QPoint place);

    // Whether Escape leaves it now; where not, it beeps.
    virtual bool isLeftByEscape() const { return true; }

    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    // A window that is shown without being loaded would be empty: others use Show.
    using QWidget::show;

    enum class Stage { Made, Loading, Loaded, Unloading, Unloaded };

    void finishUnload();
    void showAs(Modality modality);
    void waitUntilLeft();
    const QScreen* display() const;
    QSize roomForFrame() const;
    void centre();
    void arrange();
    void arrange(const Control& control);

    Stage m_stage = Stage::Made;
    Border m_border;
    QString m_caption;
    QSize m_logicalSize;
    double m_scale = 1.0;
    std::vector<Control> m_controls;
    std::vector<std::function<void()>> m_releases;
    bool m_painted = false;
    bool m_centred = false;
};

} // namespace discaro::kit
