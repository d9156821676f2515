// The Canon EDSDK simulator: reference-counted objects (camera lists, cameras, streams, images,
// live-view images, directory items), sessions on bodies, the 4-byte properties and the Tv / Av /
// ISO lists, shutter commands that take stills announced as object events, live view as JPEG
// files of the test pattern, and events that wait for EdsGetEvent, over the simulator core. The
// exported vendor functions and the test control functions are thin shells over the one
// process-wide instance.
#ifndef TELVARRA_SIM_CANON_CANONSIMULATOR_H
#define TELVARRA_SIM_CANON_CANONSIMULATOR_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "sim/common/EventQueue.h"
#include "sim/common/FrameMemory.h"
#include "sim/common/SimulatorCore.h"
#include "vendor/canon/CanonSdk.h"

namespace telvarra::sim::canon {

namespace sdk = telvarra::vendor::canon;

// A still the body took: a JPEG file twice the live view's size each way.
struct Still {
    std::string fileName;  // "IMG_0001.JPG"
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> jpeg;
};

// What a body holds beyond the common model.
struct DeviceState {
    std::string serialNumber;
    // Tv, Av and ISO: the codes the body allows.
    std::map<sdk::EdsUInt32, std::vector<sdk::EdsInt32>> allowed;
    // The 4-byte properties: SaveTo, Tv, Av, ISO, Evf_OutputDevice, Evf_Mode.
    std::map<sdk::EdsUInt32, sdk::EdsUInt32> values;
    // The camera object whose session is open on the body: where its events go.
    const void* sessionCamera = nullptr;
    bool capacityKnown = false;  // the host said how much room it has for stills
    bool shutterPressed = false;
    std::uint32_t liveViewNotReady = 0;
    bool holdStills = false;
    std::vector<Still> heldStills;
    std::vector<std::string> commands;
    std::uint32_t stillsTaken = 0;
};

// Camera objects are the core's handles; their payload is in the object table.
struct HandleState {};

class CanonSimulator : public SimulatorCore<DeviceState, HandleState> {
  public:
    CanonSimulator();

    // ---- The vendor functions. ----
    sdk::EdsError initializeSdk();
    sdk::EdsError terminateSdk();
    sdk::EdsUInt32 retain(sdk::EdsBaseRef object);
    sdk::EdsUInt32 release(sdk::EdsBaseRef object);
    sdk::EdsError getChildCount(sdk::EdsBaseRef parent, sdk::EdsUInt32* count);
    sdk::EdsError getChildAtIndex(sdk::EdsBaseRef parent, sdk::EdsInt32 index,
                                  sdk::EdsBaseRef* child);
    sdk::EdsError getPropertySize(sdk::EdsBaseRef object, sdk::EdsUInt32 propertyId,
                                  sdk::EdsInt32 parameter, sdk::EdsInt32* dataType,
                                  sdk::EdsUInt32* size);
    sdk::EdsError getPropertyData(sdk::EdsBaseRef object, sdk::EdsUInt32 propertyId,
                                  sdk::EdsInt32 parameter, sdk::EdsUInt32 size, void* out);
    sdk::EdsError setPropertyData(sdk::EdsBaseRef object, sdk::EdsUInt32 propertyId,
                                  sdk::EdsInt32 parameter, sdk::EdsUInt32 size, const void* in);
    sdk::EdsError getPropertyDesc(sdk::EdsBaseRef object, sdk::EdsUInt32 propertyId,
                                  sdk::EdsPropertyDesc* out);
    sdk::EdsError getCameraList(sdk::EdsCameraListRef* list);
    sdk::EdsError getDeviceInfo(sdk::EdsCameraRef camera, sdk::EdsDeviceInfo* out);
    sdk::EdsError openSession(sdk::EdsCameraRef camera);
    sdk::EdsError closeSession(sdk::EdsCameraRef camera);
    sdk::EdsError sendCommand(sdk::EdsCameraRef camera, sdk::EdsUInt32 command,
                              sdk::EdsInt32 parameter);
    sdk::EdsError setCapacity(sdk::EdsCameraRef camera, sdk::EdsCapacity capacity);
    sdk::EdsError getDirectoryItemInfo(sdk::EdsDirectoryItemRef item,
                                       sdk::EdsDirectoryItemInfo* out);
    sdk::EdsError download(sdk::EdsDirectoryItemRef item, sdk::EdsUInt64 size,
                           sdk::EdsStreamRef stream);
    sdk::EdsError downloadCancel(sdk::EdsDirectoryItemRef item);
    sdk::EdsError downloadComplete(sdk::EdsDirectoryItemRef item);
    sdk::EdsError createFileStream(const sdk::EdsChar* path, sdk::EdsInt32 disposition,
                                   sdk::EdsInt32 access, sdk::EdsStreamRef* stream);
    sdk::EdsError createMemoryStream(sdk::EdsUInt64 initialSize, sdk::EdsStreamRef* stream);
    sdk::EdsError getPointer(sdk::EdsStreamRef stream, void** pointer);
    sdk::EdsError getLength(sdk::EdsStreamRef stream, sdk::EdsUInt64* length);
    sdk::EdsError createImageRef(sdk::EdsStreamRef stream, sdk::EdsImageRef* image);
    sdk::EdsError getImageInfo(sdk::EdsImageRef image, sdk::EdsInt32 source,
                               sdk::EdsImageInfo* out);
    sdk::EdsError createEvfImageRef(sdk::EdsStreamRef stream, sdk::EdsEvfImageRef* image);
    sdk::EdsError downloadEvfImage(sdk::EdsCameraRef camera, sdk::EdsEvfImageRef image);
    sdk::EdsError setPropertyEventHandler(sdk::EdsCameraRef camera, sdk::EdsUInt32 event,
                                          sdk::EdsPropertyEventHandler handler, void* context);
    sdk::EdsError setObjectEventHandler(sdk::EdsCameraRef camera, sdk::EdsUInt32 event,
                                        sdk::EdsObjectEventHandler handler, void* context);
    sdk::EdsError setCameraStateEventHandler(sdk::EdsCameraRef camera, sdk::EdsUInt32 event,
                                             sdk::EdsStateEventHandler handler, void* context);
    sdk::EdsError getEvent();
    // The exported names the library never calls.
    sdk::EdsError notSupported(const char* function);

