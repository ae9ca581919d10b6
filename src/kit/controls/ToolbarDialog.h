#pragma once

#include "kit/controls/Toolbar.h"

#include <QtWidgets/QDialog>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>

namespace discaro::kit {

// Lets the user choose which buttons a toolbar has, and in which order. Every change shows in the toolbar at once.
// The toolbar outlives the dialog.
class ToolbarDialog : public QDialog {
    Q_OBJECT
public:
    explicit ToolbarDialog(Toolbar& toolbar);

    QListWidget* available = nullptr; // buttons that the toolbar does not have, and the separator
    QListWidget* present = nullptr;   // what the toolbar has
    QPushButton* add = nullptr;       // brings the one chosen on the left in front of the one on the right
    QPushButton* remove = nullptr;    // takes the one chosen on the right away
    QPushButton* moveUp = nullptr;
    QPushButton* moveDown = nullptr;
    QPushButton* reset = nullptr; // all buttons in the order that they had first

private:
    void build();
    void showArrangement(int chosen);
    void fillAvailable();
    void apply(const QStringList& keys, int chosen);
    void addChosen();
    void removeChosen();
    void moveChosen(int by);
    void enableButtons();
    QListWidgetItem* entry(const QString& key) const;

    Toolbar& m_toolbar;
};

// Lets the user change a toolbar's layout; returns when the dialog is closed.
void Customize(Toolbar& toolbar);

} // namespace discaro::kit
