#include "support/windows/GoldenForm.h"

#include "kit/controls/TextBox.h"
#include "kit/form/TrayIcon.h"
#include "support/Files.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QTabWidget>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace discaro::test {

namespace {

QString quoted(const QString& text) {
    QString shown = text;
    return '"' + shown.replace('\\', "\\\\").replace('\r', "\\r").replace('\n', "\\n").replace('"', "\\\"") + '"';
}

QString className(const QObject& object) {
    return QString::fromLatin1(object.metaObject()->className()).section("::", -1);
}

QString place(const QRect& place) {
    return QString("%1,%2 %3x%4").arg(place.x()).arg(place.y()).arg(place.width()).arg(place.height());
}

QStringList itemsOf(const QComboBox& box) {
    QStringList items;
    for (int index = 0; index < box.count(); ++index)
        items << quoted(box.itemText(index));
    return items;
}

QStringList pagesOf(const QTabWidget& tabs) {
    QStringList pages;
    for (int index = 0; index < tabs.count(); ++index)
        pages << quoted(tabs.tabText(index));
    return pages;
}

QString textOf(const QWidget& widget) {
    if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget))
        return "pages " + pagesOf(*tabs).join(' ');
    if (const auto* combo = qobject_cast<const QComboBox*>(&widget))
        return quoted(combo->currentText()) + " of [" + itemsOf(*combo).join(' ') + ']';
    if (const auto* box = qobject_cast<const kit::TextBox*>(&widget))
        return quoted(box->text()) + (box->isMultiLine() ? " multi-line" : "") +
               (box->editor().property("readOnly").toBool() ? " read-only" : "");
    if (qobject_cast<const QProgressBar*>(&widget))
        return quoted("");
    const QVariant title = widget.property("title");
    return quoted(title.isValid() ? title.toString() : widget.property("text").toString());
}

// The container, where that is not the window itself: "in Picture1", or "in SSTab1 page 2".
QString container(const QWidget& widget, const kit::Form& form) {
    const QWidget* parent = widget.parentWidget();
    if (parent == &form || !parent)
        return {};
    if (!parent->objectName().isEmpty() && !parent->objectName().startsWith("qt_"))
        return " in " + parent->objectName();
    for (const QWidget* above = parent->parentWidget(); above; above = above->parentWidget())
        if (const auto* tabs = qobject_cast<const QTabWidget*>(above))
            return QString(" in %1 page %2").arg(tabs->objectName()).arg(tabs->indexOf(parent));
    return {};
}

QString lineOf(const QWidget& widget, const kit::Form::Control& control, const kit::Form& form) {
    QString line = QString("%1 %2 at %3%4 text %5 tip %6")
                       .arg(widget.objectName(), className(widget), place(control.place), container(widget, form),
                            textOf(widget), quoted(widget.toolTip()));
    if (widget.property("checked").toBool())
        line += " ticked";
    line += widget.isEnabledTo(widget.parentWidget()) ? " enabled" : " disabled";
    line += widget.isHidden() ? " hidden" : " visible";
    const auto* box = qobject_cast<const kit::TextBox*>(&widget);
    const QString spoken = box ? box->editor().accessibleName() : widget.accessibleName();
    if (!spoken.isEmpty() && spoken != widget.toolTip())
        line += " says " + quoted(spoken);
    return line;
}

QString lineOf(const QObject& object) {
    QString line = QString("%1 %2").arg(object.objectName(), className(object));
    if (const auto* timer = qobject_cast<const kit::Timer*>(&object))
        line += QString(" every %1 ms %2").arg(timer->interval()).arg(timer->isEnabled() ? "enabled" : "disabled");
    if (const auto* icon = qobject_cast<const kit::TrayIcon*>(&object))
        line += QString(" tip %1 %2 trueclick %3 flash %4 every %5 ms sound %6 %7")
                    .arg(quoted(icon->toolTipText()), icon->isEnabled() ? "enabled" : "disabled")
                    .arg(icon->trueClick())
                    .arg(icon->flashEnabled())
                    .arg(icon->flashInterval())
                    .arg(icon->flashSound())
                    .arg(icon->isVisible() ? "visible" : "hidden");
    return line;
}

} // namespace

std::string describe(const kit::Form& form) {
    const QSize size = form.logicalSize();
    QString text =
        QString("%1 %2 %3x%4\n").arg(form.name(), quoted(form.caption())).arg(size.width()).arg(size.height());
    for (const auto& control : form.controls()) {
        const auto* widget = qobject_cast<const QWidget*>(control.object.data());
        text += (widget ? lineOf(*widget, control, form) : lineOf(*control.object)) + '\n';
    }
    return text.toStdString();
}

void expectGolden(const std::string& described, const std::string& room, const std::string& name) {
    const auto path = std::filesystem::path(DISCARO_TESTS_FOLDER) / room / "golden" / (name + ".txt");
    const char* update = std::getenv("DISCARO_UPDATE_GOLDEN");
    if (update && *update == '1') {
        writeFile(path, described);
        return;
    }
    ASSERT_TRUE(std::filesystem::exists(path)) << path << " is missing; run with DISCARO_UPDATE_GOLDEN=1";
    EXPECT_EQ(described, readFile(path)) << path;
}

void expectGolden(const kit::Form& form, const std::string& room) {
    expectGolden(describe(form), room, form.name().toStdString());
}

} // namespace discaro::test
