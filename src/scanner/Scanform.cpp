#include "scanner/Scanform.h"

#include "app/HandOver.h"
#include "app/Module1.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "catalogue/Names.h"
#include "kit/Beep.h"
#include "kit/MsgBox.h"
#include "kit/Strings.h"
#include "kit/Yield.h"
#include "scanner/NameChecks.h"
#include "scanner/Texts.h"

#include <QtCore/QMimeData>
#include <QtCore/QScopedValueRollback>
#include <QtCore/QTime>
#include <QtGui/QDropEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMenu>

#include <chrono>

namespace discaro::scanner {

using base::skipErrors;
using kit::qt;
using kit::utf8;

namespace {

// Text1 where entries stand below it, and where it has the page to itself; its width and top are the table's.
constexpr QRect kTextAboveEntries(24, 16, 592, 128);
constexpr QRect kTextAlone(24, 16, 592, 338);

QString paragraphs(std::initializer_list<const char*> lines) {
    QStringList list;
    for (const char* line : lines)
        list << line;
    return list.join("\r\n\r\n");
}

kit::Answer say(const QString& text, kit::Icon icon, const QString& title, Scanform& form) {
    return kit::MsgBox(text, kit::Buttons::Ok, icon, title, &form);
}

} // namespace

// ---- Load and leave

void Scanform::Form_Load() {
    FormTitle = caption();
    openSources();
    loadDrives();
    Dir1.changed = [this] { Dir1_Change(); };
    ScanPage = 1;
    ShowWelcomePage();
    TrayIcon1->setToolTipText(caption());
    app::Windows::Unload("Loading");
    m_options = {};
}

void Scanform::openSources() {
    const auto open = [this](db::DataSource& source, const char* table) {
        source.SetDatabaseName(app::Module1::cataloguePath());
        source.SetRecordSource(table);
        source.Refresh();
        atUnload([&source] { source.Close(); });
    };
    open(Data1, "master table");
    open(Data2, "drive");
    open(Data3, "directories");
    open(Data4, "files");
}

void Scanform::closeAndReturn() {
    for (db::DataSource* source : {&Data1, &Data2, &Data3, &Data4})
        source->Database()->Close();
    Unload();
    app::showReturnWindow();
}

// The frame's close button stands for the screen's own way out.
void Scanform::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (m_quickScanRuns || isUnloaded())
        return;
    if (!scanIsRunning())
        closeAndReturn();
    else if (Command6->isEnabled())
        Command6_Click();
}

bool Scanform::scanIsRunning() const {
    return m_engine != nullptr;
}

// ---- Drives

void Scanform::loadDrives() {
    const QSignalBlocker quiet(Drive1);
    Drive1->clear();
    for (const char letter : disc::driveTable().letters())
        Drive1->addItem(qt(disc::driveTable().shownText(letter)));
}

std::string Scanform::drive() const {
    return utf8(Drive1->text());
}

// By the first letter; a letter that the list does not have changes nothing.
void Scanform::setDrive(const std::string& drive) {
    for (int i = 0; i < Drive1->count(); ++i)
        if (Drive1->itemText(i).startsWith(QChar(drive[0])))
            Drive1->setListIndex(i);
}

void Scanform::chooseDiscDrive() {
    for (const char letter : disc::driveTable().letters()) {
        const std::string root = rootPath(letter);
        if (disc::driveTable().type(root) != disc::DriveType::CdRom)
            continue;
        setDrive(root);
        if (drive() == root)
            break;
    }
    giveFactsDrive();
}

void Scanform::giveFactsDrive() {
    skipErrors([this] { DrvFact1 = disc::driveTable().facts(drive()); });
}

void Scanform::Drive1_Change() {
    skipErrors([this] { Dir1.setPath(rootPath(drive()[0])); });
    giveFactsDrive();
    const bool disc = DrvFact1.type == disc::DriveType::CdRom;
    if (!disc) {
        kit::Beep();
        say("You must choose a CD-ROM Drive", kit::Icon::None, "Error", *this);
    }
    if (Check1->value())
        Text2->setText(qt(DrvFact1.label));
    else if (!disc)
        Text2->setText({});
}

void Scanform::Dir1_Change() {
    skipErrors([this] { Dir1.setFilePath(Dir1.path()); });
    Text6->showText(qt(directoryInHand(Dir1)));
}

