// The Canon simulator's vendor and control functions, called directly: reference counts and what
// EdsTerminateSDK counts as leaked, events that wait for EdsGetEvent, stills announced as
// directory items, property refusals, sessions, and live view as JPEG files of the pattern. What
// the library's own tests do not reach.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "sim/canon/CanonExports.h"
#include "sim/canon/CanonSimControl.h"
#include "sim/common/TestPattern.h"

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_JPEG
#define STBI_NO_STDIO
#include <stb/stb_image.h>

namespace telvarra::test {
namespace {

using namespace telvarra::vendor::canon;

constexpr EdsUInt32 kNoObject = 0xFFFFFFFF;

// What the handlers heard, in order.
struct Heard {
    std::vector<std::string> events;
    std::vector<EdsBaseRef> items;

    static EdsError property(EdsUInt32 event, EdsUInt32 propertyId, EdsUInt32, void* context) {
        static_cast<Heard*>(context)->events.push_back("property " + std::to_string(event) + " " +
                                                        std::to_string(propertyId));
        return EDS_ERR_OK;
    }
    static EdsError object(EdsUInt32 event, EdsBaseRef item, void* context) {
        auto& heard = *static_cast<Heard*>(context);
        heard.events.push_back("object " + std::to_string(event));
        heard.items.push_back(item);
        return EDS_ERR_OK;
    }
    static EdsError state(EdsUInt32 event, EdsUInt32, void* context) {
        static_cast<Heard*>(context)->events.push_back("state " + std::to_string(event));
        return EDS_ERR_OK;
    }
};

class CanonSimTest : public ::testing::Test {
  protected:
    void SetUp() override {
        CanonSim_Reset();
        ASSERT_EQ(EdsInitializeSDK(), EDS_ERR_OK);
    }
    void TearDown() override { CanonSim_Reset(); }

