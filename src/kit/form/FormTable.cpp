#include "kit/form/FormTable.h"

#include "kit/common/CellText.h"
#include "kit/common/SpokenText.h"

namespace discaro::kit {

namespace {

void applyFont(QWidget& widget, const RowFacts& facts) {
    if (!facts.bold && facts.fontFamily.isEmpty())
        return;
    QFont font = widget.font();
    if (facts.bold)
        font.setBold(true);
    if (!facts.fontFamily.isEmpty())
        font.setFamily(facts.fontFamily);
    widget.setFont(font);
}

// The widget that the keyboard and the screen reader meet.
QWidget& spokenWidget(QWidget& control) {
    auto* box = qobject_cast<TextBox*>(&control);
    return box ? box->editor() : control;
}

} // namespace

QString RowFacts::elementName() const {
    const auto plain = QString::fromLatin1(name);
    return index < 0 ? plain : QStringLiteral("%1(%2)").arg(plain).arg(index);
}

void applyFacts(QObject& control, const RowFacts& facts) {
    control.setObjectName(facts.elementName());
    auto* widget = qobject_cast<QWidget*>(&control);
    if (!widget)
        return;
    applyFont(*widget, facts);
    widget->setToolTip(plainToolTip(facts.toolTip));
    spokenWidget(*widget).setAccessibleName(facts.accessibleName);
    widget->setEnabled(!facts.disabled);
}

void applyAlignment(QWidget& control, Qt::Alignment alignment) {
    if (auto* label = qobject_cast<QLabel*>(&control))
        label->setAlignment(alignment);
}

void applyVisibility(QWidget& control, const RowFacts& facts) {
    if (facts.hidden)
        control.hide();
}

void labelControl(Label& label, QWidget& labelled) {
    label.setBuddy(&labelled);
    QWidget& spoken = spokenWidget(labelled);
    if (spoken.accessibleName().isEmpty())
        spoken.setAccessibleName(spokenForm(label.text()));
}

void nameControls(Form& form) {
    for (const auto& control : form.controls()) {
        auto* widget = qobject_cast<QWidget*>(control.object.data());
        if (!widget)
            continue;
        QWidget& spoken = spokenWidget(*widget);
        const bool saysItself = qobject_cast<QLabel*>(widget) || qobject_cast<QAbstractButton*>(widget);
        if (spoken.accessibleName().isEmpty() && !(saysItself && hasWords(widget->property("text").toString())))
            spoken.setAccessibleName(widget->toolTip());
    }
}

void setFocusOrder(const std::vector<QWidget*>& controls) {
    QWidget* last = nullptr;
    for (QWidget* control : controls) {
        if (control->focusPolicy() == Qt::NoFocus)
            continue;
        if (last)
            QWidget::setTabOrder(last, control);
        last = control;
    }
}

} // namespace discaro::kit
