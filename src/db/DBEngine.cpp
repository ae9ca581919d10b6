#include "db/DBEngine.h"

#include "base/RuntimeError.h"
#include "db/engine/Engine.h"
#include "db/sqlite/DatabaseFile.h"

#include <system_error>

namespace discaro::db {

std::shared_ptr<Database> DBEngine::open(const std::filesystem::path& path, Database::Binding binding) {
    std::error_code error;
    const auto name = std::filesystem::absolute(path, error);
    if (error)
        throw base::RuntimeError(base::ErrorNumber::FileMissing, path.string());
    return std::make_shared<Database>(Database::Key(), Engine::instance().open(name), name.string(), binding);
}

std::shared_ptr<Database> DBEngine::OpenDatabase(const std::filesystem::path& path) {
    return open(path, Database::Binding::None);
}

void DBEngine::BeginTrans() {
    Engine::instance().beginTransaction();
}

void DBEngine::CommitTrans() {
    Engine::instance().transaction().commit();
}

bool DBEngine::InTransaction() {
    return Engine::instance().transaction().state() != Transaction::State::None;
}

void DBEngine::SetFormat(FileFormat format) {
    Engine::instance().setFormat(std::move(format));
}

void DBEngine::CreateDatabase(const std::filesystem::path& path, const FileFormat& format,
                              std::span<const std::string> statements) {
    createDatabaseFile(path, format, statements);
}

} // namespace discaro::db
