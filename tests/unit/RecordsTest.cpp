#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "core/Records.h"

namespace {

TEST(RecordsTest, ReleaseFreesDataAndZeroesEverythingButChannels) {
    ImageData image{new unsigned char[12], 2, 2, 3, RUVO_FORMAT_RGB8, 12, 5000, 7};
    telvarra::releaseImageData(image);
    EXPECT_EQ(image.data, nullptr);
    EXPECT_EQ(image.width, 0);
    EXPECT_EQ(image.height, 0);
    EXPECT_EQ(image.channels, 3);
    EXPECT_EQ(image.format, RUVO_FORMAT_UNKNOWN);
    EXPECT_EQ(image.dataSize, 0);
    EXPECT_EQ(image.timestamp, 0);
    EXPECT_EQ(image.frameNumber, 0);

    telvarra::releaseImageData(image);  // twice is harmless
    EXPECT_EQ(image.channels, 3);

    ImageData empty{nullptr, 9, 9, 1, RUVO_FORMAT_MONO8, 81, 1, 1};
    telvarra::releaseImageData(empty);
    EXPECT_EQ(empty.width, 0);
    EXPECT_EQ(empty.channels, 1);
}

TEST(RecordsTest, BoundedCopyClearsTheFieldAndCutsAt255Characters) {
    char field[256];
    std::memset(field, 'x', sizeof field);
    EXPECT_TRUE(telvarra::copyBoundedText(field, "cam"));
    EXPECT_STREQ(field, "cam");
    for (std::size_t i = 3; i < sizeof field; ++i) ASSERT_EQ(field[i], '\0');

    EXPECT_FALSE(telvarra::copyBoundedText(field, std::string(10000, 'a')));
    EXPECT_EQ(std::strlen(field), 255u);
    EXPECT_TRUE(telvarra::copyBoundedText(field, std::string(255, 'b')));
    EXPECT_FALSE(telvarra::copyBoundedText(field, sizeof field, nullptr));
    EXPECT_STREQ(field, "");
}

TEST(RecordsTest, DeviceRecordCarriesTheTextsTypeAndAvailability) {
    const DeviceInfo record = telvarra::makeDeviceRecord(
        RUVO_CAMERA_HIKVISION,
        {"SN1", "HikVision", "SN1", "HikVision ace", "Line (SN1)", std::string(300, 'u')});
    // Identifier, type, vendor and model through every make: the shared integration suite.
    EXPECT_STREQ(record.displayName, "Line (SN1)");
    EXPECT_EQ(std::strlen(record.userDefinedName), 255u);
    EXPECT_EQ(record.maxWidth, 0);
    EXPECT_EQ(record.supportedFormats.count, 0u);
    EXPECT_TRUE(record.isAvailable);
}

TEST(RecordsTest, AppendStopsAtTheListCapacity) {
    auto list = std::make_unique<_RUVO_DEVICE_INFO_LIST>();
    list->count = 0;
    const DeviceInfo record =
        telvarra::makeDeviceRecord(RUVO_CAMERA_DVP, {"id", "", "", "", "", ""});
    for (int i = 0; i < RUVO_MAX_DEVICES; ++i)
        ASSERT_TRUE(telvarra::appendDeviceRecord(*list, record));
    EXPECT_FALSE(telvarra::appendDeviceRecord(*list, record));
    EXPECT_EQ(list->count, static_cast<uint32_t>(RUVO_MAX_DEVICES));
    EXPECT_STREQ(list->devices[RUVO_MAX_DEVICES - 1].cameraId, "id");
}

}  // namespace