void Scanform::DiscImage_Click() {
    QMenu menu(this);
    menu.addAction("Image &File...", this, [this] {
        addDisc(QFileDialog::getOpenFileName(
            this, "Read a disc image", {},
            "Disc images (*.iso *.bin *.cue *.nrg *.img *.mdf);;All files (*)"));
    });
    menu.addAction("F&older...", this, [this] {
        addDisc(QFileDialog::getExistingDirectory(this, "Read a folder as a disc"));
    });
    menu.exec(DiscImage->mapToGlobal(QPoint(0, DiscImage->height())));
}

void Scanform::addDisc(const QString& path) {
    if (path.isEmpty())
        return;
    try {
        const char letter = disc::driveTable().addImageOrFolder(path.toStdString());
        const std::string chosen = rootPath(letter);
        loadDrives();
        {
            const QSignalBlocker quiet(Drive1);
            Drive1->setListIndex(-1);
        }
        if (ScanPage == 1)
            goNext();
        setDrive(chosen);
    } catch (const base::RuntimeError& error) {
        say(qt(error.description()), kit::Icon::Exclamation, "Error", *this);
    }
}

void Scanform::dragEnterEvent(QDragEnterEvent* event) {
    const bool takesDiscs = Picture1->isVisible() && ScanPage <= 2 && event->mimeData()->hasUrls();
    event->setAccepted(takesDiscs);
}

void Scanform::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    for (const QUrl& url : event->mimeData()->urls())
        addDisc(url.toLocalFile());
}

// ---- The pages

void Scanform::showWholeText(bool whole) {
    place(*Text1, whole ? kTextAlone : kTextAboveEntries);
}

void Scanform::ShowWelcomePage() {
    showWholeText(true);
    Text1->setText(paragraphs(
        {"* The following screens will help you complete the task of scanning your CD-ROM.",
         "* If you wish to exit at any time just press cancel.",
         "* If you want to go back to a certain screen to verify or change your enteries , use the "
         "Back button.",
         "* You can choose the detail level and error action by pressing the Options button "
         "now."}));
    for (QWidget* hidden : {static_cast<QWidget*>(Text2), static_cast<QWidget*>(Label2),
                            static_cast<QWidget*>(Label3), static_cast<QWidget*>(Drive1),
                            static_cast<QWidget*>(DiscImage), static_cast<QWidget*>(Check1)})
        hidden->hide();
    Command1(1).setEnabled(false);
    Command4->show();
}

void Scanform::ShowNamePage() {
    showWholeText(false);
    Text1->setText(
        paragraphs({"* Enter a name that you wish to identify your CD-ROM with. This name will be "
                    "referred to as the "
                    "'Preferred Name' in the future.",
                    "* If you leave this entry empty , the volume label can be used instead.",
                    "* Also choose the drive you are going to scan."}));
    Command4->hide();
    chooseDiscDrive();
    Check1->setValue(false);
    Check1->show();
    Text2->setText({});
    Text2->show();
    Label2->setText("Preferred Name");
    Label2->show();
    Label3->show();
    Drive1->show();
    DiscImage->show();
    Text3->hide();
    Command1(1).setEnabled(true);
    Text2->setFocus();
}

void Scanform::ShowCommentsPage() {
    Text1->setText("* Enter any comments that you would like to be associated with this CD-ROM.");
    showWholeText(false);
    Check1->hide();
    Label3->hide();
    Drive1->hide();
    DiscImage->hide();
    Text2->hide();
    Text4->hide();
    Label2->setText("Comments");
    Text3->show();
    Text3->setFocus();
}

void Scanform::ShowCheckPage() {
    Text1->setText("* The program will now quickly check your CD-ROM's information.");
    showWholeText(false);
    Command1(3).setEnabled(false);
    Text3->hide();
    Label2->setText({});
    Text4->show();
    for (const int index : {0, 1, 2})
        Command1(index).setEnabled(false);
    if (!QuickScanDone)
        runQuickScan();
    for (const int index : {0, 1, 2})
        Command1(index).setEnabled(true);
    Command1(2).setFocus();
}

void Scanform::runQuickScan() {
    const QScopedValueRollback running(m_quickScanRuns, true);
    m_quickScan.begin(drive()[0]);
    try {
        const bool whole = m_quickScan.countBelow([this](const std::string& path) {
            Text4->showText(qt(path));
            kit::yield();
            return !isUnloaded();
        });
        if (whole)
            Text4->setText(qt(m_quickScan.text()));
    } catch (const base::RuntimeError&) {
        say("An error was found during the Quickscan operation. The scan will be cancelled.",
            kit::Icon::Critical, "Error during Quickscan", *this);
        Unload();
        app::Windows::Show("Switch");
    }
}

