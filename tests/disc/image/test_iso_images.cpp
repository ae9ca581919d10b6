#include "disc/ImageHelp.h"
#include "disc/image/CueSheet.h"
#include "disc/medium/BufferedBytes.h"
#include "disc/medium/TrackBytes.h"
#include "disc/system/FileBytes.h"
#include "support/IsoBuilder.h"
#include "support/RawImage.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace discaro::disc {
namespace {

using namespace test;
using base::ErrorNumber;
using testing::ElementsAre;

constexpr char kContent[] = "content of the file";

// An image with one file of some sectors; its addresses count from the given sector of the disc.
std::string smallImage(uint32_t start = 0, const std::string& name = "A.;1") {
    IsoBuilder builder(40);
    builder.directory(20, 20, {isoFile(name, start + 25, 5000)});
    // Records hold addresses on the disc, while the builder writes from the image's beginning.
    auto self = isoDirectory(std::string(1, '\0'), start + 20);
    builder.put(20, self.bytes());
    builder.primary(16, {.rootBlock = start + 20, .blocks = start + 40});
    builder.terminator(17);
    builder.put(25, kContent);
    builder.put(27, "last sector");
    return builder.image();
}

void expectSmallImage(const Medium& medium, const std::string& name = "A") {
    const auto found = walk(medium);
    ASSERT_THAT(found.paths(), ElementsAre(name));
    const auto content = contentOf(medium, found.entries[0]);
    ASSERT_EQ(content.size(), 5000U);
    EXPECT_EQ(content.substr(0, sizeof kContent - 1), kContent);
    EXPECT_EQ(content.substr(4096, 11), "last sector");
}

TEST(Images, PlainSectorsAreRead) {
    expectSmallImage(*openBytes(smallImage()));
}

TEST(Images, WholeSectorsOfBothModesAreRead) {
    expectSmallImage(*openBytes(rawMode1(smallImage())));
    expectSmallImage(*openBytes(rawMode2(smallImage())));
}

TEST(Images, SubchannelDataBehindTheSectorsIsPassedOver) {
    expectSmallImage(*openBytes(rawMode1(smallImage(), 96)));
    expectSmallImage(*openBytes(rawMode2(smallImage(), 96)));
}

TEST(Images, Mode2SectorsWithoutSynchronisationAreRead) {
    expectSmallImage(*openBytes(bareMode2(smallImage())));
}

TEST(Images, AnImageOfWholeSectorsCutShortGivesWhatIsThere) {
    const auto raw = rawMode1(smallImage());
    const auto medium = openBytes(raw.substr(0, 26 * 2352 + 1000));
    const auto found = walk(*medium);
    ASSERT_THAT(found.paths(), ElementsAre("A"));
    EXPECT_EQ(errorOf([&] { contentOf(*medium, found.entries[0]); }), numberOf(ErrorNumber::ReadFailure));
}

TEST(Images, WhatIsNoImageIsUnknown) {
    for (const auto& bytes : {std::string(), std::string("short"), std::string(100000, '\0'), std::string(1000000, 'x'),
                              std::string("NER5") + std::string(8, '\0')})
        EXPECT_EQ(
            errorOf([&] { openBytes(bytes); }),
            numberOf(bytes.starts_with("NER5") ? ErrorNumber::FileSystemUnsupported : ErrorNumber::FileSystemUnknown));
}

TEST(Images, OtherFileSystemsOfDiscsAreNamed) {
    std::string sierra(100000, '\0');
    sierra.replace(16 * 2048 + 9, 5, "CDROM");
    std::string mac(100000, '\0');
    mac.replace(1024, 2, "BD");
    std::string newerMac(100000, '\0');
    newerMac.replace(1024, 2, "H+");
    std::string partitions(100000, '\0');
    partitions.replace(0, 2, "ER");
    partitions.replace(512, 2, "PM");
    for (const auto& [image, name] : {std::pair{sierra, "High Sierra"}, std::pair{mac, "HFS"},
                                      std::pair{newerMac, "HFS"}, std::pair{partitions, "HFS"}}) {
        try {
            openBytes(image);
            ADD_FAILURE() << name;
        } catch (const base::RuntimeError& error) {
            EXPECT_TRUE(error.is(ErrorNumber::FileSystemUnsupported));
            EXPECT_THAT(error.description(), testing::HasSubstr(name));
        }
    }
}

TEST(Images, ErrorsNameTheFileWithItsSlashes) {
    const ScratchFolder folder;
    const auto told = [](const std::filesystem::path& path) {
        try {
            openImage(path);
        } catch (const base::RuntimeError& error) {
            return error.description();
        }
        return std::string("no error");
    };
    std::string mac(100000, '\0');
    mac.replace(1024, 2, "BD");
    const auto text = folder.write("text.iso", "no disc image at all");
    const auto macImage = folder.write("mac.iso", mac);
    const auto sheet = folder.write("disc.cue", "FILE \"\xDC.bin\" BINARY\n TRACK 01 MODE1/2352\n"
                                                "  INDEX 01 00:00:00\n");
    const auto empty = folder.write("empty.cue", "no sheet");
    const auto gone = folder.path() / "gone.iso";
    EXPECT_EQ(told(text), "The file is not a disc image (" + text.string() + ")");
    EXPECT_EQ(told(macImage), "The file system of this disc can't be read: HFS (" + macImage.string() + ")");
    EXPECT_EQ(told(sheet), "The path was not found: Ü.bin (" + sheet.string() + ")");
    EXPECT_EQ(told(empty), "The file is not a disc image (" + empty.string() + ")");
    EXPECT_EQ(told(gone), "The path was not found: " + gone.string());
    EXPECT_EQ(told(folder.path()), "The file is not a disc image (" + folder.path().string() + ")");
}

TEST(Images, FilesAreOpenedByPath) {
    const ScratchFolder folder;
    expectSmallImage(*openImage(folder.write("disc.iso", smallImage())));
    expectSmallImage(*openImage(folder.write("any name at all", rawMode2(smallImage()))));
}

TEST(Images, AnEmptyFileHasNoBytes) {
    const ScratchFolder folder;
    const FileBytes file(folder.write("empty.iso"));
    EXPECT_EQ(file.size(), 0U);
    EXPECT_EQ(errorOf([&] { openImage(folder.path() / "empty.iso"); }), numberOf(ErrorNumber::FileSystemUnknown));
}

TEST(Images, WhatIsNotThereIsMissing) {
    EXPECT_EQ(errorOf([] { openImage("/no such folder/disc.iso"); }), numberOf(ErrorNumber::PathMissing));
}

TEST(Images, WhatIsNoFileIsNoImageAndIsNotWaitedFor) {
    const ScratchFolder folder;
    EXPECT_EQ(errorOf([&] { openImage(folder.path()); }), numberOf(ErrorNumber::FileSystemUnknown));
    EXPECT_EQ(errorOf([] { openImage("/dev/zero"); }), numberOf(ErrorNumber::FileSystemUnknown));
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(errorOf([&] { openImage(pipe); }), numberOf(ErrorNumber::FileSystemUnknown));
}

TEST(Images, ALinkToAnImageIsFollowed) {
    const ScratchFolder folder;
    std::filesystem::create_symlink(folder.write("disc.iso", smallImage()), folder.path() / "link");
    expectSmallImage(*openImage(folder.path() / "link"));
}

// Cue sheets

constexpr char kOneTrack[] = "FILE \"disc.bin\" BINARY\r\n  TRACK 01 MODE1/2352\r\n    INDEX 01 00:00:00\r\n";

TEST(CueSheets, OneDataTrackIsRead) {
    const ScratchFolder folder;
    folder.write("disc.bin", rawMode1(smallImage()));
    expectSmallImage(*openImage(folder.write("disc.cue", kOneTrack)));
}

TEST(CueSheets, AllSectorSizesAreRead) {
    const ScratchFolder folder;
    const std::vector<std::pair<std::string, std::string>> kinds = {{"MODE1/2048", smallImage()},
                                                                    {"MODE2/2048", smallImage()},
                                                                    {"MODE2/2336", bareMode2(smallImage())},
                                                                    {"MODE2/2352", rawMode2(smallImage())},
                                                                    {"CDI/2352", rawMode2(smallImage())},
                                                                    {"MODE1/2448", rawMode1(smallImage(), 96)}};
    for (const auto& [mode, image] : kinds) {
        folder.write("disc.bin", image);
        SCOPED_TRACE(mode);
        expectSmallImage(
            *openImage(folder.write("Disc.CUE", "file disc.bin binary\n track 1 " + mode + "\n index 1 0:0:0\n")));
    }
}

TEST(CueSheets, TheFileIsFoundInAnyCaseAndWithoutItsFolder) {
    const ScratchFolder folder;
    folder.write("My Disc.bin", rawMode1(smallImage()));
    for (const char* name : {"MY DISC.BIN", "C:\\Images\\My Disc.bin", "/elsewhere/My Disc.bin"}) {
        SCOPED_TRACE(name);
        expectSmallImage(*openImage(folder.write(
            "sheet.cue", std::string("FILE \"") + name + "\" BINARY\nTRACK 01 MODE1/2352\nINDEX 01 00:00:00\n")));
    }
}

TEST(CueSheets, AFileThatWasRenamedWithItsSheetIsFound) {
    const ScratchFolder folder;
    folder.write("renamed.bin", rawMode1(smallImage()));
    expectSmallImage(*openImage(folder.write("renamed.cue", kOneTrack)));
}

TEST(CueSheets, AMissingFileIsNamed) {
    const ScratchFolder folder;
    const auto sheet = folder.write("sheet.cue", kOneTrack);
    try {
        openImage(sheet);
        ADD_FAILURE();
    } catch (const base::RuntimeError& error) {
        EXPECT_TRUE(error.is(ErrorNumber::PathMissing));
        EXPECT_THAT(error.description(), testing::HasSubstr("disc.bin"));
    }
}

TEST(CueSheets, AudioBehindTheDataIsPassedOver) {
    const ScratchFolder folder;
    folder.write("disc.bin", rawMode1(smallImage()) + std::string(10 * 2352, 'a'));
    expectSmallImage(*openImage(
        folder.write("disc.cue", std::string(kOneTrack) + "TRACK 02 AUDIO\nPREGAP 00:02:00\nINDEX 01 00:00:40\n")));
}

TEST(CueSheets, DataBehindAudioHasItsAddressOnTheDisc) {
    const ScratchFolder folder;
    // Ten sectors of audio, a pregap of five that the file holds, and one of 150 that it does not.
    folder.write("disc.bin", std::string(10 * 2352, 'a') + std::string(5 * 2048, '\0') + smallImage(165));
    expectSmallImage(*openImage(folder.write("disc.cue", "FILE disc.bin BINARY\n"
                                                         "TRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                                         "TRACK 02 MODE1/2048\nPREGAP 00:02:00\n"
                                                         "INDEX 00 00:00:10\nINDEX 01 00:00:15\n")));
}

TEST(CueSheets, APregapWhoseLengthCannotBeReadIsNone) {
    const ScratchFolder folder;
    folder.write("disc.bin", std::string(10 * 2352, 'a') + smallImage(10));
    expectSmallImage(*openImage(folder.write("disc.cue", "FILE disc.bin BINARY\n"
                                                         "TRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                                         "TRACK 02 MODE1/2048\nPREGAP short\nINDEX 01 00:00:10\n")));
}

TEST(CueSheets, EachTrackMayHaveAFile) {
    const ScratchFolder folder;
    folder.write("1.bin", std::string(10 * 2352, 'a'));
    folder.write("2.bin", rawMode2(smallImage(10)));
    expectSmallImage(*openImage(folder.write("disc.cue", "FILE 1.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                                                         "FILE 2.bin BINARY\nTRACK 02 MODE2/2352\n"
                                                         "INDEX 01 00:00:00\n")));
}

TEST(CueSheets, TheFirstTracksPregapIsNotPartOfTheDisc) {
    const ScratchFolder folder;
    folder.write("disc.bin", std::string(150 * 2352, '\0') + rawMode1(smallImage()));
    expectSmallImage(*openImage(
        folder.write("disc.cue", "FILE disc.bin BINARY\nTRACK 01 MODE1/2352\nINDEX 00 00:00:00\nINDEX 01 00:02:00\n")));
}

TEST(CueSheets, TheLastSessionIsTheOneThatIsRead) {
    const ScratchFolder folder;
    const auto second = 40U + 11400;
    folder.write("disc.bin", rawMode1(smallImage(0, "OLD.;1")) + rawMode1(smallImage(second, "NEW.;1")));
    const auto sheet =
        std::string("REM SESSION 01\n") + kOneTrack + "REM SESSION 02\nTRACK 02 MODE1/2352\nINDEX 01 00:00:40\n";
    expectSmallImage(*openImage(folder.write("disc.cue", sheet)), "NEW");
}

TEST(CueSheets, FromTheSecondSessionOnTheGapIsShorter) {
    const ScratchFolder folder;
    const auto second = 40U + 11400;
    const auto third = second + 40 + 6900;
    folder.write("disc.bin", rawMode1(smallImage(0, "OLD.;1")) + rawMode1(smallImage(second, "NEWER.;1")) +
                                 rawMode1(smallImage(third, "NEWEST.;1")));
    const auto sheet = std::string("REM SESSION 01\n") + kOneTrack +
                       "REM SESSION 02\nTRACK 02 MODE1/2352\nINDEX 01 00:00:40\n"
                       "REM SESSION 03\nTRACK 03 MODE1/2352\nINDEX 01 00:01:05\n";
    expectSmallImage(*openImage(folder.write("disc.cue", sheet)), "NEWEST");
}

TEST(CueSheets, ALastSessionThatCannotBeReadGivesWayToTheFirst) {
    const ScratchFolder folder;
    folder.write("disc.bin", rawMode1(smallImage(0, "OLD.;1")) + rawMode1(std::string(40 * 2048, '\0')));
    const auto sheet =
        std::string("REM SESSION 01\n") + kOneTrack + "REM SESSION 02\nTRACK 02 MODE1/2352\nINDEX 01 00:00:40\n";
    expectSmallImage(*openImage(folder.write("disc.cue", sheet)), "OLD");
}

TEST(CueSheets, AnAudioDiscHasNoFileSystem) {
    const ScratchFolder folder;
    folder.write("disc.bin", std::string(10 * 2352, 'a'));
    const auto sheet = folder.write("disc.cue", "FILE disc.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
    EXPECT_EQ(errorOf([&] { openImage(sheet); }), numberOf(ErrorNumber::FileSystemUnsupported));
}

TEST(CueSheets, AnyTextIsReadWithoutHarm) {
    EXPECT_TRUE(parseCueSheet("").tracks.empty());
    EXPECT_TRUE(parseCueSheet("TRACK 01 MODE1/2352\nINDEX 01 00:00:00").tracks.empty());
    EXPECT_TRUE(parseCueSheet("FILE \"unclosed").tracks.empty());
    const auto sheet = parseCueSheet("FILE a BINARY\nTRACK x MODE1/999999999999\nINDEX 01 99:99\nINDEX 01 1:2:x\n"
                                     "TRACK\nINDEX 01 99999999999999999999:0:0\nTRACK 3 MODE1/0\nINDEX 1 -1:0:0");
    ASSERT_EQ(sheet.tracks.size(), 3U);
    for (const auto& track : sheet.tracks)
        EXPECT_EQ(track.start, 0U);
    const ScratchFolder folder;
    folder.write("a", smallImage());
    for (const char* track : {"MODE1/0", "MODE1/1", "MODE1/99999", "MODE1/2352\nINDEX 01 99999:0:0"}) {
        const auto path =
            folder.write("x.cue", std::string("FILE a BINARY\nTRACK 1 ") + track + "\nINDEX 01 00:00:00\n");
        EXPECT_TRUE(errorOf([&] { openImage(path); }).has_value()) << track;
    }
}

TEST(CueSheets, AFileWithoutTracksIsNoImage) {
    const ScratchFolder folder;
    EXPECT_EQ(errorOf([&] { openImage(folder.write("x.cue", "no sheet at all")); }),
              numberOf(ErrorNumber::FileSystemUnknown));
}

// Images with a chain of chunks at their end

NrgTrack dataTrack(std::string data, uint8_t mode, uint16_t sectorSize, uint32_t address = 0) {
    return {std::move(data), mode, sectorSize, address};
}

TEST(NrgImages, AllWritingsAndVersionsAreRead) {
    const std::vector<NrgTrack> tracks = {dataTrack(smallImage(), 0, 2048), dataTrack(bareMode2(smallImage()), 3, 2336),
                                          dataTrack(rawMode1(smallImage()), 5, 2352),
                                          dataTrack(rawMode2(smallImage()), 6, 2352),
                                          dataTrack(rawMode1(smallImage(), 96), 15, 2448)};
    for (const auto& track : tracks)
        for (const int version : {1, 2}) {
            SCOPED_TRACE(std::to_string(track.mode) + ", version " + std::to_string(version));
            expectSmallImage(*openBytes(nrgTrackAtOnce({{track}}, version)));
            expectSmallImage(*openBytes(nrgDiscAtOnce({{track}}, version)));
        }
}

TEST(NrgImages, DataBehindAudioHasItsAddressOnTheDisc) {
    const std::vector<NrgTrack> session = {{std::string(10 * 2352, 'a'), 7, 2352, 0},
                                           dataTrack(smallImage(160), 0, 2048, 160)};
    expectSmallImage(*openBytes(nrgTrackAtOnce({session})));
    expectSmallImage(*openBytes(nrgDiscAtOnce({session})));
    expectSmallImage(*openBytes(nrgDiscAtOnce({session}, 1)));
}

TEST(NrgImages, TheLastSessionIsTheOneThatIsRead) {
    const std::vector<std::vector<NrgTrack>> sessions = {{dataTrack(smallImage(0, "OLD.;1"), 0, 2048, 0)},
                                                         {dataTrack(smallImage(11440, "NEW.;1"), 0, 2048, 11440)}};
    expectSmallImage(*openBytes(nrgTrackAtOnce(sessions)), "NEW");
    expectSmallImage(*openBytes(nrgDiscAtOnce(sessions)), "NEW");
}

TEST(NrgImages, AnAudioDiscHasNoFileSystem) {
    const auto image = nrgTrackAtOnce({{{std::string(2352, 'a'), 7, 2352, 0}}});
    EXPECT_EQ(errorOf([&] { openBytes(image); }), numberOf(ErrorNumber::FileSystemUnsupported));
}

TEST(NrgImages, EveryDamageOfTheChainIsHarmless) {
    const auto image = nrgDiscAtOnce({{dataTrack(smallImage(), 0, 2048)}});
    for (size_t at = smallImage().size(); at < image.size(); ++at)
        for (const char value : {'\0', '\x7F', '\xFF'}) {
            auto damaged = image;
            damaged[at] = value;
            errorOf([&] { walk(*openBytes(damaged)); });
        }
    EXPECT_EQ(errorOf([&] { openBytes("NER5" + std::string(8, '\xFF')); }),
              numberOf(ErrorNumber::FileSystemUnsupported));
}

// Tracks and blocks

std::shared_ptr<const ByteSource> numbered(size_t sectors) {
    std::string bytes;
    for (size_t i = 0; i < sectors; ++i)
        bytes += std::string(2048, static_cast<char>('A' + i));
    return std::make_shared<BufferSource>(bytes);
}

std::string readText(const ByteSource& source, uint64_t offset, size_t length) {
    std::string text(length, ' ');
    text.resize(source.read(offset, std::as_writable_bytes(std::span(text))));
    return text;
}

TEST(TrackBytes, SectorsAreFoundByTheirAddress) {
    const TrackBytes bytes({{numbered(4), 2048, 2048, 0, 100, 2}, {numbered(4), 0, 2048, 0, 102, 1}});
    EXPECT_EQ(bytes.size(), 103U * 2048);
    EXPECT_EQ(readText(bytes, 101 * 2048 - 1, 2), "BC");
    EXPECT_EQ(readText(bytes, 102 * 2048 - 1, 2), "CA");
    EXPECT_EQ(readText(bytes, 103 * 2048 - 1, 9), "A");
    EXPECT_EQ(readText(bytes, 103 * 2048, 9), "");
    EXPECT_EQ(errorOf([&] { readText(bytes, 99 * 2048, 9); }), numberOf(ErrorNumber::ReadFailure));
}

TEST(TrackBytes, TracksThatCannotBeAreLeftOut) {
    const TrackBytes bytes({{numbered(2), 9999999, 2048, 0, 0, 5},
                            {numbered(2), 0, 100, 0, 10, 5},
                            {numbered(2), 0, 99999, 0, 20, 5},
                            {numbered(2), 0, 2048, 2048, 30, 5},
                            {numbered(2), UINT64_MAX, 2048, 0, 40, 5},
                            {numbered(2), 0, 2048, 0, 50, 9},
                            {numbered(2), 0, 2048, 0, 51, 9}});
    EXPECT_EQ(bytes.size(), 52U * 2048);
    EXPECT_EQ(readText(bytes, 51 * 2048, 1), "B");
}

TEST(BufferedBytes, ReadsAreServedFromLargeBlocks) {
    const auto source = std::make_shared<BufferSource>(std::string(200000, 'x') + "end");
    const BufferedBytes bytes(source);
    for (uint64_t at = 0; at < 60000; at += 500)
        EXPECT_EQ(readText(bytes, at, 100), std::string(100, 'x'));
    EXPECT_EQ(source->reads(), 1);
    EXPECT_EQ(readText(bytes, 199999, 100), "xend");
    EXPECT_EQ(readText(bytes, 65500, 100), std::string(100, 'x'));
    EXPECT_EQ(readText(bytes, 0, 200003).substr(199999), "xend");
    EXPECT_EQ(readText(bytes, 200003, 5), "");
    EXPECT_EQ(readText(bytes, UINT64_MAX, 5), "");
}

TEST(BufferedBytes, ManyBlocksInTurnStayRight) {
    std::string text;
    for (int i = 0; i < 300000; ++i)
        text += std::to_string(i) + ",";
    const BufferedBytes bytes(std::make_shared<BufferSource>(text));
    for (uint64_t i = 0; i < 2000; ++i) {
        const auto at = i * 7919 * 131 % (text.size() - 3000);
        EXPECT_EQ(readText(bytes, at, 2999), text.substr(at, 2999));
    }
}

TEST(BufferedBytes, ABlockThatFailsIsReadWhereItIsWanted) {
    const auto source = std::make_shared<BufferSource>(std::string(100000, 'x'));
    source->failFrom(70000);
    const BufferedBytes bytes(source);
    EXPECT_EQ(readText(bytes, 65000, 5000).size(), 5000U);
    EXPECT_EQ(errorOf([&] { readText(bytes, 69999, 2); }), numberOf(ErrorNumber::ReadFailure));
    EXPECT_EQ(readText(bytes, 69990, 10).size(), 10U);
}

} // namespace
} // namespace discaro::disc
