#pragma once

#include "kit/common/Pace.h"

#include <QtWidgets/QWidget>

class QLineEdit;
class QPlainTextEdit;

namespace discaro::kit {

// A box for text, with one line or with several. Plain text both ways: what was set is what `text`
// gives, except that a box with one line ends at the first line end.
class TextBox : public QWidget {
    Q_OBJECT
public:
    explicit TextBox(QWidget* parent = nullptr);

    // Several lines and a vertical scroll bar. To be called before the first text.
    void setMultiLine();
    bool isMultiLine() const { return m_area != nullptr; }

    QString text() const;
    void setText(const QString& text);
    // Like setText for texts that change faster than anyone can read: `text` gives the new one at
    // once, the screen follows at its own pace.
    void showText(const QString& text);

    // The user can read and copy the text but not change it.
    void setReadOnly(bool readOnly);
    void selectAll();

    // The widget inside that the user types into; it carries the accessible name and takes typed
    // keys.
    QWidget& editor() const;

signals:
    void Change();
    // The Enter key, once however long it is held, before it does anything else; a box with several lines still takes
    // its line end.
    void Enter();
    void GotFocus();
    void LostFocus();
    void Click();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void adopt(QWidget& editor);
    void put(const QString& text);

    QLineEdit* m_line = nullptr;
    QPlainTextEdit* m_area = nullptr;
    QString m_set; // what was put into a box with several lines; the user may have changed it since
    QString m_waiting;
    bool m_hasWaiting = false;
    const QEvent* m_editorsKey = nullptr; // the key press that the editor has seen last
    Pace m_pace;
};

} // namespace discaro::kit
