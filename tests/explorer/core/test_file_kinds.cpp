#include "explorer/FileKinds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace discaro::explorer {

TEST(FileKinds, EveryExtensionOfTheTableHasItsKind) {
    const std::pair<const char*, const char*> kKindsByExtension[] = {
        {".avi", "movie"}, {".mov", "movie"}, {".dat", "movie"}, {".qtm", "movie"}, {".dxr", "movie"},
        {".flc", "movie"}, {".fli", "movie"}, {".dll", "dll"},   {".vxd", "dll"},   {".sys", "dll"},
        {".cpl", "cpl"},   {".htm", "htm"},   {".html", "htm"},  {".url", "htm"},   {".mht", "htm"},
        {".zip", "zip"},   {".cab", "zip"},   {".arj", "zip"},   {".rar", "zip"},   {".pak", "zip"},
        {".wav", "music"}, {".rmi", "music"}, {".mid", "music"}, {".mp3", "music"}, {".ini", "ini"},
        {".inf", "ini"},   {".ttf", "font"},  {".fon", "font"},  {".fnt", "font"},  {".txt", "text"},
        {".hlp", "help"},  {".cnt", "help"},  {".chm", "help"},  {".pdf", "pdf"},   {".scr", "scr"},
        {".ico", "pic"},   {".bmp", "pic"},   {".wmf", "pic"},   {".pic", "pic"},   {".pcx", "pic"},
        {".icl", "pic"},   {".jpg", "jpg"},   {".gif", "gif"},   {".tga", "tga"},   {".tif", "tiff"},
        {".reg", "reg"},   {".cur", "cur"},   {".ani", "cur"},   {".xls", "xls"},   {".xla", "xls"},
        {".xlm", "xls"},   {".xlt", "xls"},   {".xlc", "xls"},   {".xlw", "xls"},   {".xlb", "xls"},
        {".ppt", "ppt"},   {".pps", "ppt"},   {".pot", "ppt"},   {".ppa", "ppt"},   {".doc", "word"},
        {".wri", "word"},  {".rtf", "word"},  {".dot", "word"},  {".mdb", "mdb"},   {".mde", "mdb"},
        {".mdw", "mdb"},   {".mda", "mdb"}};
    for (const auto& [extension, kind] : kKindsByExtension)
        EXPECT_EQ(fileKind(extension, "x"), kind) << extension;
}

TEST(FileKinds, CaseDoesNotMatter) {
    EXPECT_EQ(fileKind(".EXE", "GAME.EXE"), "exe");
    EXPECT_EQ(fileKind(".Txt", "a.Txt"), "text");
}

TEST(FileKinds, SomeProgramsAreKnownByName) {
    EXPECT_EQ(fileKind(".exe", "SETUP.EXE"), "setup");
    EXPECT_EQ(fileKind(".EXE", "Uninstall.exe"), "uninst");
    EXPECT_EQ(fileKind(".exe", "uninst.exe"), "uninst");
    EXPECT_EQ(fileKind(".exe", "setup32.exe"), "exe");
    EXPECT_EQ(fileKind(".txt", "setup.exe"), "text");
}

TEST(FileKinds, WhatTheTableLacksIsAFile) {
    for (const char* extension : {".jpeg", ".tiff", ".mpg", ".", "", "txt", ".txt ", ".setup", ".folder"})
        EXPECT_EQ(fileKind(extension, "a"), "file") << extension;
}

TEST(FileKinds, ThereAreTwentyEightPictures) {
    const std::set<std::string_view> kinds(kKinds.begin(), kKinds.end());
    EXPECT_EQ(kinds.size(), 28U);
    EXPECT_TRUE(kinds.contains("folder"));
    EXPECT_TRUE(kinds.contains(fileKind(".exe", "setup.exe")));
}

} // namespace discaro::explorer
