// The complete C interface's conventions on simulator cameras: the last error belongs to the
// thread that failed, listings fill what they have room for and count the rest, text is cut to
// the buffer but its whole length answered, and nothing of a refused call is written.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>

#include "sim/hikvision/HikSimControl.h"
#include "support/CurrentDirectory.h"
#include "telvarra/TelvarraApi.h"

namespace telvarra::test {
namespace {

constexpr int kHikVision = 2;

class CInterfaceTest : public ::testing::Test {
  protected:
    void SetUp() override {
        HikSim_Reset();
        for (const char* line : {"id=CI1 size=64x48", "id=CI2 size=64x48", "id=CI3 size=64x48"})
            ASSERT_EQ(HikSim_AddDevice(line), 0) << HikSim_LastError();
        ASSERT_EQ(telvarra_initialize(kHikVision), 1) << telvarra_last_error();
    }
    void TearDown() override {
        telvarra_shutdown();
        EXPECT_EQ(HikSim_OutstandingBuffers(), 0u);
    }
    InTempDirectory directory;  // the configuration files opened cameras write
};

TEST_F(CInterfaceTest, TheLastErrorBelongsToTheThreadThatFailed) {
    EXPECT_EQ(telvarra_open("NOSUCH", kHikVision), 0);
    const std::string mine = telvarra_last_error();
    EXPECT_FALSE(mine.empty());
    std::string theirs = "unset";
    std::thread other([&] {
        theirs = telvarra_last_error();
        EXPECT_EQ(telvarra_open("CI2", kHikVision), 1);
    });
    other.join();
    EXPECT_EQ(theirs, "");
    EXPECT_EQ(telvarra_last_error(), mine);
    EXPECT_EQ(telvarra_is_connected("CI2"), 1);
    EXPECT_STREQ(telvarra_last_error(), "");  // a success clears it
}

TEST_F(CInterfaceTest, ListingsFillWhatFitsAndCountTheRest) {
    DeviceInfo records[3];
    std::memset(records, 0x5A, sizeof records);
    EXPECT_EQ(telvarra_list_cameras(kHikVision, records, 2), 3);
    EXPECT_STREQ(records[0].cameraId, "CI1");
    EXPECT_STREQ(records[1].cameraId, "CI2");
    EXPECT_EQ(static_cast<unsigned char>(records[2].cameraId[0]), 0x5A);
    EXPECT_EQ(telvarra_list_cameras(kHikVision, records, -1), -1);
    EXPECT_EQ(telvarra_list_cameras(1, records, 3), -1) << "MindVision was not started";

    ASSERT_EQ(telvarra_open("CI1", kHikVision), 1);
    int formats[1] = {-7};
    const int count = telvarra_supported_formats("CI1", formats, 1);
    EXPECT_GE(count, 1);
    EXPECT_NE(formats[0], -7);
    EXPECT_EQ(telvarra_supported_formats("CI1", nullptr, 1), -1);
}

TEST_F(CInterfaceTest, RefusedCallsWriteNothingTheHostGave) {
    ASSERT_EQ(telvarra_open("CI3", kHikVision), 1);
    int width = -1, height = -1;
    EXPECT_EQ(telvarra_get_size("NOSUCH", &width, &height), 0);
    EXPECT_EQ(width, -1);
    EXPECT_EQ(telvarra_get_size("CI3", nullptr, &height), 0);
    EXPECT_EQ(telvarra_get_size("CI3", &width, &height), 1);
    EXPECT_GT(width, 0);

    char text[8];
    std::memset(text, 'x', sizeof text);
    EXPECT_EQ(telvarra_config_get("CI3", "Absent", text, sizeof text), -1);
    EXPECT_EQ(text[0], 'x');
    EXPECT_EQ(telvarra_config_set("CI3", "a=b", "1"), 0) << "a key with '=' would not read back";
    EXPECT_EQ(telvarra_set_zoom("CI3", -1), 0);
    EXPECT_EQ(telvarra_frame_to_buffer("CI3", text, -5, nullptr), 0);
    EXPECT_EQ(telvarra_set_frame_callback(nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(telvarra_status("NOSUCH"), 0);
}

}  // namespace
}  // namespace telvarra::test
