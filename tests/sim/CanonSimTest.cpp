// Where the Canon simulator must be as strict as the SDK, so that the driver cannot come to rely
// on leniency: reference counts and what EdsTerminateSDK counts as leaked, events that wait for
// EdsGetEvent, property and session refusals, stills and live view for the host only. The
// still's download and decoding are seen through the library in the Canon camera tests.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "sim/canon/CanonExports.h"
#include "sim/canon/CanonSimControl.h"

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
    EdsCameraListRef list = nullptr;
    EXPECT_NE(EdsGetCameraList(&list), EDS_ERR_OK);  // not started
}

TEST_F(CanonSimTest, SessionsAreOnePerBodyAndPropertiesNeedOne) {
    addDevice("id=SE1 size=64x48");
    EdsCameraRef first = camera(0);
    EdsCameraRef again = camera(0);
    EdsUInt32 value = 0;
    EXPECT_EQ(EdsGetPropertyData(first, kEdsPropID_Tv, 0, 4, &value), EDS_ERR_SESSION_NOT_OPEN);

    ASSERT_EQ(EdsOpenSession(first), EDS_ERR_OK);
    EXPECT_EQ(EdsOpenSession(first), EDS_ERR_SESSION_ALREADY_OPEN);
    EXPECT_EQ(EdsOpenSession(again), EDS_ERR_COMM_PORT_IS_IN_USE);
    EXPECT_EQ(EdsRelease(first), 0u);  // ends its session
    ASSERT_EQ(EdsOpenSession(again), EDS_ERR_OK);
    EXPECT_EQ(EdsCloseSession(again), EDS_ERR_OK);
    EXPECT_EQ(EdsCloseSession(again), EDS_ERR_SESSION_NOT_OPEN);
}

TEST_F(CanonSimTest, PropertiesRefuseShortBuffersWrongSizesReadOnlyIdsAndUnknownCodes) {
    addDevice("id=PR1 size=64x48");
    ASSERT_EQ(CanonSim_SetSerialNumber("PR1", "083021001234"), 0);
    EdsCameraRef body = session();
    char serial[256] = {};
    EXPECT_EQ(EdsGetPropertyData(body, kEdsPropID_BodyIDEx, 0, 12, serial),
              EDS_ERR_INVALID_LENGTH);  // no room for the terminator
    EXPECT_EQ(EdsSetPropertyData(body, kEdsPropID_BodyIDEx, 0, 4, serial),
              EDS_ERR_PROTECTION_VIOLATION);
    EXPECT_EQ(setUInt32(body, kEdsPropID_Tv, 0x61), EDS_ERR_INVALID_DEVICEPROP_VALUE);
    EXPECT_EQ(setUInt32(body, kEdsPropID_SaveTo, 4), EDS_ERR_INVALID_DEVICEPROP_VALUE);
    const std::uint64_t wide = 0x73;
    EXPECT_EQ(EdsSetPropertyData(body, kEdsPropID_Tv, 0, sizeof wide, &wide),
              EDS_ERR_INVALID_LENGTH);
    unsigned current = 0;
    ASSERT_EQ(CanonSim_GetProperty("PR1", kEdsPropID_Tv, &current), 0);
    EXPECT_NE(current, 0x73u);
    EXPECT_EQ(EdsRelease(body), 0u);
}

TEST_F(CanonSimTest, EventsWaitForEdsGetEventAndReachOnlyTheirHandlers) {
    addDevice("id=EV1 size=64x48");
    EdsCameraRef body = session();
    Heard heard;
    listen(body, heard);
    ASSERT_EQ(CanonSim_SetProperty("EV1", kEdsPropID_Av, 0x28), 0);
    EXPECT_EQ(CanonSim_PendingEvents(), 1u);
    EXPECT_TRUE(heard.events.empty());
    ASSERT_EQ(EdsGetEvent(), EDS_ERR_OK);
    EXPECT_EQ(heard.events, std::vector<std::string>{"property 257 1029"});

    EXPECT_EQ(EdsSetPropertyEventHandler(body, kEdsStateEvent_All, Heard::property, &heard),
              EDS_ERR_INVALID_PARAMETER);
    EXPECT_EQ(EdsRelease(body), 0u);
}

TEST_F(CanonSimTest, AFullPressAndReleaseTakesAStillAnnouncedForTheHostOnly) {
    addDevice("id=SH1 size=40x30");
    EdsCameraRef body = session();
    Heard heard;
    listen(body, heard);
    // Kept on the card: nothing for the host.
    takeStill(body);
    ASSERT_EQ(setUInt32(body, kEdsPropID_SaveTo, kEdsSaveTo_Host), EDS_ERR_OK);
    // Without the host's capacity the body cannot take it.
    takeStill(body);
    ASSERT_EQ(EdsSetCapacity(body, {0x7FFFFFFF, 0x1000, 1}), EDS_ERR_OK);
    EXPECT_EQ(EdsSendCommand(body, 4, 2), EDS_ERR_INVALID_PARAMETER);
    takeStill(body);
    ASSERT_EQ(EdsGetEvent(), EDS_ERR_OK);
    EXPECT_EQ(heard.events, (std::vector<std::string>{"property 257 11", "state 773", "object 520"}));

    ASSERT_EQ(heard.items.size(), 1u);
    EdsDirectoryItemRef item = heard.items[0];
    EdsDirectoryItemInfo info{};
    ASSERT_EQ(EdsGetDirectoryItemInfo(item, &info), EDS_ERR_OK);
    EdsStreamRef stream = nullptr;
    ASSERT_EQ(EdsCreateMemoryStream(0, &stream), EDS_ERR_OK);
    EXPECT_EQ(EdsDownload(item, info.size + 1, stream), EDS_ERR_INVALID_LENGTH);
    ASSERT_EQ(EdsDownload(item, info.size, stream), EDS_ERR_OK);
    ASSERT_EQ(EdsDownloadComplete(item), EDS_ERR_OK);
    EXPECT_EQ(EdsDownload(item, info.size, stream), EDS_ERR_INVALID_HANDLE);
    for (EdsBaseRef object : {stream, item}) EXPECT_EQ(EdsRelease(object), 0u);
    EXPECT_EQ(EdsRelease(body), 0u);
    EXPECT_EQ(CanonSim_OutstandingBuffers(), 0u);
}

TEST_F(CanonSimTest, LiveViewComesOnlyToAHostThatAskedAndAfterAMoment) {
    addDevice("id=LV1 size=64x48");
    EdsCameraRef body = session();
    EdsStreamRef stream = nullptr;
    EdsEvfImageRef evf = nullptr;
    ASSERT_EQ(EdsCreateMemoryStream(0, &stream), EDS_ERR_OK);
    ASSERT_EQ(EdsCreateEvfImageRef(stream, &evf), EDS_ERR_OK);
    EXPECT_EQ(EdsDownloadEvfImage(body, evf), EDS_ERR_OBJECT_NOTREADY);  // to the body's screen
    ASSERT_EQ(setUInt32(body, kEdsPropID_Evf_OutputDevice,
                        kEdsEvfOutputDevice_TFT | kEdsEvfOutputDevice_PC),
              EDS_ERR_OK);
    EXPECT_EQ(EdsDownloadEvfImage(body, evf), EDS_ERR_OBJECT_NOTREADY);  // not yet
    ASSERT_EQ(EdsDownloadEvfImage(body, evf), EDS_ERR_OK);
    for (EdsBaseRef object : {evf, stream, body}) EXPECT_EQ(EdsRelease(object), 0u);
}

}  // namespace
}  // namespace telvarra::test