void Scanform::ShowSettingsPage() {
    Text1->setText(qt(settingsText({.preferredName = utf8(Text2->text()),
                                    .driveName = drive(),
                                    .comments = utf8(Text3->text()),
                                    .options = m_options,
                                    .directories = m_quickScan.directories(),
                                    .files = m_quickScan.files()})));
    Command1(2).setEnabled(false);
    Command1(3).setEnabled(true);
    Text4->hide();
    showWholeText(true);
    Command1(3).setFocus();
}

void Scanform::ShowStartPage() {
    Text5->setText(paragraphs({"* Your CD-ROM will now be scanned.",
                               "* This may take a lot of time.This depends on the number of files "
                               "on your CD-ROM (the more files there are "
                               "in a directory , the more time it takes to scan this directory) "
                               "and the speed of your drive.",
                               "* Press Start scan to begin , or Cancel to exit."}));
}

// ---- The buttons of the pages

void Scanform::Command1_Click(int index) {
    switch (index) {
    case 1:
        goBack();
        break;
    case 2:
        goNext();
        break;
    case 3:
        Picture1->hide();
        Picture2->show();
        ShowStartPage();
        Command2->setFocus();
        break;
    case 0:
    case 4:
    case 7:
        closeAndReturn();
        break;
    default:
        break;
    }
}

void Scanform::goBack() {
    switch (ScanPage) {
    case 2:
        ShowWelcomePage();
        break;
    case 3:
        ShowNamePage();
        break;
    case 4:
        ShowCommentsPage();
        break;
    case 5:
        QuickScanDone = true;
        ShowCheckPage();
        break;
    default:
        return;
    }
    --ScanPage;
}

void Scanform::goNext() {
    switch (ScanPage) {
    case 1:
        ShowNamePage();
        break;
    case 2:
        if (!namePagePasses())
            return;
        ShowCommentsPage();
        break;
    case 3:
        QuickScanDone = false;
        ShowCheckPage();
        break;
    case 4:
        ShowSettingsPage();
        break;
    default:
        return;
    }
    ++ScanPage;
}

// The four checks of page 2, in order.
bool Scanform::namePagePasses() {
    if (Text2->text().isEmpty()) {
        say("You must enter a Preferred name.", kit::Icon::Exclamation, "Error", *this);
        Text2->setFocus();
        return false;
    }
    if (DrvFact1.type != disc::DriveType::CdRom) {
        kit::Beep();
        say("You must choose a CD-ROM Drive", kit::Icon::Exclamation, "Error", *this);
        return false;
    }
    if (const auto message = duplicateNameMessage(Data2.Recordset(), utf8(Text2->text()))) {
        say(qt(*message), kit::Icon::Exclamation, "Duplicate Preferred Name", *this);
        return false;
    }
    return duplicateSerialsPassed(
        Data2.Recordset(), DrvFact1.serial, [this](const std::string& text) {
            return kit::MsgBox(qt(text), kit::Buttons::OkCancel, kit::Icon::Exclamation,
                               "Duplicate Serial Number", this) == kit::Answer::Ok;
        });
}

void Scanform::Check1_Click() {
    Text2->setText(Check1->value() ? qt(DrvFact1.label) : QString());
}

// ---- The options

void Scanform::Command4_Click() {
    Picture6->show();
    Picture1->hide();
    Picture2->hide();
}

void Scanform::Command3_Click() {
    Picture6->hide();
    Picture1->show();
}

// The box works against the usual way, and is meant to: a click on the ticked box means "false", every later one
// ticks it, unticks it at once in a nested click, and means "true".
void Scanform::Check2_Click() {
    if (!Check2->value()) {
        m_options.LogErrors = "false";
        return;
    }
    Check2->setValue(false);
    m_options.LogErrors = "true";
}

