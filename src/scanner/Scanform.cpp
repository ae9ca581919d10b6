#include "scanner/Scanform.h"

#include "app/HandOver.h"
#include "app/Module1.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "catalogue/Names.h"
#include "disc/Names.h"
#include "kit/Beep.h"
#include "kit/DroppedFiles.h"
#include "kit/MsgBox.h"
#include "kit/Strings.h"
#include "kit/Yield.h"
#include "scanner/NameChecks.h"
#include "scanner/Texts.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QMimeData>
#include <QtCore/QScopedValueRollback>
#include <QtCore/QTime>
#include <QtGui/QDropEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMenu>

#include <utility>

namespace discaro::scanner {

using base::skipErrors;
using kit::qt;
using kit::utf8;

namespace {

// Text1 where entries stand below it, and where it has the page to itself; its width and top are the table's.
constexpr QRect kTextAboveEntries(24, 16, 592, 128);
constexpr QRect kTextAlone(24, 16, 592, 362);

// More would not fit on the screen.
constexpr qsizetype kMostRefused = 10;

// Where images and folders are looked for: at first at home, then where the last one lay, as long as the program runs.
QString& lastFolder() {
    static QString folder = QDir::homePath();
    return folder;
}

std::filesystem::path pathOf(const QString& name) {
    return QFile::encodeName(name).toStdString();
}

QString paragraphs(std::initializer_list<const char*> lines) {
    QStringList list;
    for (const char* line : lines)
        list << line;
    return list.join("\r\n\r\n");
}

} // namespace

kit::Answer Scanform::say(const QString& text, kit::Icon icon, const QString& title) {
    return kit::MsgBox(text, kit::Buttons::Ok, icon, title, this);
}

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
    // Once the window is up: what can't be read is told in a box on it.
    QMetaObject::invokeMethod(
        this, [this, discs = std::exchange(app::Module1::DroppedDiscs, {})] { takeDropped(discs); },
        Qt::QueuedConnection);
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
    if (isUnloaded())
        return;
    if (!scanIsRunning() && !m_quickScanRuns)
        closeAndReturn();
    else if (scanIsRunning() && Command6->isEnabled())
        Command6_Click();
    else
        kit::Beep();
}

// Escape is the screen's way out, as far as it has one now.
void Scanform::keyPressEvent(QKeyEvent* event) {
    const bool leads = event->matches(QKeySequence::Cancel) && !event->isAutoRepeat();
    if (leads && isLeftByEscape())
        wayOut()->click();
    else
        Form::keyPressEvent(event);
}

bool Scanform::isLeftByEscape() const {
    const kit::Button* out = wayOut();
    const bool cancels = out == &Command1(0) || out == &Command1(4);
    return out && !(cancels && holdsTyped());
}

kit::Button* Scanform::wayOut() const {
    for (kit::Button* button : {Command3, Command6, &Command1(4), &Command1(7), &Command1(0)})
        if (button->isVisible() && button->isEnabled())
            return button;
    return nullptr;
}

// A name that is the volume label was not typed.
bool Scanform::holdsTyped() const {
    const bool hasName = !Text2->text().isEmpty() && !Check1->value();
    return hasName || !Text3->text().isEmpty();
}

bool Scanform::scanIsRunning() const {
    return m_engine != nullptr;
}

// ---- Drives

