#pragma once

#include "base/RuntimeError.h"
#include "db/DataSource.h"
#include "disc/drives/DriveTable.h"
#include "disc/drives/Lister.h"
#include "kit/display/NumLed.h"
#include "kit/display/ProgressBar.h"
#include "kit/form/FormTable.h"
#include "kit/form/TrayIcon.h"
#include "kit/program/MsgBox.h"
#include "scanner/QuickScan.h"
#include "scanner/ScanClock.h"
#include "scanner/ScanDisplay.h"
#include "scanner/ScanEngine.h"
#include "scanner/ScanOptions.h"

#include <QtCore/QStringList>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace discaro::scanner {

// The wizard that brings a disc into the catalogue: five pages that gather the name, the drive and the comments and
// check them, the options, and the scanning screen.
class Scanform : public kit::Form {
    Q_OBJECT
public:
    // Over the drives of this table, which must outlive the window.
    explicit Scanform(disc::DriveTable& drives = disc::driveTable());

    // Adds image files and folders as drives and chooses the first of them; tells which can't be read, and why.
    void addDiscs(const std::vector<std::filesystem::path>& paths);

    // The three screens, of which one shows
    kit::Panel* Picture1 = nullptr;          // the wizard's pages
    kit::Panel* Picture2 = nullptr;          // scanning
    kit::Panel* Picture6 = nullptr;          // options
    kit::ControlArray<kit::Label> Label1;    // the heading and its shadow
    kit::ControlArray<kit::Button> Command1; // 0 and 4 Cancel, 1 and 5 Back, 2 and 6 Next, 3 and 7 Finish

    // The wizard's pages
    kit::TextBox* Text1 = nullptr;        // what to do on this page
    kit::Label* Label2 = nullptr;         // caption of the entry in use
    kit::TextBox* Text2 = nullptr;        // preferred name
    kit::TextBox* Text3 = nullptr;        // comments
    kit::TextBox* Text4 = nullptr;        // the quick scan's results
    kit::Label* Label3 = nullptr;         // "Drive Name"
    kit::DriveList* Drive1 = nullptr;     // the drives
    kit::MenuButton* DiscImage = nullptr; // reads image files or a folder as discs
    kit::CheckBox* Check1 = nullptr;      // the volume label is the name
    kit::Button* Command4 = nullptr;      // to the options

    // The options
    kit::Label* Label6 = nullptr;         // the screen's heading
    kit::Tabs* SSTab1 = nullptr;          // details, errors, numbering
    kit::OptionButton* Option1 = nullptr; // all details
    kit::OptionButton* Option2 = nullptr; // basic details
    kit::OptionButton* Option3 = nullptr; // names only
    kit::OptionButton* Option4 = nullptr; // carry on after an error
    kit::OptionButton* Option5 = nullptr; // stop at an error
    kit::OptionButton* Option6 = nullptr; // any free number
    kit::OptionButton* Option7 = nullptr; // the next number
    kit::CheckBox* Check2 = nullptr;      // errors go into the comments
    kit::Label* Label7 = nullptr;         // the question on errors
    kit::Label* Label8 = nullptr;         // the question on numbering
    kit::Label* Label10 = nullptr;        // beside Option1
    kit::Label* Label11 = nullptr;        // beside Option2
    kit::Label* Label12 = nullptr;        // beside Option3
    kit::Label* Label13 = nullptr;        // beside Option4
    kit::Label* Label14 = nullptr;        // beside Option5
    kit::Label* Label15 = nullptr;        // beside Check2
    kit::Label* Label16 = nullptr;        // beside Option7
    kit::Label* Label17 = nullptr;        // beside Option6
    kit::Button* Command3 = nullptr;      // back to the pages

    // Scanning
    kit::TextBox* Text5 = nullptr;            // what happens
    kit::ControlArray<kit::NumLed> NumLED1;   // 0 files done, 1 files left
    kit::NumLed* NumLED2 = nullptr;           // elapsed time
    kit::NumLed* NumLED3 = nullptr;           // remaining time
    kit::Label* Label9 = nullptr;             // caption of the time
    kit::ControlArray<kit::Picture> Picture3; // walk: 0 not started, 1 running, 2 finished
    kit::ControlArray<kit::Picture> Picture4; // totals: the same; 3 is never seen
    kit::ControlArray<kit::Label> Label5;     // 0 the walk's line, 1 the totals' line
    kit::Label* Label4 = nullptr;             // "Directory"
    kit::TextBox* Text6 = nullptr;            // the directory in hand
    kit::ProgressBar* ProgressBar1 = nullptr; // the whole scan in files; then the totals in directories
    kit::ProgressBar* ProgressBar2 = nullptr; // the files of the directory in hand
    kit::Button* Command2 = nullptr;          // starts the scan
    kit::Button* Command5 = nullptr;          // scans another disc
    kit::Button* Command6 = nullptr;          // cancels the scan

