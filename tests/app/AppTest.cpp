#include "app/AppTest.h"

#include "app/Loading.h"
#include "app/Searching.h"
#include "app/Switch.h"
#include "catalogue/Names.h"
#include "db/DataSource.h"

namespace discaro::test {

namespace {

namespace Windows = app::Windows;
namespace Module1 = app::Module1;

} // namespace

StubForm::StubForm(const char* name, Log& log, std::function<void(kit::Form&)> onLoad)
    : Form({.name = name, .caption = name, .size = {200, 100}})
    , Timer2(new kit::Timer(this))
    , m_log(log)
    , m_onLoad(std::move(onLoad)) {
    Timer2->setObjectName("Timer2");
    Timer2->setInterval(100);
}

void StubForm::Form_Load() {
    m_log.push_back(name().toStdString() + " load");
    if (m_onLoad)
        m_onLoad(*this);
    if (name() != "Loading")
        Windows::Unload("Loading");
}

void StubForm::Form_Unload() {
    m_log.push_back(name().toStdString() + " unload");
}

AppTest::AppTest() {
    Windows::Register("Switch", [] { return new app::Switch; });
    Windows::Register("Loading", [] { return new app::Loading; });
    Windows::Register("Searching", [] { return new app::Searching; });
    for (const char* name : {"Scanform", "DeleteCD", "EXMain", "Search", "Workshop", "About", "Programs"})
        stub(name);
}

void AppTest::stub(const char* name, std::function<void(kit::Form&)> onLoad) {
    Windows::Register(name, [this, name, onLoad] { return new StubForm(name, log, onLoad); });
}

void AppTest::addDisc() {
    db::DataSource drives;
    drives.SetDatabaseName(Module1::cataloguePath());
    drives.SetRecordSource("drive");
    drives.Refresh();
    drives.Recordset().AddNew();
    drives.Recordset().Fields(catalogue::drive::kIdNumber) = 1;
    drives.Recordset().Fields(catalogue::drive::kPreferedName) = "One";
    drives.Recordset().Update();
}

} // namespace discaro::test
