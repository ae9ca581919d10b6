#pragma once

#include "db/DataSource.h"
#include "kit/display/Marquee.h"
#include "kit/form/FormTable.h"
#include "kit/form/TrayIcon.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace discaro::app {

// The main menu: a round window with eight entries. Entries that need a disc in the catalogue are
// disabled while it has none; an entry whose window is not part of the program is disabled from the
// start; its tool tip tells why. It comes up again where it was last, for as long as the program
// runs. Image files and folders that are dropped on it open the wizard.
//
// Keys: Tab and the arrow keys go through the entries, Enter and Space choose.
class Switch : public kit::Form {
    Q_OBJECT
public:
    Switch();

    // Chooses an entry; an index that none has does nothing.
    void Label1_Click(int index);

    kit::Picture* Image1 = nullptr;       // the face; drags the window
    kit::ControlArray<kit::Label> Label1; // the entries
    kit::Label* Label2 = nullptr;         // holds the hover colour
    kit::Button* Command1 = nullptr;      // minimises
    kit::Panel* Picture1 = nullptr;       // room of the marquee
    kit::Marquee* AXMarquee1 = nullptr;   // the program's name
    kit::Timer* Timer1 = nullptr;         // looks once whether there are discs
    kit::TrayIcon* TrayIcon1 = nullptr;
    db::DataSource Data1; // Drive

protected:
    void Form_Load() override;
    void Form_Unload() override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    static const kit::FormTable<Switch> kTable;

    void Label1_MouseMove(int index);
    void Image1_MouseDown(QPoint position);
    void Image1_MouseMove(QPoint position, QPoint global);
    void Image1_MouseUp();
    void Command1_Click();
    void Timer1_Timer();
    void TrayIcon1_Restore();
    void TrayIcon1_Minimise();

    void cutToCircle();
    void disableMissingWindows();
    void grey(int index, const char* reason);
    void openWindow(int index);
    void openWizard(const std::vector<std::filesystem::path>& discs);
    void showAbout();

    std::string LabelColour; // the entries' resting colour, decimal
    double LastLabel = 0;    // the entry hovered last
    int16_t Dragging = 0;
    double DragX = 0;
    double DragY = 0;
};

} // namespace discaro::app