// The drive in hand stays the chosen one, under the label of the disc that is in it now.
void Scanform::loadDrives() {
    const QSignalBlocker quiet(Drive1);
    const QString chosen = Drive1->text();
    Drive1->clear();
    for (const char letter : m_drives.letters()) {
        const auto& path = m_drives.addedPath(letter);
        const auto drive = qt(m_drives.shownText(letter));
        if (path.empty())
            Drive1->addDrive(drive);
        else
            Drive1->addDrive(drive, qt(disc::shownName(path.filename().native())),
                             qt(disc::shownPath(path)));
    }
    if (!chosen.isEmpty())
        setDrive(utf8(chosen));
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

// The user's own choice stays.
void Scanform::chooseDiscDrive() {
    const QScopedValueRollback choosing(m_choosesDrive, true);
    if (m_drives.type(std::string_view(&m_ownDrive, 1)) == disc::DriveType::CdRom) {
        setDrive(rootPath(m_ownDrive));
        return giveFactsDrive();
    }
    for (const char letter : m_drives.letters()) {
        const std::string root = rootPath(letter);
        if (m_drives.type(root) != disc::DriveType::CdRom)
            continue;
        setDrive(root);
        if (drive() == root)
            break;
    }
    giveFactsDrive();
}

// The disc that is in the drive now; where it is another than the list tells, the list is read anew.
void Scanform::lookAtDisc() {
    const std::string listed = DrvFact1.label;
    giveFactsDrive();
    if (DrvFact1.label != listed)
        loadDrives();
}

void Scanform::giveFactsDrive() {
    skipErrors([this] { DrvFact1 = m_drives.facts(drive()); });
}

void Scanform::Drive1_Change() {
    skipErrors([this] { Dir1.setPath(rootPath(drive()[0])); });
    Dir1.letGo(); // the disc may be changed until the quick scan comes
    giveFactsDrive();
    const bool disc = DrvFact1.type == disc::DriveType::CdRom;
    if (disc && !m_choosesDrive)
        m_ownDrive = drive()[0];
    if (!disc) {
        kit::Beep();
        say("You must choose a CD-ROM Drive", kit::Icon::None, "Error");
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
    const QAction* files = menu.addAction("Image &Files...");
    menu.addAction("F&older...");
    const QAction* chosen = menu.exec(DiscImage->mapToGlobal(QPoint(0, DiscImage->height())));
    if (!chosen || isUnloaded())
        return;
    const QStringList names = chosen == files ? askForImages() : QStringList(askForFolder());
    std::vector<std::filesystem::path> paths;
    for (const QString& name : names)
        if (!name.isEmpty())
            paths.push_back(pathOf(name));
    if (!isUnloaded())
        addDiscs(paths);
}

QStringList Scanform::askForImages() {
    return QFileDialog::getOpenFileNames(
        this, "Read a disc image", lastFolder(),
        "Disc images (*.iso *.bin *.cue *.nrg *.img *.mdf);;All files (*)");
}

QString Scanform::askForFolder() {
    return QFileDialog::getExistingDirectory(this, "Read a folder as a disc", lastFolder());
}

// The first is asked for again at the end: many others may have taken its letter.
void Scanform::addDiscs(const std::vector<std::filesystem::path>& paths) {
    if (paths.empty())
        return;
    lastFolder() = QFile::decodeName(paths.front().parent_path().c_str());
    QStringList refused;
    std::filesystem::path first;
    for (const auto& path : paths)
        if (!addDrive(path, refused).empty() && first.empty())
            first = path;
    const std::string chosen = first.empty() ? "" : addDrive(first, refused);
    if (!chosen.empty()) {
        m_ownDrive = chosen[0];
        loadDrives();
        {
            const QSignalBlocker quiet(Drive1);
            Drive1->setListIndex(-1);
        }
        if (ScanPage == 1)
            goNext();
        setDrive(chosen);
    }
    tellRefused(refused);
}

// Returns its root; "" when it can't be read.
std::string Scanform::addDrive(const std::filesystem::path& path, QStringList& refused) {
    try {
        return rootPath(m_drives.addImageOrFolder(path));
    } catch (const base::RuntimeError& error) {
        refused << qt(error.description());
        return {};
    }
}

void Scanform::tellRefused(const QStringList& refused) {
    if (refused.isEmpty() || isUnloaded())
        return;
    QString text = refused.mid(0, kMostRefused).join("\n\n");
    if (refused.size() > kMostRefused)
        text += QString("\n\n%1 more can't be read either.").arg(refused.size() - kMostRefused);
    say(text, kit::Icon::Exclamation, "Error");
}

bool Scanform::takesDiscs() const {
    return Picture1->isVisible() && ScanPage <= 2 && !isUnloaded();
}

void Scanform::dragEnterEvent(QDragEnterEvent* event) {
    event->setAccepted(takesDiscs() && !kit::droppedFiles(*event->mimeData()).empty());
}

// Whoever drags waits for the drop to end, which a message box would hold up.
void Scanform::dropEvent(QDropEvent* event) {
    event->setDropAction(Qt::CopyAction); // the file stays where it is
    event->accept();
    QMetaObject::invokeMethod(
        this, [this, paths = kit::droppedFiles(*event->mimeData())] { takeDropped(paths); },
        Qt::QueuedConnection);
}

void Scanform::takeDropped(const std::vector<std::filesystem::path>& paths) {
    if (paths.empty() || !takesDiscs())
        return;
    activateWindow();
    addDiscs(paths);
}

// ---- The pages

void Scanform::showWholeText(bool whole) {
    place(*Text1, whole ? kTextAlone : kTextAboveEntries);
    Text1->raise(); // over the caption, which may stand empty on its ground
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
    Command1(2).setFocus();
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
    m_drives.refresh();
    loadDrives();
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

// Returns whether the page stays: a disc of a kind that can't be read leads back to the page before.
bool Scanform::ShowCheckPage() {
    Text1->setText("* The program will now quickly check your CD-ROM's information.");
    showWholeText(false);
    Command1(3).setEnabled(false);
    Text3->hide();
    Label2->setText({});
    Text4->show();
    for (const int index : {0, 1, 2})
        Command1(index).setEnabled(false);
    const bool stays = QuickScanDone || beginQuickScan();
    if (stays && !QuickScanDone)
        runQuickScan();
    for (const int index : {0, 1, 2})
        Command1(index).setEnabled(true);
    if (stays)
        Command1(2).setFocus();
    else
        ShowCommentsPage();
    return stays;
}

// A disc of a kind that can't be read, and an image or folder that has gone or can't be read, are told of, and the
// user may choose another. A drive without a disc ends the program like any error that nobody expects.
bool Scanform::beginQuickScan() {
    try {
        m_quickScan.begin(drive()[0]);
        return true;
    } catch (const base::RuntimeError& error) {
        if (!error.is(base::ErrorNumber::FileSystemUnknown) &&
            !error.is(base::ErrorNumber::FileSystemUnsupported) &&
            !error.is(base::ErrorNumber::PathMissing) && addedPath().empty())
            throw;
        sayDiscFails(error);
        return false;
    }
}

void Scanform::runQuickScan() {
    const QScopedValueRollback running(m_quickScanRuns, true);
    try {
        const bool whole = m_quickScan.countBelow([this](const std::string& path) {
            Text4->showText(qt(path));
            kit::yield();
            return !isUnloaded();
        });
        if (whole)
            Text4->setText(qt(m_quickScan.text()));
        Dir1.letGo();
    } catch (const base::RuntimeError&) {
        say("An error was found during the Quickscan operation. The scan will be cancelled.",
            kit::Icon::Critical, "Error during Quickscan");
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
        if (!ShowCheckPage())
            return;
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
        say("You must enter a Preferred name.", kit::Icon::Exclamation, "Error");
        Text2->setFocus();
        return false;
    }
    lookAtDisc();
    if (DrvFact1.type != disc::DriveType::CdRom) {
        kit::Beep();
        say("You must choose a CD-ROM Drive", kit::Icon::Exclamation, "Error");
        return false;
    }
    if (const auto message = duplicateNameMessage(Data2.Recordset(), utf8(Text2->text()))) {
        say(qt(*message), kit::Icon::Exclamation, "Duplicate Preferred Name");
        return false;
    }
    return duplicateSerialsPassed(
        Data2.Recordset(), DrvFact1.serial, [this](const std::string& text) {
            return kit::MsgBox(qt(text), kit::Buttons::OkCancel, kit::Icon::Exclamation,
                               "Duplicate Serial Number", this) == kit::Answer::Ok;
        });
}

void Scanform::Text2_Enter() {
    Command1(2).click();
}

// The disc may have been changed since the drive was chosen.
void Scanform::Check1_Click() {
    lookAtDisc();
    Text2->setText(Check1->value() ? qt(DrvFact1.label) : QString());
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
