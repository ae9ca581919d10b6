#pragma once

#include "kit/form/Form.h"

#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>

#include <functional>
#include <vector>

namespace discaro::kit {

// One line of a window's menus, with the lines of its submenu. A window gives its menus as one table, top-level menus
// first:
//
//   const std::vector<kit::MenuLine> kMenus{
//       menu("FileMenu", "&File", {
//           item("fileOpen", "&Open", &EXMain::fileOpen_Click),
//           item("fileExit", "E&xit", &EXMain::fileExit_Click).separated(),
//       }),
//       menu("PopUp", "", {...}).hidden(),
//   };
struct MenuLine {
    const char* name;               // object name of the QAction, or of the QMenu
    const char* caption;            // UTF-8, with "&" before the access letter
    std::vector<MenuLine> lines;    // of a menu
    std::function<void(Form&)> run; // of an item

    bool isMenu = false;
    bool isHidden = false;
    bool hasSeparator = false;
    bool takesMark = false;
    bool isMarked = false;

    // A top-level menu that is not in the bar and only pops up.
    MenuLine&& hidden() && {
        isHidden = true;
        return std::move(*this);
    }
    // A separator stands in front of it.
    MenuLine&& separated() && {
        hasSeparator = true;
        return std::move(*this);
    }
    // It is one of several choices, and can have the mark of the one in force, which the window sets. Choices that
    // stand together, with nothing between them, exclude each other.
    MenuLine&& mark(bool marked = false) && {
        takesMark = true;
        isMarked = marked;
        return std::move(*this);
    }
};

inline MenuLine menu(const char* name, const char* caption, std::vector<MenuLine> lines) {
    MenuLine line{.name = name, .caption = caption, .lines = std::move(lines), .run = {}};
    line.isMenu = true;
    return line;
}

template <typename Run>
MenuLine item(const char* name, const char* caption, Run run) {
    return {.name = name, .caption = caption, .lines = {}, .run = std::move(run)};
}

template <typename Window>
MenuLine item(const char* name, const char* caption, void (Window::*handler)()) {
    return item(name, caption, [handler](Form& window) { (static_cast<Window&>(window).*handler)(); });
}

// A window's menus: those in its bar and those that pop up. The key F10 opens the first one.
class MenuBar : public QMenuBar {
    Q_OBJECT
public:
    explicit MenuBar(QWidget* parent = nullptr);

    // To be called once. Items run their action while the window is not unloaded.
    void build(const std::vector<MenuLine>& menus, Form& window);

    // By name; throw base::RuntimeError InvalidValue when there is none.
    QAction& item(const char* name) const;
    QMenu& menu(const char* name) const;

    bool isMarked(const char* name) const { return item(name).isChecked(); }
    void setMarked(const char* name, bool marked) { item(name).setChecked(marked); }

    // Opens a menu at a place of the screen and returns at once.
    void popUp(const char* name, QPoint global) const { menu(name).popup(global); }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void fill(QMenu& menu, const std::vector<MenuLine>& lines, Form& window);
    QAction& addItem(QMenu& menu, const MenuLine& line, Form& window);
    QMenu* makeMenu(QWidget& parent, const MenuLine& line, Form& window);
};

} // namespace discaro::kit
