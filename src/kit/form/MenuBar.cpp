#include "kit/form/MenuBar.h"

#include "base/RuntimeError.h"
#include "kit/program/UnhandledErrors.h"

#include <QtGui/QActionGroup>
#include <QtGui/QShortcut>

namespace discaro::kit {

namespace {

[[noreturn]] void refuse(const char* name) {
    throw base::RuntimeError(base::ErrorNumber::InvalidValue, std::string("no menu ") + name);
}

} // namespace

MenuBar::MenuBar(QWidget* parent)
    : QMenuBar(parent) {
    setNativeMenuBar(false);
    const auto* first = new QShortcut(Qt::Key_F10, this);
    connect(first, &QShortcut::activated, this, [this] {
        if (!actions().isEmpty())
            setActiveAction(actions().constFirst());
    });
}

void MenuBar::build(const std::vector<MenuLine>& menus, Form& window) {
    for (const MenuLine& line : menus) {
        QMenu* made = makeMenu(*this, line, window);
        if (!line.isHidden)
            QMenuBar::addMenu(made);
    }
}

QMenu* MenuBar::makeMenu(QWidget& parent, const MenuLine& line, Form& window) {
    auto* made = new QMenu(QString::fromUtf8(line.caption), &parent);
    made->setObjectName(QString::fromLatin1(line.name));
    fill(*made, line.lines, window);
    return made;
}

void MenuBar::fill(QMenu& menu, const std::vector<MenuLine>& lines, Form& window) {
    QActionGroup* choices = nullptr;
    for (const MenuLine& line : lines) {
        if (line.hasSeparator)
            menu.addSeparator();
        if (line.hasSeparator || !line.takesMark)
            choices = nullptr;
        if (line.isMenu) {
            menu.addMenu(makeMenu(menu, line, window));
            continue;
        }
        QAction& item = addItem(menu, line, window);
        if (!line.takesMark)
            continue;
        choices = choices ? choices : new QActionGroup(&menu);
        choices->addAction(&item);
    }
}

QAction& MenuBar::addItem(QMenu& menu, const MenuLine& line, Form& window) {
    QAction* made = menu.addAction(QString::fromUtf8(line.caption));
    made->setObjectName(QString::fromLatin1(line.name));
    made->setCheckable(line.takesMark);
    made->setChecked(line.isMarked);
    connect(made, &QAction::triggered, &window, [&window, run = line.run] {
        if (!window.isUnloaded() && !isEndingByError() && run)
            run(window);
    });
    return *made;
}

// Styles draw the line at the bar's foot below the items: the bar is no higher than they are, and stands at the foot of
// its place.
void MenuBar::resizeEvent(QResizeEvent* event) {
    QMenuBar::resizeEvent(event);
    const int spare = height() - sizeHint().height();
    if (spare > 0)
        setGeometry(x(), y() + spare, width(), height() - spare);
}

QAction& MenuBar::item(const char* name) const {
    auto* found = findChild<QAction*>(QString::fromLatin1(name));
    if (!found)
        refuse(name);
    return *found;
}

QMenu& MenuBar::menu(const char* name) const {
    auto* found = findChild<QMenu*>(QString::fromLatin1(name));
    if (!found)
        refuse(name);
    return *found;
}

} // namespace discaro::kit