    static void addDevice(const std::string& line) {
        ASSERT_EQ(CanonSim_AddDevice(line.c_str()), 0) << line << ": " << CanonSim_LastError();
    }
    // The body at `index` of a new list; the list is released.
    static EdsCameraRef camera(EdsInt32 index = 0) {
        EdsCameraListRef list = nullptr;
        EdsCameraRef body = nullptr;
        EXPECT_EQ(EdsGetCameraList(&list), EDS_ERR_OK);
        EXPECT_EQ(EdsGetChildAtIndex(list, index, &body), EDS_ERR_OK);
        EXPECT_EQ(EdsRelease(list), 0u);
        return body;
    }
    static EdsCameraRef session(EdsInt32 index = 0) {
        EdsCameraRef body = camera(index);
        EXPECT_EQ(EdsOpenSession(body), EDS_ERR_OK);
        return body;
    }
    static void listen(EdsCameraRef body, Heard& heard) {
        ASSERT_EQ(EdsSetPropertyEventHandler(body, kEdsPropertyEvent_All, Heard::property, &heard),
                  EDS_ERR_OK);
        ASSERT_EQ(EdsSetObjectEventHandler(body, kEdsObjectEvent_All, Heard::object, &heard),
                  EDS_ERR_OK);
        ASSERT_EQ(EdsSetCameraStateEventHandler(body, kEdsStateEvent_All, Heard::state, &heard),
                  EDS_ERR_OK);
    }
    static EdsError setUInt32(EdsCameraRef body, EdsUInt32 property, EdsUInt32 value) {
        return EdsSetPropertyData(body, property, 0, sizeof value, &value);
    }
    static void takeStill(EdsCameraRef body) {
        ASSERT_EQ(EdsSendCommand(body, kEdsCameraCommand_PressShutterButton,
                                 kEdsCameraCommand_ShutterButton_Completely_NonAF),
                  EDS_ERR_OK);
        ASSERT_EQ(EdsSendCommand(body, kEdsCameraCommand_PressShutterButton,
                                 kEdsCameraCommand_ShutterButton_OFF),
                  EDS_ERR_OK);
    }
};

struct Decoded {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgb;
};

Decoded decode(const void* jpeg, EdsUInt64 bytes) {
    Decoded image;
    int components = 0;
    stbi_uc* pixels = stbi_load_from_memory(static_cast<const stbi_uc*>(jpeg),
                                            static_cast<int>(bytes), &image.width, &image.height,
                                            &components, 3);
    if (pixels) {
        image.rgb.assign(pixels, pixels + image.width * image.height * 3);
        stbi_image_free(pixels);
    }
    return image;
}

double meanDifference(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b) {
    if (a.size() != b.size() || a.empty()) return 255;
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += std::abs(int(a[i]) - int(b[i]));
    return sum / double(a.size());
}

TEST_F(CanonSimTest, ObjectsAreCountedAndTerminatingWithObjectsHeldCountsThemAsLeaked) {
    addDevice("id=RC1 size=64x48");
    EdsCameraRef body = camera();
    EXPECT_EQ(CanonSim_OutstandingBuffers(), 1u);  // the list was released, the camera not
    EXPECT_EQ(EdsRetain(body), 2u);
    EXPECT_EQ(EdsRelease(body), 1u);
    EXPECT_EQ(EdsRelease(body), 0u);
    EXPECT_EQ(EdsRelease(body), kNoObject);  // destroyed: refused, not counted below zero
    EXPECT_EQ(EdsRetain(nullptr), kNoObject);
    EXPECT_EQ(CanonSim_OutstandingBuffers(), 0u);

    EdsStreamRef stream = nullptr;
    ASSERT_EQ(EdsCreateMemoryStream(0, &stream), EDS_ERR_OK);
    ASSERT_EQ(EdsTerminateSDK(), EDS_ERR_OK);
    EXPECT_EQ(EdsRelease(stream), kNoObject);  // freed with the SDK
    EXPECT_EQ(CanonSim_OutstandingBuffers(), 1u);
    // Started again in the same process: what leaked stays counted until a reset.
    ASSERT_EQ(EdsInitializeSDK(), EDS_ERR_OK);
    EXPECT_EQ(CanonSim_OutstandingBuffers(), 1u);
    ASSERT_EQ(EdsTerminateSDK(), EDS_ERR_OK);
    EdsCameraListRef list = nullptr;
    EXPECT_NE(EdsGetCameraList(&list), EDS_ERR_OK);  // not started
}

TEST_F(CanonSimTest, SessionsAreOnePerBodyAndPropertiesNeedOne) {
    addDevice("id=SE1 size=64x48");
    addDevice("id=SE2 size=64x48 model=EOS-R5");
    EdsCameraRef first = camera(0);
    EdsCameraRef again = camera(0);
    EdsUInt32 value = 0;
    EXPECT_EQ(EdsGetPropertyData(first, kEdsPropID_Tv, 0, 4, &value), EDS_ERR_SESSION_NOT_OPEN);
    EdsDeviceInfo info{};
    ASSERT_EQ(EdsGetDeviceInfo(camera(1), &info), EDS_ERR_OK);  // no session needed
    EXPECT_STREQ(info.szDeviceDescription, "EOS-R5");
    EXPECT_STREQ(info.szPortName, "usb:001,002");

    ASSERT_EQ(EdsOpenSession(first), EDS_ERR_OK);
    EXPECT_EQ(EdsOpenSession(first), EDS_ERR_SESSION_ALREADY_OPEN);
    EXPECT_EQ(EdsOpenSession(again), EDS_ERR_COMM_PORT_IS_IN_USE);
    EXPECT_EQ(CanonSim_IsOpen("SE1"), 1);
    // Releasing the camera object ends its session.
    EXPECT_EQ(EdsRelease(first), 0u);
    EXPECT_EQ(CanonSim_IsOpen("SE1"), 0);
    ASSERT_EQ(EdsOpenSession(again), EDS_ERR_OK);
    EXPECT_EQ(EdsCloseSession(again), EDS_ERR_OK);
    EXPECT_EQ(EdsCloseSession(again), EDS_ERR_SESSION_NOT_OPEN);
}

TEST_F(CanonSimTest, PropertiesAreReadAndWrittenAsTheBodyAllowsAndRecorded) {
    addDevice("id=PR1 size=64x48");
    ASSERT_EQ(CanonSim_SetSerialNumber("PR1", "083021001234"), 0);
    EdsCameraRef body = session();
    EdsInt32 type = 0;
    EdsUInt32 size = 0;
    ASSERT_EQ(EdsGetPropertySize(body, kEdsPropID_BodyIDEx, 0, &type, &size), EDS_ERR_OK);
    EXPECT_EQ(type, kEdsDataType_String);
    EXPECT_EQ(size, 13u);
    char serial[256] = {};
    EXPECT_EQ(EdsGetPropertyData(body, kEdsPropID_BodyIDEx, 0, 12, serial),
              EDS_ERR_INVALID_LENGTH);
    ASSERT_EQ(EdsGetPropertyData(body, kEdsPropID_BodyIDEx, 0, sizeof serial, serial), EDS_ERR_OK);
    EXPECT_STREQ(serial, "083021001234");
    EXPECT_EQ(EdsSetPropertyData(body, kEdsPropID_BodyIDEx, 0, 4, serial),
              EDS_ERR_PROTECTION_VIOLATION);

    EdsPropertyDesc tv{};
    ASSERT_EQ(EdsGetPropertyDesc(body, kEdsPropID_Tv, &tv), EDS_ERR_OK);
    ASSERT_EQ(tv.numElements, 55);
    EXPECT_EQ(tv.propDesc[6], 0x20);
    EXPECT_EQ(tv.propDesc[54], 0xA0);
    EdsPropertyDesc iso{};
    ASSERT_EQ(EdsGetPropertyDesc(body, kEdsPropID_ISOSpeed, &iso), EDS_ERR_OK);
    EXPECT_EQ(iso.numElements, 14);
    EXPECT_EQ(iso.propDesc[0], 0x00);
    EXPECT_EQ(iso.propDesc[13], 0x68);

    EXPECT_EQ(setUInt32(body, kEdsPropID_Tv, 0x61), EDS_ERR_INVALID_DEVICEPROP_VALUE);
    EXPECT_EQ(setUInt32(body, kEdsPropID_SaveTo, 4), EDS_ERR_INVALID_DEVICEPROP_VALUE);
    const std::uint64_t wide = 0x73;
    EXPECT_EQ(EdsSetPropertyData(body, kEdsPropID_Tv, 0, sizeof wide, &wide),
              EDS_ERR_INVALID_LENGTH);
    ASSERT_EQ(setUInt32(body, kEdsPropID_Tv, 0x73), EDS_ERR_OK);
    char arguments[64] = {};
    CanonSim_LastArguments("EdsSetPropertyData", arguments, sizeof arguments);
    EXPECT_STREQ(arguments, "1030, 0, 4, 115");
    unsigned current = 0;
    ASSERT_EQ(CanonSim_GetProperty("PR1", kEdsPropID_Tv, &current), 0);
    EXPECT_EQ(current, 0x73u);
    EXPECT_EQ(CanonSim_GetProperty("PR1", kEdsPropID_BodyIDEx, &current), -1);

    const int shortList[] = {0x48, 0x50};
    ASSERT_EQ(CanonSim_SetPropertyDesc("PR1", kEdsPropID_ISOSpeed, shortList, 2), 0);
    EXPECT_EQ(CanonSim_SetPropertyDesc("PR1", kEdsPropID_SaveTo, shortList, 2), -1);
    EXPECT_EQ(CanonSim_SetPropertyDesc("PR1", kEdsPropID_ISOSpeed, shortList, 129), -1);
    ASSERT_EQ(EdsGetPropertyDesc(body, kEdsPropID_ISOSpeed, &iso), EDS_ERR_OK);
    EXPECT_EQ(iso.numElements, 2);
    EXPECT_EQ(EdsRelease(body), 0u);
}

TEST_F(CanonSimTest, EventsWaitForEdsGetEventAndReachOnlyTheirHandlers) {
    addDevice("id=EV1 size=64x48");
    EdsCameraRef body = session();
    Heard heard;
    listen(body, heard);
    ASSERT_EQ(CanonSim_SetProperty("EV1", kEdsPropID_Av, 0x28), 0);
    ASSERT_EQ(CanonSim_SetProperty("EV1", kEdsPropID_Av, 0x28), 0);  // unchanged: no event
    EXPECT_EQ(CanonSim_PendingEvents(), 1u);
    EXPECT_TRUE(heard.events.empty());
    ASSERT_EQ(EdsGetEvent(), EDS_ERR_OK);
    EXPECT_EQ(heard.events, std::vector<std::string>{"property 257 1029"});

    // A handler for one event hears that one only; a null handler hears nothing.
    Heard descriptions;
    ASSERT_EQ(EdsSetPropertyEventHandler(body, kEdsPropertyEvent_PropertyDescChanged,
                                         Heard::property, &descriptions),
              EDS_ERR_OK);
    ASSERT_EQ(CanonSim_SetProperty("EV1", kEdsPropID_Av, 0x2B), 0);
    const int list[] = {0x10};
    ASSERT_EQ(CanonSim_SetPropertyDesc("EV1", kEdsPropID_Tv, list, 1), 0);
    ASSERT_EQ(EdsGetEvent(), EDS_ERR_OK);
    EXPECT_EQ(descriptions.events, std::vector<std::string>{"property 258 1030"});
    ASSERT_EQ(EdsSetPropertyEventHandler(body, kEdsPropertyEvent_All, nullptr, nullptr),
              EDS_ERR_OK);
    ASSERT_EQ(CanonSim_SetProperty("EV1", kEdsPropID_Av, 0x20), 0);
    ASSERT_EQ(EdsGetEvent(), EDS_ERR_OK);
    EXPECT_EQ(descriptions.events.size(), 1u);
    EXPECT_EQ(EdsSetPropertyEventHandler(body, kEdsStateEvent_All, Heard::property, &heard),
              EDS_ERR_INVALID_PARAMETER);

    // Unplugged: the state handler hears of it, the body leaves new lists, calls fail.
    ASSERT_EQ(CanonSim_Unplug("EV1"), 0);
    ASSERT_EQ(EdsGetEvent(), EDS_ERR_OK);
    EXPECT_EQ(heard.events.back(), "state 769");
    EdsUInt32 value = 0;
    EXPECT_EQ(EdsGetPropertyData(body, kEdsPropID_Av, 0, 4, &value), EDS_ERR_COMM_DISCONNECTED);
    EdsCameraListRef bodies = nullptr;
    EdsUInt32 count = 9;
    ASSERT_EQ(EdsGetCameraList(&bodies), EDS_ERR_OK);
    ASSERT_EQ(EdsGetChildCount(bodies, &count), EDS_ERR_OK);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(EdsCloseSession(body), EDS_ERR_OK);
    EXPECT_EQ(EdsRelease(bodies), 0u);
    EXPECT_EQ(EdsRelease(body), 0u);
    EXPECT_EQ(CanonSim_OutstandingBuffers(), 0u);
}

TEST_F(CanonSimTest, AFullPressAndReleaseTakesAStillAnnouncedForTheHostOnly) {
    addDevice("id=SH1 size=40x30");
    EdsCameraRef body = session();
    Heard heard;
    listen(body, heard);
    // Kept on the card: nothing for the host, but the frame number is taken.
    takeStill(body);
    ASSERT_EQ(setUInt32(body, kEdsPropID_SaveTo, kEdsSaveTo_Host), EDS_ERR_OK);
    // Without the host's capacity the body cannot take it.
    takeStill(body);
    ASSERT_EQ(EdsSetCapacity(body, {0x7FFFFFFF, 0x1000, 1}), EDS_ERR_OK);
    ASSERT_EQ(EdsSendCommand(body, 4, kEdsCameraCommand_ShutterButton_Halfway), EDS_ERR_OK);
    ASSERT_EQ(EdsSendCommand(body, 4, kEdsCameraCommand_ShutterButton_OFF), EDS_ERR_OK);
    EXPECT_EQ(EdsSendCommand(body, 4, 2), EDS_ERR_INVALID_PARAMETER);
    takeStill(body);
    ASSERT_EQ(EdsGetEvent(), EDS_ERR_OK);
    EXPECT_EQ(heard.events, (std::vector<std::string>{"property 257 11", "state 773", "object 520"}));
    char commands[128] = {};
    CanonSim_Commands("SH1", commands, sizeof commands);
    EXPECT_STREQ(commands, "4:65539 4:0 4:65539 4:0 4:1 4:0 4:65539 4:0");
    unsigned frames = 0;
    ASSERT_EQ(CanonSim_FramesDelivered("SH1", &frames), 0);
    EXPECT_EQ(frames, 3u);

    ASSERT_EQ(heard.items.size(), 1u);
    EdsDirectoryItemRef item = heard.items[0];
    EdsDirectoryItemInfo info{};
    ASSERT_EQ(EdsGetDirectoryItemInfo(item, &info), EDS_ERR_OK);
    EXPECT_STREQ(info.szFileName, "IMG_0002.JPG");
    EdsStreamRef stream = nullptr;
    ASSERT_EQ(EdsCreateMemoryStream(0, &stream), EDS_ERR_OK);
    EXPECT_EQ(EdsDownload(item, info.size + 1, stream), EDS_ERR_INVALID_LENGTH);
    ASSERT_EQ(EdsDownload(item, info.size, stream), EDS_ERR_OK);
    ASSERT_EQ(EdsDownloadComplete(item), EDS_ERR_OK);
    EXPECT_EQ(EdsDownload(item, info.size, stream), EDS_ERR_INVALID_HANDLE);
    EdsImageRef image = nullptr;
    EdsImageInfo imageInfo{};
    ASSERT_EQ(EdsCreateImageRef(stream, &image), EDS_ERR_OK);
    ASSERT_EQ(EdsGetImageInfo(image, kEdsImageSrc_FullView, &imageInfo), EDS_ERR_OK);
    EXPECT_EQ(imageInfo.width, 80u);
    EXPECT_EQ(imageInfo.height, 60u);

    // The still is frame 3 of the pattern at twice the size.
    void* jpeg = nullptr;
    EdsUInt64 length = 0;
    ASSERT_EQ(EdsGetPointer(stream, &jpeg), EDS_ERR_OK);
    ASSERT_EQ(EdsGetLength(stream, &length), EDS_ERR_OK);
    EXPECT_EQ(length, info.size);
    const Decoded still = decode(jpeg, length);
    unsigned seed = 0;
    CanonSim_DeviceSeed("SH1", &seed);
    std::vector<std::uint8_t> expected(80 * 60 * 3);
    sim::renderFrame({"SH1", "canon", seed, 80, 60}, sim::PixelFormat::Rgb8, 3, 80, 60,
                     expected.data());
    EXPECT_EQ(still.width, 80);
    EXPECT_LT(meanDifference(still.rgb, expected), 4.0);

    for (EdsBaseRef object : {image, stream, item}) EXPECT_EQ(EdsRelease(object), 0u);
    EXPECT_EQ(EdsRelease(body), 0u);
    EXPECT_EQ(CanonSim_OutstandingBuffers(), 0u);
}

TEST_F(CanonSimTest, AStillNobodyListensForLeavesNoItemBehind) {
    addDevice("id=NL1 size=40x30");
    EdsCameraRef body = session();
    ASSERT_EQ(setUInt32(body, kEdsPropID_SaveTo, kEdsSaveTo_Host), EDS_ERR_OK);
    ASSERT_EQ(EdsSetCapacity(body, {100, 512, 1}), EDS_ERR_OK);
    ASSERT_EQ(CanonSim_HoldStills("NL1", 1), 0);
    takeStill(body);
    EXPECT_EQ(CanonSim_PendingEvents(), 1u);  // the property change only
    ASSERT_EQ(CanonSim_HoldStills("NL1", 0), 0);
    EXPECT_EQ(CanonSim_PendingEvents(), 2u);
    ASSERT_EQ(EdsGetEvent(), EDS_ERR_OK);
    EXPECT_EQ(CanonSim_PendingEvents(), 0u);
    EXPECT_EQ(EdsRelease(body), 0u);
    EXPECT_EQ(CanonSim_OutstandingBuffers(), 0u);
}

TEST_F(CanonSimTest, LiveViewComesOnlyToAHostThatAskedAndAfterAMoment) {
    addDevice("id=LV1 size=64x48 seed=7");
    EdsCameraRef body = session();
    EdsStreamRef stream = nullptr;
    EdsEvfImageRef evf = nullptr;
    ASSERT_EQ(EdsCreateMemoryStream(0, &stream), EDS_ERR_OK);
    ASSERT_EQ(EdsCreateEvfImageRef(stream, &evf), EDS_ERR_OK);
    EXPECT_EQ(EdsDownloadEvfImage(body, evf), EDS_ERR_OBJECT_NOTREADY);  // to the body's screen
    ASSERT_EQ(setUInt32(body, kEdsPropID_Evf_OutputDevice,
                        kEdsEvfOutputDevice_TFT | kEdsEvfOutputDevice_PC),
              EDS_ERR_OK);
    EXPECT_EQ(CanonSim_IsGrabbing("LV1"), 1);
    EXPECT_EQ(EdsDownloadEvfImage(body, evf), EDS_ERR_OBJECT_NOTREADY);
    ASSERT_EQ(EdsDownloadEvfImage(body, evf), EDS_ERR_OK);
    ASSERT_EQ(EdsDownloadEvfImage(body, evf), EDS_ERR_OK);
    void* jpeg = nullptr;
    EdsUInt64 length = 0;
    ASSERT_EQ(EdsGetPointer(stream, &jpeg), EDS_ERR_OK);
    ASSERT_EQ(EdsGetLength(stream, &length), EDS_ERR_OK);
    const Decoded picture = decode(jpeg, length);
    std::vector<std::uint8_t> expected(64 * 48 * 3);
    sim::renderFrame({"LV1", "canon", 7, 64, 48}, sim::PixelFormat::Rgb8, 2, 64, 48,
                     expected.data());
    EXPECT_EQ(picture.height, 48);
    EXPECT_LT(meanDifference(picture.rgb, expected), 4.0);

    // Closing the session takes live view from the host.
    ASSERT_EQ(EdsCloseSession(body), EDS_ERR_OK);
    EXPECT_EQ(CanonSim_IsGrabbing("LV1"), 0);
    unsigned outputs = 0;
    ASSERT_EQ(CanonSim_GetProperty("LV1", kEdsPropID_Evf_OutputDevice, &outputs), 0);
    EXPECT_EQ(outputs, kEdsEvfOutputDevice_TFT);
    for (EdsBaseRef object : {evf, stream, body}) EXPECT_EQ(EdsRelease(object), 0u);
}

TEST_F(CanonSimTest, RigLinesAreColourBodiesWhoseStillsFitAJpegFile) {
    addDevice("id=RG1");
    EXPECT_EQ(CanonSim_AddDevice("id=RG2 format=rgb8 size=32767x100"), 0);
    EXPECT_EQ(CanonSim_AddDevice("id=RG3 format=mono8"), -1);
    EXPECT_EQ(CanonSim_AddDevice("id=RG4 formats=rgb8,bgr8"), -1);
    EXPECT_EQ(CanonSim_AddDevice("id=RG5 size=32768x100"), -1);
    EXPECT_EQ(CanonSim_AddDevice("id=RG6 layer=gige"), -1);
    EXPECT_EQ(CanonSim_AddDevice(("id=" + std::string(256, 'x')).c_str()), -1);
    EXPECT_EQ(CanonSim_SetSerialNumber("RG1", std::string(256, 's').c_str()), -1);
}

}  // namespace
}  // namespace telvarra::test