    kit::Timer* Timer1 = nullptr;       // asks once whether the last scan ended well
    kit::Timer* Timer2 = nullptr;       // the scan's clock
    kit::TrayIcon* TrayIcon1 = nullptr; // while a scan runs
    kit::TrayIcon* TrayIcon2 = nullptr; // at rest

    db::DataSource Data1; // Master Table
    db::DataSource Data2; // Drive
    db::DataSource Data3; // Directories
    db::DataSource Data4; // Files

    QString FormTitle; // the caption at load

protected:
    void Form_Load() override;
    void closeEvent(QCloseEvent* event) override;
    bool isLeftByEscape() const override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    static const kit::FormTable<Scanform> kTable;

    void Command1_Click(int index);
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Command5_Click();
    void Command6_Click();
    void DiscImage_Click();
    void Check1_Click();
    void Check2_Click();
    void Drive1_Change();
    void Option1_Click();
    void Option2_Click();
    void Option3_Click();
    void Option4_Click();
    void Option5_Click();
    void Option6_Click();
    void Option7_Click();
    void Label10_Click();
    void Label11_Click();
    void Label12_Click();
    void Label13_Click();
    void Label14_Click();
    void Label15_Click();
    void Label16_Click();
    void Label17_Click();
    void Text2_Enter();
    void NumLED1_Click(int index);
    void NumLED2_Click();
    void NumLED3_Click();
    void Timer1_Timer();
    void Timer2_Timer();
    void TrayIcon_Restore();
    void TrayIcon_Minimise();
    void Dir1_Change();

    // The wizard's pages, the start of the scanning screen, and page 4 while the disc is counted.
    enum PageNumber : int16_t { Welcome = 1, Name, Comments, Check, Settings, Start, Counting };
    struct Page;
    static const Page kPages[];

    void showPage(PageNumber number);
    void ShowWelcomePage();
    void ShowNamePage();
    void ShowCommentsPage();
    void ShowCheckPage();
    void ShowSettingsPage();
    void ShowStartPage();

    ScanDisplay::Controls scanControls();
    void openSources();
    void loadDrives();
    std::string drive() const;
    void setDrive(const std::string& drive);
    void chooseDiscDrive();
    void giveFactsDrive();
    void lookAtDisc();
    QStringList askForImages();
    QString askForFolder();
    std::string addDrive(const std::filesystem::path& path, QStringList& refused);
    void tellRefused(const QStringList& refused);
    bool takesDiscs() const;
    void takeDropped(const std::vector<std::filesystem::path>& paths);
    void leaveNamePage();
    bool namePagePasses();
    std::filesystem::path addedPath() const;
    void sayDiscFails(const base::RuntimeError& error);
    void countOnCheckPage();
    void returnToCheckPage();
    bool beginQuickScan();
    void runQuickScan();
    void closeAndReturn();
    bool scanIsRunning() const;
    kit::Button* wayOut() const;
    bool holdsTyped() const;
    kit::Answer say(const QString& text, kit::Icon icon, const QString& title);
    ScanRequest request();
    bool scanBegins();

    int16_t ScanPage = 1;       // the page, 1 to 5
    bool QuickScanDone = false; // page 4 is entered to look at what was counted
    PageNumber m_shown = Welcome;
    ScanOptions m_options;
    disc::DriveTable& m_drives;
    disc::DriveFacts DrvFact1;   // of the drive given last
    disc::Lister Dir1;           // lists directories and files of the drive in hand
    char m_ownDrive = '\0';      // the disc drive that the user chose or added last
    bool m_choosesDrive = false; // the window itself chooses one
    QuickScan m_quickScan;
    bool m_quickScanRuns = false;
    ScanClock m_clock;
    std::unique_ptr<ScanDisplay> m_display;
    std::unique_ptr<ScanEngine> m_engine; // while a scan runs
};

} // namespace discaro::scanner