void Scanform::Option1_Click() {
    m_options.DetailLevel = "all";
}
void Scanform::Option2_Click() {
    m_options.DetailLevel = "basic";
}
void Scanform::Option3_Click() {
    m_options.DetailLevel = "minimal";
}
void Scanform::Option4_Click() {
    m_options.ErrorAction = "ignore";
}
void Scanform::Option5_Click() {
    m_options.ErrorAction = "cancel";
}
void Scanform::Option6_Click() {
    m_options.UseFreeNumber = "true";
}
void Scanform::Option7_Click() {
    m_options.UseFreeNumber.clear();
}

// A click on a caption is a click on its button.
void Scanform::Label10_Click() {
    Option1->click();
}
void Scanform::Label11_Click() {
    Option2->click();
}
void Scanform::Label12_Click() {
    Option3->click();
}
void Scanform::Label13_Click() {
    Option4->click();
}
void Scanform::Label14_Click() {
    Option5->click();
}
void Scanform::Label15_Click() {
    Check2->click();
}
void Scanform::Label16_Click() {
    Option7->click();
}
void Scanform::Label17_Click() {
    Option6->click();
}

// ---- The scan

ScanRequest Scanform::request() {
    return {.driveLetter = drive()[0],
            .preferredName = utf8(Text2->text()),
            .comments = utf8(Text3->text()),
            .quickFiles = m_quickScan.files(),
            .options = m_options};
}

void Scanform::Command2_Click() {
    if (scanIsRunning())
        return;
    m_engine = std::make_unique<ScanEngine>(ScanSources{Data1, Data2, Data3, Data4},
                                            disc::driveTable(), Dir1, m_display, request());
    try {
        m_engine->run();
    } catch (const base::RuntimeError& error) {
        say(qt(error.description()), kit::Icon::Critical, "Error", *this);
    }
    m_engine.reset();
}

void Scanform::Command6_Click() {
    const auto answer = kit::MsgBox(
        "You have choosen to terminate the scan process. The scan operation will be stopped and "
        "the scanned enteries "
        "will be deleted. Press OK to proceed with deletion or press Cancel to continue.",
        kit::Buttons::OkCancel, kit::Icon::Critical, "Cancel Scan", this);
    if (answer != kit::Answer::Ok)
        return;
    app::Module1::ScanCancelled = 1;
    kit::yield();
}

void Scanform::Command5_Click() {
    Unload();
    kit::yield();
    app::Windows::Show("Scanform");
}

void Scanform::Timer1_Timer() {
    const auto state = Data1.Recordset().Fields(catalogue::masterTable::kScanError).Text();
    if (state == "error")
        say("The last CD-ROM scan was not successfully terminated. This may cause your database to "
            "act wierdly. If "
            "this happens try repairing your database or restore it from the database workshop.",
            kit::Icon::Critical, "Error", *this);
    Timer1->setEnabled(false);
}

// ---- The scanning screen

void Scanform::startClock() {
    m_clock.start();
    Timer2->setEnabled(true);
}

void Scanform::Timer2_Timer() {
    m_clock.tick(QTime::currentTime().second());
    kit::yield();
    m_clock.carryMinute();
    kit::yield();
    if (const auto remaining =
            m_clock.estimate(utf8(NumLED1(0).caption()), utf8(NumLED1(1).caption()))) {
        NumLED3->setCaption(qt(*remaining));
        kit::yield();
    }
    NumLED2->setCaption(qt(m_clock.elapsed()));
    kit::yield();
}

// Each counter gives way to its other side.
void Scanform::NumLED1_Click(int index) {
    NumLED1(1 - index).show();
    NumLED1(index).hide();
}

void Scanform::NumLED2_Click() {
    NumLED2->hide();
    NumLED3->show();
    Label9->setText("Remaining Time");
}

void Scanform::NumLED3_Click() {
    NumLED3->hide();
    NumLED2->show();
    Label9->setText("Elapsed Time");
}

void Scanform::TrayIcon_Restore() {
    setState(State::Normal);
    Show();
}

void Scanform::TrayIcon_Minimise() {
    setState(State::Minimised);
}

// A dark band with a soft edge behind the heading.
void Scanform::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QRect band = rect();
    band.setHeight(scaled(64));
    QLinearGradient blend(band.topLeft(), band.topRight());
    blend.setColorAt(0, QColor(0x1b, 0x35, 0x5c));
    blend.setColorAt(1, QColor(0x3b, 0x74, 0xa8));
    painter.fillRect(band, blend);
    painter.fillRect(band.left(), band.bottom() - 1, band.width(), 2, QColor(0x12, 0x24, 0x40));
}

} // namespace discaro::scanner
