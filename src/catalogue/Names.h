#pragma once

#include <string_view>

// The names of the catalogue's tables and fields, as they stand in the file. Names compare without regard to case; the
// spelling, misspellings included, is part of the file format.
namespace discaro::catalogue {

inline constexpr std::string_view kDrive = "Drive";
inline constexpr std::string_view kDirectories = "Directories";
inline constexpr std::string_view kFiles = "Files";
inline constexpr std::string_view kProgTag = "Prog Tag";
inline constexpr std::string_view kMasterTable = "Master Table";
inline constexpr std::string_view kRowNumbers = "Row Numbers";

namespace drive {
inline constexpr std::string_view kIdNumber = "id number";
inline constexpr std::string_view kDriveLetter = "Drive letter";
inline constexpr std::string_view kVolumeName = "volume name";
inline constexpr std::string_view kSerialNumber = "Serial Number";
inline constexpr std::string_view kPreferedName = "prefered name";
inline constexpr std::string_view kFileSystem = "file system";
inline constexpr std::string_view kTotalSize = "Total Size";
inline constexpr std::string_view kFreeSize = "free size";
inline constexpr std::string_view kComments = "Comments";
inline constexpr std::string_view kAutorun = "Autorun";
} // namespace drive

namespace directories {
inline constexpr std::string_view kDriveIdNumber = "drive id number";
inline constexpr std::string_view kParentId = "Parent id";
inline constexpr std::string_view kIdNumber = "id number";
inline constexpr std::string_view kDirectoryName = "directory name";
inline constexpr std::string_view kDirectoryPath = "Directory Path";
inline constexpr std::string_view kNumberOfFiles = "number of files";
inline constexpr std::string_view kNumberOfSubdirectories = "number of subdirectories";
inline constexpr std::string_view kSize = "Size";
inline constexpr std::string_view kTotalSize = "Total Size";
inline constexpr std::string_view kTotalNumberOfFiles = "Total number of files";
inline constexpr std::string_view kTotalNumberOfSubdirectories = "Total number of Subdirectories";
inline constexpr std::string_view kComments = "Comments";
} // namespace directories

namespace files {
inline constexpr std::string_view kDirectoryNumber = "directory number";
inline constexpr std::string_view kIdNumber = "id number";
inline constexpr std::string_view kFileName = "file name";
inline constexpr std::string_view kFileExtension = "file extension";
inline constexpr std::string_view kFileSize = "file size";
inline constexpr std::string_view kAttributes = "Attributes";
inline constexpr std::string_view kFileDate = "File date";
inline constexpr std::string_view kFileTime = "file time";
inline constexpr std::string_view kCompanyName = "Company Name";
inline constexpr std::string_view kDescription = "Description";
inline constexpr std::string_view kCopyright = "Copyright";
inline constexpr std::string_view kProductName = "Product name";
inline constexpr std::string_view kProductVersion = "Product Version";
inline constexpr std::string_view kInternalName = "Internal Name";
inline constexpr std::string_view kOriginalFileName = "Original file Name";
inline constexpr std::string_view kNumberOfIcons = "number of icons";
inline constexpr std::string_view kComments = "Comments";
} // namespace files

namespace progTag {
inline constexpr std::string_view kIdNumber = "id number";
inline constexpr std::string_view kProgID = "Prog ID";
inline constexpr std::string_view kProgName = "Prog name";
inline constexpr std::string_view kProgVersion = "Prog Version";
inline constexpr std::string_view kDescription = "Description";
inline constexpr std::string_view kDirectoryNumber = "Directory number";
inline constexpr std::string_view kFileId = "File id";
inline constexpr std::string_view kVendor = "Vendor";
inline constexpr std::string_view kVendorHomePage = "Vendor Home page";
inline constexpr std::string_view kType = "Type";
inline constexpr std::string_view kCategory = "Category";
inline constexpr std::string_view kSubcategory = "Subcategory";
inline constexpr std::string_view kOS = "OS";
inline constexpr std::string_view kSerialNumber = "Serial number";
inline constexpr std::string_view kCDKey = "CD-Key";
inline constexpr std::string_view kCDNumber = "CD number";
inline constexpr std::string_view kPreferredName = "Preferred name";
inline constexpr std::string_view kFileName = "File name";
inline constexpr std::string_view kDirectoryPath = "Directory Path";
inline constexpr std::string_view kNumberOfCDs = "Number of CDs";
inline constexpr std::string_view kTotalSize = "Total Size";
inline constexpr std::string_view kTotalFiles = "Total Files";
inline constexpr std::string_view kComments = "Comments";
} // namespace progTag

namespace masterTable {
inline constexpr std::string_view kScannedCdRoms = "scanned cd-roms";
inline constexpr std::string_view kRealCdRomsScanned = "real cd-roms scanned";
inline constexpr std::string_view kTotalNumberOfDirectories = "Total number of directories";
inline constexpr std::string_view kTotalNumberOfFiles = "Total number of files";
inline constexpr std::string_view kTotalSize = "Total Size";
inline constexpr std::string_view kScanError = "scan error";
inline constexpr std::string_view kEncryption = "encryption";
inline constexpr std::string_view kLastCompact = "last compact";
inline constexpr std::string_view kLastRepair = "last repair";
inline constexpr std::string_view kLastBackup = "last backup";
} // namespace masterTable

} // namespace discaro::catalogue
