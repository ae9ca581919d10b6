#pragma once

#include <QtGui/QColor>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QTabWidget>

// The simple controls that windows are made of. Each raises `Click` (and where it has a value,
// `Change`), which the form table connects to handlers.
namespace discaro::kit {

// Plain text that wraps. It is never read as markup, so names may hold any character.
class Label : public QLabel {
    Q_OBJECT
public:
    explicit Label(QWidget* parent = nullptr);

    // Raises Change when the text is another than before.
    void setText(const QString& text);

    QColor foreColour() const;
    // The resting colour. The colour while disabled is the palette's until setDisabledColour gives
    // one.
    void setForeColour(const QColor& colour);
    void setDisabledColour(const QColor& colour);

    // A pill of this colour behind the text; an invalid colour takes it away.
    void setGround(const QColor& colour);
    QColor ground() const { return m_ground; }

    // Painted behind another label of the same text, and passed over by screen readers.
    void makeShadow() { m_shadow = true; }
    bool isShadow() const { return m_shadow; }

    // An entry to choose: it takes the focus by Tab, answers Enter and Space with a click, marks
    // the focus with a frame in the given colour, and is told to screen readers as a button.
    void makeEntry(const QColor& focusMark);
    bool isEntry() const { return m_focusMark.isValid(); }

signals:
    void Click();
    void Change();
    void MouseMove(QPoint position);

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void drawEntry();

    bool m_pressed = false;
    bool m_shadow = false;
    QColor m_focusMark;
    QColor m_ground;
};

// The second click of a double click that began on another control presses nothing: that control may have given way
// to this one.
class Button : public QPushButton {
    Q_OBJECT
public:
    explicit Button(QWidget* parent = nullptr);

signals:
    void Click();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    bool m_hadPress = false; // since it was shown
};

// A button that opens a menu, and shows it by an arrow. Its click handler opens the menu.
class MenuButton : public Button {
    Q_OBJECT
public:
    explicit MenuButton(QWidget* parent = nullptr);

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
};

// Click is raised by every change of the value, whoever makes it: a handler that sets the box is
// entered again.
class CheckBox : public QCheckBox {
    Q_OBJECT
public:
    explicit CheckBox(QWidget* parent = nullptr);

    bool value() const { return isChecked(); }
    void setValue(bool ticked) { setChecked(ticked); }

signals:
    void Click();
};

// One of several in the same container. Click is raised when it becomes the chosen one, whoever
// chooses it. The Tab key leads to the chosen one.
class OptionButton : public QRadioButton {
    Q_OBJECT
public:
    explicit OptionButton(QWidget* parent = nullptr);

    bool value() const { return isChecked(); }
    void setValue(bool chosen) { setChecked(chosen); }

signals:
    void Click();

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    void leadTabToChosen();
};

// Click is raised when an item is chosen, by the user (also the same again) or by the program;
// Change when the text shown is another than before.
//
// The wheel turns it only while it has the focus: a choice has effects, so passing over it must not make one. The
// closed box tells in a tool tip what the tip of the chosen item is, else the whole text of a line.
class ComboBox : public QComboBox {
    Q_OBJECT
public:
    explicit ComboBox(QWidget* parent = nullptr);

    // What is chosen or typed; an item that was added as a line gives its whole text.
    QString text() const;
    // An item whose text may hold anything: the list shows it as one line.
    void addLine(const QString& text, const QVariant& value = {});
    // Selects the item of that text; the text of an editable box may be any. Returns whether it is
    // now shown.
    bool setText(const QString& text);
    int listIndex() const { return currentIndex(); }
    void setListIndex(int index) { setCurrentIndex(index); }

    void showPopup() override;

signals:
    void Click();
    void Change();

protected:
    bool event(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QString tip() const;
    void changeIndex(int index);
    void choose();

    bool m_clickIsDue = false; // the list is open and nothing has been chosen from it
};

// The drives as their letters and names. The caller gives the items. The open list shows the file's name behind a
// drive that is a file, and its tool tip is the file's path, as is that of the closed box.
class DriveList : public ComboBox {
    Q_OBJECT
public:
    explicit DriveList(QWidget* parent = nullptr);

    void addDrive(const QString& drive, const QString& file = {}, const QString& path = {});
    // "" for a drive that is no file.
    QString file(int index) const;
    QString path(int index) const;
};

// A container of other controls, and a surface to click on.
class Panel : public QWidget {
    Q_OBJECT
public:
    explicit Panel(QWidget* parent = nullptr);

signals:
    void Click();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
};

// A container with a border and a title.
class Frame : public QGroupBox {
    Q_OBJECT
public:
    explicit Frame(QWidget* parent = nullptr);
};

// Pages of which one shows. Change is raised when another page shows.
class Tabs : public QTabWidget {
    Q_OBJECT
public:
    explicit Tabs(QWidget* parent = nullptr);

    void setPages(const QStringList& captions);
    // Throws base::RuntimeError InvalidValue when there is no such page.
    QWidget& page(int index) const;

signals:
    void Change();
};

} // namespace discaro::kit
