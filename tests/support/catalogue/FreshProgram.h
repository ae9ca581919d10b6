#pragma once

#include "app/Module1.h"
#include "support/FreshEngine.h"

#include <tuple>

namespace discaro::test {

// Every variable of the shared module, in its order. A test counts them in the module's header.
inline auto sharedVariables() {
    namespace Shared = app::Module1;
    return std::tie(Shared::CatalogueDb, Shared::ReturnTo, Shared::ScanCancelled, Shared::SelectedDisc,
                    Shared::SelectedDirectory, Shared::SelectedFile, Shared::JumpDisc, Shared::JumpDirectory,
                    Shared::JumpFile, Shared::TagKey, Shared::TagDisc, Shared::TagDiscName, Shared::TagDirectory,
                    Shared::TagDirectoryPath, Shared::TagFile, Shared::TagFileName, Shared::TagSize,
                    Shared::TagFileCount, Shared::SimDirectory, Shared::SimParent, Shared::SimSubdirectories,
                    Shared::SimFiles, Shared::SimSize, Shared::SimDiscName, Shared::DroppedDiscs, Shared::ResultKind,
                    Shared::SearchSql, Shared::ApplicationPath);
}

// A program as it is at its start but for its windows: the engine, and the shared variables. At the object's end it is
// so again.
class FreshProgram {
public:
    FreshProgram() { reset(); }
    ~FreshProgram() { reset(); }
    FreshProgram(const FreshProgram&) = delete;
    FreshProgram& operator=(const FreshProgram&) = delete;

private:
    static void reset();

    FreshEngine m_engine;
};

} // namespace discaro::test
