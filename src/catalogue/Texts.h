#pragma once

// What is said of discs, and of their deletion.
namespace discaro::catalogue {

// %1: the number of the disc that has the preferred name, %2: its volume label.
inline constexpr const char* kDuplicateName =
    "This Preferred name was used once before for CD-ROM number  '%1' which has '%2' as its Volume label. Please choose another name.";
inline constexpr const char* kDuplicateNameTitle = "Duplicate Preferred Name";

// %1: the disc's preferred name.
inline constexpr const char* kDeletionQuestion =
    "Are you sure you want to delete the '%1' cd-rom entry from the database ? This will also delete all the Directory and File entries contained on this CD-ROM.";
inline constexpr const char* kDeletionQuestionTitle = "Confim Deletion !!!";

inline constexpr const char* kDeletionDone =
    "Deletion was successful. It is advised that you compact your database from the Database Workshop after deleting any entries. This way your Database will take up less disk space and in some cases may run faster.";
inline constexpr const char* kDeletionDoneTitle = "Deletion Successful";

} // namespace discaro::catalogue
