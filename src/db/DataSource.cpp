#include "db/DataSource.h"

#include "base/RuntimeError.h"
#include "db/DBEngine.h"

namespace discaro::db {

DataSource::~DataSource() {
    Close();
}

bool DataSource::keepsDatabase() const {
    return m_database != nullptr && m_database->IsOpen() && m_openName == m_databaseName;
}

void DataSource::Refresh() {
    auto database = keepsDatabase() ? m_database : DBEngine::open(m_databaseName, Database::Binding::DataSource);
    auto recordset = m_readOnly ? database->OpenSnapshot(m_recordSource) : database->OpenDynaset(m_recordSource);
    if (database != m_database) {
        Close();
        m_database = std::move(database);
        m_openName = m_databaseName;
    }
    SetRecordset(std::move(recordset));
}

db::Recordset& DataSource::Recordset() const {
    if (m_recordset == nullptr)
        throw base::RuntimeError(base::ErrorNumber::HandleClosed);
    return *m_recordset;
}

void DataSource::SetRecordset(std::unique_ptr<db::Recordset> recordset) {
    m_recordset = std::move(recordset);
    if (m_recordset == nullptr)
        return;
    m_recordset->beforeUpdate = [this] {
        if (beforeUpdate)
            beforeUpdate();
    };
    m_recordset->repositioned = [this] {
        if (repositioned)
            repositioned();
    };
    m_recordset->repositioned();
}

void DataSource::UpdateRecord() {
    db::Recordset& recordset = Recordset();
    if (!recordset.EditInProgress())
        recordset.Edit();
    recordset.Update();
}

void DataSource::Close() {
    if (m_recordset != nullptr)
        m_recordset->Close();
    if (m_database != nullptr && m_database->IsOpen())
        m_database->Close();
}

} // namespace discaro::db
