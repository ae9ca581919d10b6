#pragma once

#include "db/Database.h"
#include "disc/drives/DriveTable.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// The shared module: the variables through which windows talk to each other, and the procedures that all of them
// use. One window sets variables and shows the next, which reads them. Numbers in text variables are decimal.
// Nothing here validates: the reader trusts the writer.
namespace discaro::app::Module1 {

// The open catalogue. OpenCatalogue replaces it; nobody has to close it.
extern std::shared_ptr<db::Database> CatalogueDb;

extern std::string ReturnTo;          // "switch" or "explore": what to show when a task window closes
extern int16_t ScanCancelled;         // 1: the running scan is to stop
extern std::string SelectedDisc;      // disc number for the disc properties
extern std::string SelectedDirectory; // directory number for the properties windows
extern std::string SelectedFile;      // file number for the file properties
extern std::string JumpDisc;          // where the explorer is to open; "" means nowhere
extern std::string JumpDirectory;     // directory to select after the jump
extern std::string JumpFile;          // file to select after the jump

// What is being tagged.
extern std::string TagKey;           // "FILE", "DIR" or "CD" and the thing's number
extern std::string TagDisc;          // disc number
extern std::string TagDiscName;      // the disc's preferred name
extern std::string TagDirectory;     // directory number
extern std::string TagDirectoryPath; // path as catalogued
extern std::string TagFile;          // file number
extern std::string TagFileName;      // file's name
extern std::string TagSize;          // size as text
extern std::string TagFileCount;     // files in the thing, as text

// The directory to simulate.
extern std::string SimDirectory;      // directory number
extern std::string SimParent;         // its parent's number
extern std::string SimSubdirectories; // directories in its subtree
extern std::string SimFiles;          // files in its subtree
extern std::string SimSize;           // size of its subtree
extern std::string SimDiscName;       // the disc's preferred name

// Image files and folders that were dropped on the main menu, for the wizard to read as discs.
extern std::vector<std::filesystem::path> DroppedDiscs;

extern std::string ResultKind; // kind of rows that the results window shows
extern std::string SearchSql;  // the composed query

// The application folder, found once at start; tests set it to a folder of their own.
extern std::filesystem::path ApplicationPath;

// The catalogue file in the application folder.
std::filesystem::path cataloguePath();

// Opens the catalogue into CatalogueDb, in the place of what it held. Throws base::RuntimeError as
// db::DBEngine::OpenDatabase does.
void OpenCatalogue();

// False exactly when the file is not there in a folder that is; true in every other case, such as a folder that is
// missing, a file or folder that can't be read, or a path that names a folder. Takes a drive path ("D:\AUTORUN.INF") or
// a path of this computer.
bool FileExists(const std::string& path, const disc::DriveTable& drives = disc::driveTable());

// One channel of a 24-bit colour laid out blue-green-red: index 1 red, 2 green, 3 blue, each 0 to 255.
// -1 when the index is outside 1 to 3 or the colour outside 0 to 16777215.
int32_t ColourByte(int32_t colour, int16_t index);

} // namespace discaro::app::Module1
