#include "scanner/WizardTest.h"

#include "app/Loading.h"
#include "app/Switch.h"
#include "catalogue/Names.h"
#include "disc/drives/DriveTable.h"

namespace discaro::test {

namespace {

// Stands for the explorer: only that it is shown matters here.
class EmptyWindow : public kit::Form {
public:
    EmptyWindow()
        : Form({.name = "EXMain", .caption = "", .size = {100, 100}}) {}
};

} // namespace

WizardTest::WizardTest()
    : drives([] {
        disc::Computer computer; // with a root file system and no drive
        computer.mounts.push_back({"8:1", "/", "/", "ext4", "/dev/sda1", false});
        return computer;
    }) {
    app::Module1::ReturnTo = "switch";
    registerWizard(drives);
    app::Windows::Register("Switch", [] { return new app::Switch; });
    app::Windows::Register("Loading", [] { return new app::Loading; });
    app::Windows::Register("EXMain", [] { return new EmptyWindow; });
    letter = addDrive(folder("", {file("README.TXT", "hello"), folder("BIN", {file("A.EXE"), file("B.DLL")})}));
}

void WizardTest::registerWizard(disc::DriveTable& table) {
    app::Windows::Register("Scanform", [&table] { return new scanner::Scanform(table); });
}

char WizardTest::addDrive(MemoryNode root) {
    auto made = std::make_unique<ChangeableMedium>();
    auto& drive = *made;
    const char given = drives.addMedium(std::move(made));
    m_discs[given] = &drive;
    insert(std::move(root), given);
    return given;
}

MemoryMedium& WizardTest::insert(MemoryNode root, char driveLetter) {
    return m_discs.at(driveLetter == 0 ? letter : driveLetter)->insert(std::move(root));
}

void WizardTest::open() {
    app::Windows::Show("Scanform");
    form = qobject_cast<scanner::Scanform*>(app::Windows::Find("Scanform"));
    if (form == nullptr)
        throw std::logic_error("the wizard did not open");
}

void WizardTest::chooseTestDrive() {
    auto& list = control<kit::DriveList>(*form, "Drive1");
    for (int i = 0; i < list.count(); ++i)
        if (list.itemText(i).startsWith(QChar(letter)))
            list.setListIndex(i);
}

void WizardTest::goTo(int page) {
    if (form == nullptr)
        open();
    next();
    chooseTestDrive();
    typeInto(control<kit::TextBox>(*form, "Text2"), "Disc");
    for (int i = 2; i < page; ++i)
        next();
}

void WizardTest::goToScanning() {
    goTo(5);
    click(button(3));
}

kit::Button& WizardTest::button(int index) {
    return control<kit::Button>(*form, ("Command1(" + std::to_string(index) + ")").c_str());
}

void WizardTest::addDisc(int64_t number, const char* name, const char* serial) {
    const auto rows = m_catalogue.database()->OpenRecordset("drive");
    rows->AddNew();
    (*rows)(catalogue::drive::kIdNumber) = number;
    (*rows)(catalogue::drive::kPreferedName) = name;
    (*rows)(catalogue::drive::kVolumeName) = "LABEL";
    (*rows)(catalogue::drive::kSerialNumber) = serial;
    rows->Update();
}

} // namespace discaro::test
