#pragma once

#include "kit/form/FormTableRow.h"

#include <initializer_list>
#include <memory>
#include <vector>

namespace discaro::kit {

// The declaration of a window's controls: the only layout code that a window has. A window gives
// its table as a static member and builds itself from it in its constructor:
//
//   const kit::FormTable<About> About::kTable{
//       control(&About::Label1, "Label1").at(16, 16, 200, 20).text("&Name").labels(&About::Text1),
//       control(&About::Text1, "Text1").at(16, 40, 200, 24).tip("Any name")
//           .when(&TextBox::Enter, &About::Search),
//       control(&About::Command1, "Command1", 0).at(16, 80, 96, 28).text("&OK")
//           .onClick(&About::Command1_Click),
//       control(&About::Timer1, "Timer1").every(500).enabled().onTick(&About::Timer1_Timer),
//   };
//   About::About() : Form({.name = "About", .caption = "About", .size = {240, 120}}) {
//       kTable.build(*this);
//   }
//
// Rows are made in order; a row may stand in any row above it (`in`) and may name any row as the
// control it labels. The Tab key follows the order of the rows. A control without an accessible
// name takes that of its label, else its own text, else its tool tip.
template <typename Window>
class FormTable {
public:
    class AnyRow {
    public:
        template <typename T, bool Indexed>
        AnyRow(const Row<Window, T, Indexed>& row) // NOLINT(google-explicit-constructor): rows stand in a list
            : m_row(std::make_shared<Row<Window, T, Indexed>>(row)) {}
        const WindowRow<Window>& operator*() const { return *m_row; }

    private:
        std::shared_ptr<const WindowRow<Window>> m_row;
    };

    FormTable(std::initializer_list<AnyRow> rows)
        : m_rows(rows) {}

    // Makes the controls, puts them into the window's members, and connects the handlers. Handlers
    // do not run for the first values. To be called once for a window.
    void build(Window& window) const {
        std::vector<QWidget*> focusOrder;
        for (const auto& row : m_rows)
            (*row).create(window, focusOrder);
        for (const auto& row : m_rows)
            (*row).connect(window);
        nameControls(window);
        setFocusOrder(focusOrder);
    }

private:
    std::vector<AnyRow> m_rows;
};

} // namespace discaro::kit
