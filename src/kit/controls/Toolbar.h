#pragma once

#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtGui/QIcon>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QWidget>

#include <functional>
#include <vector>

namespace discaro::kit {

// One place of a toolbar as its window declares it.
struct ToolbarButton {
    QString key; // empty for a separator
    QString tip; // also what a screen reader says
    QString image;
    int group = 0; // of the buttons of a group one stays pressed; 0: none
    bool pressed = false;
};

// A row of buttons with pictures. The user can take buttons away, bring them back, and move them; the layout can be
// kept in the user's settings.
//
// A click leaves the keyboard where it is. By keyboard the toolbar is one stop of the Tab key, the arrows go from
// button to button, and Space or Enter presses one: the keyboard then goes back to where it came from, as it does from
// a menu, so that the command acts on the control that the user was in.
class Toolbar : public QWidget {
    Q_OBJECT
public:
    using Pictures = std::function<QIcon(const QString& key)>;

    // Stands for a separator in a layout.
    static const QString kSeparator;

    explicit Toolbar(QWidget* parent = nullptr);
    ~Toolbar() override;

    // To be called once. The layout has all buttons then, in this order.
    void setButtons(const std::vector<ToolbarButton>& buttons);
    void setPictures(const Pictures& pictures);
    const std::vector<ToolbarButton>& buttons() const { return m_declared; }

    // The functions that take a button's key throw base::RuntimeError InvalidValue for one that is not declared. A
    // button that the user has taken away can be asked and pressed like the others.
    bool isPressed(const QString& key) const;
    void setPressed(const QString& key);
    bool isButtonEnabled(const QString& key) const;
    void setButtonEnabled(const QString& key, bool enabled);
    QToolButton& button(const QString& key) const;

    // The keys of the buttons in their places, with kSeparator between. Keys that are not declared, and those that
    // come a second time, are left out.
    const QStringList& arrangement() const { return m_arrangement; }
    void setArrangement(const QStringList& keys);
    QStringList declaredArrangement() const;

    // Keep the layout in the user's settings, and bring it back. The subkey names organisation and application by its
    // last two parts, as in "Software\Maker\Program"; value and key name the entry. Restoring changes nothing and
    // returns false when there is no such entry.
    void SaveToolbar(const QString& key, const QString& subkey, const QString& value) const;
    bool RestoreToolbar(const QString& key, const QString& subkey, const QString& value);

signals:
    void ButtonClick(QString key);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void makeButton(const ToolbarButton& declared);
    void lay();
    void putInReach(QToolButton& button);
    void putFirstInReach();
    void noteFocus(QWidget* before, QWidget* now);
    bool keyPressed(QToolButton& button, const QKeyEvent& event);
    void goTo(int step, const QToolButton& from);
    std::vector<QToolButton*> inOrder() const;

    std::vector<ToolbarButton> m_declared;
    std::vector<QToolButton*> m_buttons; // by the places in m_declared, null for separators
    QStringList m_arrangement;
    std::vector<int> m_separators; // where their lines stand
    QPointer<QWidget> m_cameFrom;
};

} // namespace discaro::kit
