#include "base/RuntimeError.h"
#include "disc/system/OpticalDrive.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <linux/cdrom.h>

#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <vector>

namespace discaro::disc {
namespace {

using base::ErrorNumber;

// An optical drive that answers as the kernel does for the disc in it.
struct FakeDrive {
    bool isOptical = true;
    uint8_t firstTrack = 1;
    std::vector<uint8_t> controls = {}; // of the tracks; none without a disc
    std::optional<int> lastSession = std::nullopt;
    std::optional<unsigned> unreadableTrack = std::nullopt;
    mutable std::map<unsigned long, int> asked = {};

    bool operator()(unsigned long request, void* answer) const {
        ++asked[request];
        switch (request) {
        case CDROM_GET_CAPABILITY:
            return isOptical;
        case CDROMREADTOCHDR:
            return tell(*static_cast<cdrom_tochdr*>(answer));
        case CDROMREADTOCENTRY:
            return tell(*static_cast<cdrom_tocentry*>(answer));
        case CDROMMULTISESSION:
            return tell(*static_cast<cdrom_multisession*>(answer));
        default:
            return false;
        }
    }

    bool tell(cdrom_tochdr& tracks) const {
        tracks.cdth_trk0 = firstTrack;
        tracks.cdth_trk1 = static_cast<uint8_t>(firstTrack + controls.size() - 1);
        return !controls.empty();
    }

    bool tell(cdrom_tocentry& track) const {
        const auto place = static_cast<size_t>(track.cdte_track - firstTrack);
        if (place >= controls.size() || track.cdte_track == unreadableTrack)
            return false;
        track.cdte_ctrl = controls[place] & 15U;
        return true;
    }

    bool tell(cdrom_multisession& last) const {
        last.addr.lba = lastSession.value_or(-1);
        return last.addr_format == CDROM_LBA && lastSession.has_value();
    }

    uint64_t start() const { return lastSessionStart(std::cref(*this), "/dev/sr7"); }

    base::RuntimeError error() const {
        try {
            start();
        } catch (const base::RuntimeError& error) {
            return error;
        }
        throw std::logic_error("it can be read");
    }
};

constexpr uint8_t kAudio = 0;
constexpr uint8_t kAudioThatMayBeCopied = 2;
constexpr uint8_t kData = CDROM_DATA_TRACK;

TEST(OpticalDrives, ADiscOfOneSessionIsReadFromItsBeginning) {
    EXPECT_EQ((FakeDrive{.controls = {kData}, .lastSession = 0}).start(), 0U);
    EXPECT_EQ((FakeDrive{.controls = {kData, kAudio, kAudio}, .lastSession = 0}).start(), 0U);
}

TEST(OpticalDrives, ADiscOfSeveralSessionsIsReadFromTheLast) {
    EXPECT_EQ((FakeDrive{.controls = {kData, kData}, .lastSession = 11702}).start(), 11702U);
    EXPECT_EQ((FakeDrive{.controls = {kAudio, kAudio, kData}, .lastSession = 250000}).start(), 250000U);
}

TEST(OpticalDrives, TheFirstTrackMayHaveAnyNumber) {
    const FakeDrive drive{.firstTrack = 98, .controls = {kAudio, kData}, .lastSession = 7};
    EXPECT_EQ(drive.start(), 7U);
    const FakeDrive last{.firstTrack = 255, .controls = {kData}, .lastSession = 7};
    EXPECT_EQ(last.start(), 7U);
}

TEST(OpticalDrives, ADriveThatKnowsNoSessionsReadsFromTheBeginning) {
    EXPECT_EQ((FakeDrive{.controls = {kData}}).start(), 0U);
    EXPECT_EQ((FakeDrive{.controls = {kData}, .lastSession = -150}).start(), 0U);
}

TEST(OpticalDrives, ADriveWithoutADiscIsNotReady) {
    const auto error = FakeDrive{}.error();
    EXPECT_TRUE(error.is(ErrorNumber::DriveNotReady));
    EXPECT_TRUE(error.description().ends_with("/dev/sr7"));
}

TEST(OpticalDrives, ADiscWhoseTracksCannotBeReadIsNotReady) {
    const FakeDrive drive{.controls = {kData, kData}, .lastSession = 0, .unreadableTrack = 2};
    EXPECT_TRUE(drive.error().is(ErrorNumber::DriveNotReady));
}

TEST(OpticalDrives, ADiscOfAudioTracksAloneIsNotSupported) {
    const FakeDrive drive{.controls = {kAudio, kAudioThatMayBeCopied}, .lastSession = 0};
    const auto error = drive.error();
    EXPECT_TRUE(error.is(ErrorNumber::FileSystemUnsupported));
    EXPECT_TRUE(error.description().ends_with("the disc holds audio tracks alone"));
}

TEST(OpticalDrives, AnotherDeviceIsAskedNothingElseAndReadFromItsBeginning) {
    const FakeDrive device{.isOptical = false};
    EXPECT_EQ(device.start(), 0U);
    EXPECT_EQ(device.asked.size(), 1U);
}

TEST(OpticalDrives, WhatIsNoDriveIsReadFromItsBeginning) {
    const test::ScratchFolder scratch;
    EXPECT_EQ(lastSessionStart(scratch.write("disc.iso", "no drive")), 0U);
    EXPECT_EQ(lastSessionStart(scratch.path()), 0U);
    EXPECT_EQ(lastSessionStart("/dev/null"), 0U);
    EXPECT_EQ(lastSessionStart(scratch.path() / "missing"), 0U);
}

} // namespace
} // namespace discaro::disc
