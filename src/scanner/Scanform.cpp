#include "scanner/Scanform.h"

#include "app/HandOver.h"
#include "app/Module1.h"
#include "app/OpenSource.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "disc/medium/ShownNames.h"
#include "kit/common/Beep.h"
#include "kit/common/Strings.h"
#include "kit/controls/DroppedFiles.h"
#include "kit/program/MsgBox.h"
#include "scanner/Texts.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QMimeData>
#include <QtCore/QScopedValueRollback>
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
    app::openSource(*this, Data1, "master table");
    app::openSource(*this, Data2, "drive");
    app::openSource(*this, Data3, "directories");
    app::openSource(*this, Data4, "files");
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
    const QString name = Text2->text();
    const bool hasName = !name.isEmpty() && !(Check1->value() && name == qt(DrvFact1.label));
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
            Drive1->addDrive(drive, qt(disc::shownName(path.filename().native())), qt(disc::shownPath(path)));
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
        setDrive(disc::DriveTable::rootText(m_ownDrive));
        return giveFactsDrive();
    }
    for (const char letter : m_drives.letters()) {
        const std::string root = disc::DriveTable::rootText(letter);
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
    skipErrors([this] { Dir1.setPath(disc::DriveTable::rootText(drive()[0])); });
    Dir1.letGo(); // the disc may be changed until the quick scan comes
    giveFactsDrive();
    const bool disc = DrvFact1.type == disc::DriveType::CdRom;
    if (disc && !m_choosesDrive)
        m_ownDrive = drive()[0];
    if (!disc) {
        kit::Beep();
        say(kNoDiscDrive, kit::Icon::None, kErrorTitle);
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
    return QFileDialog::getOpenFileNames(this, kChooseImages, lastFolder(), kImageKinds);
}

QString Scanform::askForFolder() {
    return QFileDialog::getExistingDirectory(this, kChooseFolder, lastFolder());
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
        if (ScanPage == Welcome)
            ShowNamePage();
        setDrive(chosen);
    }
    tellRefused(refused);
}

// Returns its root; "" when it can't be read.
std::string Scanform::addDrive(const std::filesystem::path& path, QStringList& refused) {
    try {
        return disc::DriveTable::rootText(m_drives.addImageOrFolder(path));
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
        text += "\n\n" + qt(moreRefusedText(refused.size() - kMostRefused));
    say(text, kit::Icon::Exclamation, kErrorTitle);
}

bool Scanform::takesDiscs() const {
    return Picture1->isVisible() && ScanPage <= Name && !isUnloaded();
}

void Scanform::dragEnterEvent(QDragEnterEvent* event) {
    event->setAccepted(takesDiscs() && !kit::droppedFiles(*event->mimeData()).empty());
}

// Whoever drags waits for the drop to end, which a message box would hold up.
void Scanform::dropEvent(QDropEvent* event) {
    event->setDropAction(Qt::CopyAction); // the file stays where it is
    event->accept();
    QMetaObject::invokeMethod(
        this, [this, paths = kit::droppedFiles(*event->mimeData())] { takeDropped(paths); }, Qt::QueuedConnection);
}

void Scanform::takeDropped(const std::vector<std::filesystem::path>& paths) {
    if (paths.empty() || !takesDiscs())
        return;
    activateWindow();
    addDiscs(paths);
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
