#include "kit/program/Voices.h"

#include "kit/common/SpokenText.h"
#include "kit/controls/Controls.h"
#include "kit/controls/Divider.h"
#include "kit/display/Marquee.h"
#include "kit/display/NumLed.h"
#include "kit/display/Picture.h"

#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QAccessibleWidget>
#include <QtWidgets/QLineEdit>

namespace discaro::kit {

namespace {

class LabelVoice : public QAccessibleWidget {
public:
    explicit LabelVoice(Label* label)
        : QAccessibleWidget(label, QAccessible::StaticText) {}

    // A label becomes an entry after it was made, when others may have asked already.
    QAccessible::Role role() const override {
        return label().isEntry() ? QAccessible::Button : QAccessible::StaticText;
    }

    QString text(QAccessible::Text kind) const override {
        const QString given = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && given.isEmpty() ? words() : given;
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.invisible = state.invisible || label().isShadow();
        return state;
    }
    QStringList actionNames() const override {
        if (!label().isEntry())
            return {};
        return {pressAction(), setFocusAction()};
    }
    void doAction(const QString& action) override {
        if (action == pressAction() && label().isEntry() && widget()->isEnabled())
            emit label().Click();
        else
            QAccessibleWidget::doAction(action);
    }

private:
    Label& label() const { return *static_cast<Label*>(widget()); }
    // Only a caption has an access letter; other labels may show data, which is said as it is.
    QString words() const {
        if (label().isShadow())
            return {};
        return label().buddy() ? spokenForm(label().text()) : label().text();
    }
};

// A box of choices says its name before what is chosen; the base class says one of the two.
class ChoiceVoice : public QAccessibleWidget {
public:
    explicit ChoiceVoice(ComboBox* box)
        : QAccessibleWidget(box, QAccessible::ComboBox) {}

    QString text(QAccessible::Text kind) const override {
        QString chosen = box().text();
        const QString given = box().accessibleName();
        if (kind == QAccessible::Value)
            return chosen;
        if (kind != QAccessible::Name)
            return QAccessibleWidget::text(kind);
        return given.isEmpty() ? chosen : given + QStringLiteral(": ") + chosen;
    }
    int childCount() const override { return box().isEditable() ? 2 : 1; }
    QAccessibleInterface* child(int index) const override {
        QWidget* editor = box().lineEdit();
        QWidget* inside = index == 0 ? static_cast<QWidget*>(box().view()) : editor;
        return inside ? QAccessible::queryAccessibleInterface(inside) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (int index = 0; index < childCount(); ++index)
            if (child->object() == this->child(index)->object())
                return index;
        return -1;
    }
    QStringList actionNames() const override { return {showMenuAction(), pressAction()}; }
    void doAction(const QString& action) override {
        if (action != showMenuAction() && action != pressAction())
            return QAccessibleWidget::doAction(action);
        box().view()->isVisible() ? box().hidePopup() : box().showPopup();
    }

private:
    ComboBox& box() const { return *static_cast<ComboBox*>(widget()); }
};

// A text that stands for itself: what it shows is its name, after the name it was given.
template <typename Display>
class DisplayVoice : public QAccessibleWidget {
public:
    explicit DisplayVoice(Display* display)
        : QAccessibleWidget(display, QAccessible::StaticText) {}

    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Name && kind != QAccessible::Value)
            return QAccessibleWidget::text(kind);
        const QString shown = static_cast<Display*>(widget())->text();
        const QString given = widget()->accessibleName();
        const bool alone = kind == QAccessible::Value || given.isEmpty();
        return alone ? shown : given + QStringLiteral(": ") + shown;
    }
};

QAccessibleInterface* makeVoice(const QString&, QObject* object) {
    if (auto* label = qobject_cast<Label*>(object))
        return new LabelVoice(label);
    if (auto* box = qobject_cast<ComboBox*>(object))
        return new ChoiceVoice(box);
    if (auto* led = qobject_cast<NumLed*>(object))
        return new DisplayVoice<NumLed>(led);
    if (auto* marquee = qobject_cast<Marquee*>(object))
        return new DisplayVoice<Marquee>(marquee);
    if (auto* picture = qobject_cast<Picture*>(object))
        return new QAccessibleWidget(picture, QAccessible::Graphic);
    if (auto* handle = qobject_cast<Divider*>(object))
        return new QAccessibleWidget(handle, QAccessible::Grip);
    return nullptr;
}

} // namespace

void installVoices() {
    QAccessible::installFactory(makeVoice);
}

} // namespace discaro::kit
