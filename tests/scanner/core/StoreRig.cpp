#include "scanner/core/StoreRig.h"

#include "app/Module1.h"
#include "db/engine/Store.h"

namespace discaro::test {

namespace fs = std::filesystem;

namespace {

std::string rowsOf(db::Connection& connection, const std::string& table) {
    const std::string cells = connection.text("SELECT group_concat('quote(\"' || name || '\")', ' "
                                              "|| '','' || ') FROM pragma_table_info('" +
                                              table + "')");
    return connection.text("SELECT group_concat(cells, char(10)) FROM (SELECT " + cells + " AS cells FROM " +
                           db::quotedName(table) + " ORDER BY rowid)");
}

MemoryNode firstDisc() {
    return folder("", {file("README", "of the first disc"), folder("DIR", {file("X", "xx")})});
}

MemoryNode secondDisc() {
    std::vector<MemoryNode> files;
    for (int i = 0; i < 12; ++i)
        files.push_back(file("FILE" + std::to_string(i) + ".TXT", std::string(100, 'f')));
    return folder("", {file("AUTORUN.INF", "[autorun]\r\nopen=a.exe"), folder("MANY", files),
                       folder("DEEP", {folder("DEEPER", {file("BOTTOM.TXT", "b")})})});
}

} // namespace

std::string wholeCatalogue() {
    db::Connection connection(app::Module1::cataloguePath().string(), db::Connection::Mode::ReadWrite);
    EXPECT_EQ(connection.text("PRAGMA integrity_check"), "ok");
    std::string all;
    for (const char* table : {"Master Table", "Drive", "Directories", "Files", "Prog Tag"})
        all.append(table).append("\n").append(rowsOf(connection, table)).append("\n\n");
    return all;
}

StoreRig::StoreRig() {
    rig.insert(firstDisc());
    rig.scan();
    rig.insert(secondDisc());
    keepAsFirst();
    rig.watcher.whenStopped = nullptr;
}

void StoreRig::keepAsFirst() {
    closeAll();
    fs::copy_file(app::Module1::cataloguePath(), untouched(), fs::copy_options::overwrite_existing);
    before = wholeCatalogue();
}

void StoreRig::putBack(Cache cache) {
    closeAll();
    fs::copy_file(untouched(), app::Module1::cataloguePath(), fs::copy_options::overwrite_existing);
    app::Module1::ScanCancelled = 0;
    rig.watcher.log.clear();
    rig.watcher.prompts = 0;
    rig.open();
    if (cache == Cache::Small)
        rig.discs.Database()->store()->connection().execute("PRAGMA cache_size=3");
}

void StoreRig::closeAll() {
    rig.close();
    app::Module1::CatalogueDb.reset();
}

std::string StoreRig::toldReason() const {
    const std::string mark = "not saved: ";
    for (const std::string& line : rig.watcher.log)
        if (line.starts_with(mark))
            return line.substr(mark.size());
    return {};
}

scanner::ScanOptions StoreRig::action(const char* errorAction) {
    return {.DetailLevel = "basic", .ErrorAction = errorAction, .LogErrors = "true", .UseFreeNumber = {}};
}

fs::path StoreRig::untouched() {
    return app::Module1::ApplicationPath / "untouched";
}

} // namespace discaro::test
