#include "scanner/QuickScan.h"

#include "base/RuntimeError.h"
#include "disc/drives/DriveTable.h"
#include "scanner/DiscFiles.h"
#include "scanner/Texts.h"

namespace discaro::scanner {

void QuickScan::begin(char driveLetter) {
    m_directories = 0;
    m_files = 0;
    m_driveLetter = driveLetter;
    m_failed = false;
    m_damaged = 0;
    readRoot(m_lister, disc::DriveTable::rootText(driveLetter));
    noteDamage();
    m_files += m_lister.fileCount();
}

// Only some discs that are gone say so: of others every directory is just missing, as single ones may be. Then the
// root tells.
bool QuickScan::countBelow(const Progress& progress) {
    const bool whole = countDirectory(progress);
    if (whole && m_failed)
        readRoot(m_lister, disc::DriveTable::rootText(m_driveLetter));
    return whole;
}

bool QuickScan::countDirectory(const Progress& progress) {
    const int count = m_lister.listCount();
    for (int i = 0; i < count; ++i) {
        m_lister.setPath(m_lister.list(i));
        noteDamage();
        m_lister.setFilePath(m_lister.path());
        m_files += m_lister.fileCount();
        ++m_directories;
        if (!countDirectory(progress))
            return false;
    }
    if (!progress(m_lister.path()))
        return false;
    m_lister.setPath(m_lister.list(-2));
    return true;
}

// A directory that is damaged is for the scan's log; a disc that is gone ends the count.
void QuickScan::noteDamage() {
    const auto damage = m_lister.takeDamage();
    if (!damage)
        return;
    if (damage->is(base::ErrorNumber::DriveNotReady))
        throw *damage;
    m_failed = true;
    m_damaged += damage->is(base::ErrorNumber::PathMissing) ? 0 : 1;
}

std::string QuickScan::text() const {
    return countText(m_directories, m_files);
}

} // namespace discaro::scanner
