#include "explorer/ExplorerRig.h"

#include "app/Windows.h"
#include "kit/common/Strings.h"
#include "kit/program/Yield.h"

#include <QtTest/QTest>

namespace discaro::test {

using explorer::EXMain;

StubWindow::StubWindow(const char* name, Stay stay, std::vector<std::string>& log)
    : Form({.name = name, .caption = name, .size = {120, 40}})
    , m_stay(stay)
    , m_log(log) {}

void StubWindow::Form_Load() {
    m_log.push_back(name().toStdString());
    if (onLoad)
        onLoad();
    if (m_stay == Stay::Leave)
        Unload();
}

ExplorerRig::ExplorerRig() {
    for (const char* name : {"Switch", "Loading", "Scanform", "DeleteCD", "Workshop", "Programs", "Search"})
        addStub(name, StubWindow::Stay::Up);
    for (const char* name : {"About", "EXCDROM", "EXDir", "EXFile", "ProgTag", "DirSim"})
        addStub(name, StubWindow::Stay::Leave);
    app::Windows::Register("EXMain", [] { return new EXMain; });
}

void ExplorerRig::addStub(const char* name, StubWindow::Stay stay) {
    app::Windows::Register(name, [this, name, stay] {
        auto* made = new StubWindow(name, stay, shown);
        if (stay == StubWindow::Stay::Leave)
            made->onLoad = [this] {
                if (whenModal)
                    whenModal();
            };
        return made;
    });
}

void ExplorerRig::fill() const {
    catalogue.add(DiscRow{.number = 1, .name = "Games"});
    catalogue.add(DirectoryRow{.number = "C1D1",
                               .name = "D:\\",
                               .path = "D:\\",
                               .files = 2,
                               .subdirectories = 2,
                               .size = 1536,
                               .totalSize = 2048,
                               .totalFiles = 3,
                               .totalSubdirectories = 3});
    catalogue.add(DirectoryRow{.number = "C1D1S1", .name = "DOCS", .files = 1, .subdirectories = 1, .size = 512});
    catalogue.add(DirectoryRow{.number = "C1D1S1S1", .name = "OLD", .path = "D:\\DOCS\\OLD"});
    catalogue.add(DirectoryRow{.number = "C1D1S2", .name = "Play"});
    catalogue.add(FileRow{.directory = "C1D1", .name = "readme.txt", .extension = ".txt", .size = 10.0});
    catalogue.add(FileRow{.directory = "C1D1", .name = "setup.exe", .extension = ".exe", .size = 1526.0, .icons = 3});
    catalogue.add(FileRow{.directory = "C1D1S1", .name = "manual.doc", .extension = ".doc", .size = 512.0});
    catalogue.add(DiscRow{.number = 2, .name = "Atlas"});
    catalogue.addRoot(2);
    catalogue.add(DirectoryRow{.number = "C2D1S1", .name = "MAPS", .size = 30});
    catalogue.add(FileRow{.directory = "C2D1S1", .name = "asia.gif", .extension = ".gif", .size = 10.0});
    catalogue.add(FileRow{.directory = "C2D1S1", .name = "africa.gif", .extension = ".gif", .size = 20.0});
}

EXMain& ExplorerRig::open() {
    app::Windows::Show("Loading");
    app::Windows::Show("EXMain");
    auto* window = static_cast<EXMain*>(app::Windows::Find("EXMain"));
    if (!window)
        throw std::logic_error("the explorer did not open");
    load(*window);
    return *window;
}

void ExplorerRig::load(EXMain& window) const {
    emit window.Timer2->Tick();
    kit::yield();
}

bool ExplorerRig::isUp(const char* window) const {
    return app::Windows::IsLoaded(window);
}

EXMain& ExplorerTest::openOn(const char* key) {
    EXMain& window = rig.open();
    window.Combo1->setListIndex(1);
    clickNode(window, key);
    rig.shown.clear();
    return window;
}

int nodeOf(const EXMain& window, const char* key) {
    return window.tvwdb->nodes().find(QString::fromUtf8(key));
}

namespace {

QPoint placeOf(EXMain& window, const char* key) {
    const int node = nodeOf(window, key);
    if (node == 0)
        throw std::logic_error(std::string("no node ") + key);
    window.tvwdb->ensureVisible(node);
    return window.tvwdb->visualRect(window.tvwdb->nodes().place(node)).center();
}

QPoint placeOf(kit::ListView& list, int place) {
    list.ensureVisible(place);
    const QRect row = list.shown().visualRect(list.rows().index(place, 0));
    return {row.left() + row.height(), row.center().y()};
}

} // namespace

// Press, release, double press, release. What is asked for by the first click may be gone at the last.
void doubleClick(QWidget& surface, QPoint at) {
    const auto send = [&surface, at](QEvent::Type type, Qt::MouseButtons held) {
        QMouseEvent event(type, at, surface.mapToGlobal(at), Qt::LeftButton, held, {});
        QApplication::sendEvent(&surface, &event);
    };
    send(QEvent::MouseButtonPress, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, Qt::NoButton);
    send(QEvent::MouseButtonDblClick, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, Qt::NoButton);
    kit::yield();
}

void clickNode(EXMain& window, const char* key) {
    QTest::mouseClick(window.tvwdb->viewport(), Qt::LeftButton, {}, placeOf(window, key));
    kit::yield();
}

void doubleClickNode(EXMain& window, const char* key) {
    doubleClick(*window.tvwdb->viewport(), placeOf(window, key));
}

void clickRow(kit::ListView& list, int place, Qt::KeyboardModifiers keys) {
    QTest::mouseClick(list.shown().viewport(), Qt::LeftButton, keys, placeOf(list, place));
    kit::yield();
}

void doubleClickRow(kit::ListView& list, int place) {
    doubleClick(*list.shown().viewport(), placeOf(list, place));
}

void choose(EXMain& window, const char* menuItem) {
    QAction& item = window.MenuBar1->item(menuItem);
    ASSERT_TRUE(item.isEnabled()) << menuItem;
    item.trigger();
    kit::yield();
}

void pressButton(EXMain& window, const char* key) {
    QToolButton& button = window.Toolbar1->button(QString::fromUtf8(key));
    ASSERT_TRUE(button.isVisible() && button.isEnabled()) << key;
    QTest::mouseClick(&button, Qt::LeftButton);
    kit::yield();
}

std::vector<std::string> columnOf(kit::ListView& list, int column) {
    std::vector<std::string> texts;
    kit::ListModel& rows = list.rows();
    for (int place = 0; place < rows.count(); ++place)
        texts.push_back(kit::utf8(rows.item(place).column(column)));
    return texts;
}

std::vector<std::string> textsOf(kit::ListView& list) {
    return columnOf(list, 0);
}

std::vector<std::string> childrenOf(EXMain& window, const char* key) {
    window.tvwdb->flush();
    const kit::TreeModel& nodes = window.tvwdb->nodes();
    const QModelIndex parent = nodes.place(nodeOf(window, key));
    std::vector<std::string> texts;
    for (int row = 0; row < nodes.rowCount(parent); ++row)
        texts.push_back(kit::utf8(nodes.index(row, 0, parent).data(Qt::DisplayRole).toString()));
    return texts;
}

std::string shownPane(const EXMain& window) {
    std::string shown;
    for (const kit::ListView* pane : {window.lvwdb, window.DriveInfo, window.Dirinfo})
        if (!pane->isHidden())
            shown += kit::utf8(pane->objectName());
    return shown;
}

// Whatever is listed has its facts read anew.
bool countsAsListed(EXMain& window, const char* key) {
    for (kit::ListView* facts : {window.DriveInfo, window.Dirinfo})
        facts->clear();
    clickNode(window, key);
    return window.DriveInfo->rows().count() == 0 && window.Dirinfo->rows().count() == 0;
}

} // namespace discaro::test