    // ---- Canon's own test control (see CanonSimControl.h). ----
    bool setSerialNumber(const std::string& id, const std::string& serial);
    bool setPropertyDesc(const std::string& id, sdk::EdsUInt32 propertyId, const int* codes,
                         int count);
    bool setProperty(const std::string& id, sdk::EdsUInt32 propertyId, sdk::EdsUInt32 value);
    std::optional<sdk::EdsUInt32> property(const std::string& id, sdk::EdsUInt32 propertyId);
    std::optional<std::string> commands(const std::string& id);
    void clearCommands();
    bool setLiveViewNotReady(const std::string& id, std::uint32_t count);
    bool holdStills(const std::string& id, bool hold);
    std::size_t pendingEvents();

    // ---- The objects the SDK hands out. ----
    struct CameraList {
        std::vector<std::string> ids;  // the bodies plugged in when it was made
    };
    struct Camera {
        void* handle;  // the core's handle, which carries the session
    };
    struct Stream {
        std::string path;  // a file stream's file; empty for a memory stream
        std::vector<std::uint8_t> data;
        // The size of the picture the stream holds whole, once a still or a live-view image
        // landed in it.
        std::optional<std::pair<std::uint32_t, std::uint32_t>> picture;
    };
    struct EvfImage {
        const void* stream;
    };
    struct Image {
        std::uint32_t width;
        std::uint32_t height;
    };
    struct DirectoryItem {
        std::string deviceId;
        Still still;
        enum class Transfer { Waiting, Completed, Cancelled } transfer = Transfer::Waiting;
    };
    using Object = std::variant<CameraList, Camera, Stream, EvfImage, Image, DirectoryItem>;

    // What an event handler is told: the event, its number (a property id or state data) and,
    // for a new directory item, the still it stands for. Items are made at delivery, so an event
    // nobody receives leaves no object behind.
    struct Event {
        sdk::EdsUInt32 event;
        sdk::EdsUInt32 data;
        std::optional<Still> still;
        std::string deviceId;
    };

  private:
    std::optional<DeviceState> accept(DeviceDescription& description, std::string& error) override;
    void resetMake() override;
    std::size_t outstandingFrames() override;
    void powerLost(const std::string& id) override;

    template <class T>
    T* object(const void* reference);
    void* hand(Object object);
    // A call on a camera object whose session is alive; `body` takes the Device.
    template <class Body>
    sdk::EdsError onBody(const char* function, std::string arguments, sdk::EdsCameraRef camera,
                         Body&& body);
    template <class Handler, class Deliver>
    sdk::EdsError setHandler(const char* function, sdk::EdsCameraRef camera, sdk::EdsUInt32 event,
                             sdk::EdsUInt32 family, Handler handler, void* context,
                             Deliver&& deliver);

    // Ends the session `camera` holds on its body, if any, as a body forgets a host that left.
    void endBodySession(const void* camera, const void* token, Handle& handle);
    void forgetSession(DeviceState& state);
    void destroy(const void* reference, const Object& object);
    void post(const DeviceState& state, sdk::EdsUInt32 family, Event event);
    // The property's new value, with what the body does about it: live view to the host starts
    // or stops, and the session hears of the change.
    void writeProperty(Device& device, sdk::EdsUInt32 propertyId, sdk::EdsUInt32 value);
    void pressShutter(Device& device, sdk::EdsInt32 parameter);
    void takeStill(Device& device);
    void announce(Device& device, Still still);
    sdk::EdsError writeToStream(Stream& stream, const std::uint8_t* bytes, std::size_t count);

    RefCountedObjects<Object> m_objects;
    EventQueue<Event> m_events;
    // Objects still held when EdsTerminateSDK freed them: leaks, until a reset.
    std::size_t m_heldAtTermination = 0;
};

CanonSimulator& simulator();

}  // namespace telvarra::sim::canon

#endif
