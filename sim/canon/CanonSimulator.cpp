#include "sim/canon/CanonSimulator.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "sim/common/JpegEncoder.h"
#include "sim/common/RecordFields.h"
#include "sim/common/TestPattern.h"

namespace telvarra::sim::canon {

using namespace telvarra::vendor::canon;

namespace {

constexpr const char* kDefaultModel = "EOS-SIM";
// The body's serial number and description are 256-byte texts with their terminator.
constexpr std::size_t kTextLimit = EDS_MAX_NAME - 1;
// Stills are twice the live view's size each way, and JPEG sides stop at 65535.
constexpr std::uint32_t kMaxLiveViewSide = 32767;
constexpr int kJpegQuality = 95;
// More than a host asks for up front is no memory stream of a camera.
constexpr EdsUInt64 kMaxInitialStream = EdsUInt64{256} << 20;
// Answered by EdsRetain and EdsRelease for what is no object.
constexpr EdsUInt32 kNoObject = 0xFFFFFFFF;
// Object references, apart from the core's handles.
constexpr std::uintptr_t kObjectBase = 0x7E000000;
constexpr std::uintptr_t kObjectStep = 0x10;

constexpr EdsUInt32 kExposureProperties[] = {kEdsPropID_Tv, kEdsPropID_Av, kEdsPropID_ISOSpeed};
constexpr EdsUInt32 kFourByteProperties[] = {kEdsPropID_SaveTo,          kEdsPropID_Tv,
                                             kEdsPropID_Av,              kEdsPropID_ISOSpeed,
                                             kEdsPropID_Evf_OutputDevice, kEdsPropID_Evf_Mode};
constexpr EdsUInt32 kAllOutputDevices = 0xF;

bool isExposureProperty(EdsUInt32 id) {
    return std::find(std::begin(kExposureProperties), std::end(kExposureProperties), id) !=
           std::end(kExposureProperties);
}
bool isFourByteProperty(EdsUInt32 id) {
    return std::find(std::begin(kFourByteProperties), std::end(kFourByteProperties), id) !=
           std::end(kFourByteProperties);
}

// Exposure codes a third of a stop apart: the steps go 3, 2, 3 in turn.
std::vector<EdsInt32> thirdStops(EdsInt32 first, EdsInt32 last) {
    static constexpr EdsInt32 kSteps[] = {3, 2, 3};
    std::vector<EdsInt32> codes;
    for (EdsInt32 code = first, step = 0; code <= last; code += kSteps[step++ % 3])
        codes.push_back(code);
    return codes;
}

DeviceState powerUpState(const DeviceDescription& description) {
    DeviceState state;
    state.serialNumber = description.id;
    state.allowed[kEdsPropID_Tv] = thirdStops(0x10, 0xA0);
    state.allowed[kEdsPropID_Av] = thirdStops(0x08, 0x3B);
    std::vector<EdsInt32> iso = thirdStops(0x48, 0x68);
    iso.insert(iso.begin(), 0x00);  // auto
    state.allowed[kEdsPropID_ISOSpeed] = iso;
    state.values = {{kEdsPropID_SaveTo, kEdsSaveTo_Camera}, {kEdsPropID_Tv, 0x60},
                    {kEdsPropID_Av, 0x20},                  {kEdsPropID_ISOSpeed, 0x48},
                    {kEdsPropID_Evf_OutputDevice, kEdsEvfOutputDevice_TFT},
                    {kEdsPropID_Evf_Mode, 1}};
    return state;
}

bool valueAllowed(const DeviceState& state, EdsUInt32 propertyId, EdsUInt32 value) {
    if (isExposureProperty(propertyId)) {
        const std::vector<EdsInt32>& codes = state.allowed.at(propertyId);
        return std::find(codes.begin(), codes.end(), static_cast<EdsInt32>(value)) != codes.end();
    }
    switch (propertyId) {
        case kEdsPropID_SaveTo:
            return value >= kEdsSaveTo_Camera && value <= kEdsSaveTo_Both;
        case kEdsPropID_Evf_Mode:
            return value <= 1;
        default:  // Evf_OutputDevice: any of its four flags
            return value <= kAllOutputDevices;
    }
}

std::string textProperty(const DeviceState& state, const DeviceDescription& description,
                         EdsUInt32 propertyId) {
    return propertyId == kEdsPropID_BodyIDEx ? state.serialNumber : description.model;
}
bool isTextProperty(EdsUInt32 id) { return id == kEdsPropID_BodyIDEx || id == kEdsPropID_ProductName; }

bool liveViewToHost(const DeviceState& state) {
    return (state.values.at(kEdsPropID_Evf_OutputDevice) & kEdsEvfOutputDevice_PC) != 0 &&
           state.values.at(kEdsPropID_Evf_Mode) == 1;
}

std::vector<std::uint8_t> pictureJpeg(const PictureCamera& camera, std::uint32_t frame) {
    std::vector<std::uint8_t> pixels(frameBytes(PixelFormat::Rgb8, camera.width, camera.height));
    renderFrame(camera, PixelFormat::Rgb8, frame, camera.width, camera.height, pixels.data());
    return encodeJpeg(PixelFormat::Rgb8, pixels.data(), camera.width, camera.height,
                      kJpegQuality);
}

}  // namespace

CanonSimulator& simulator() { return residentSimulator<CanonSimulator>(); }

CanonSimulator::CanonSimulator()
    : SimulatorCore({"canon", "Canon simulator", static_cast<int>(EDS_ERR_INTERNAL_ERROR)}),
      m_objects(kObjectBase, kObjectStep) {}

// ---- The make's part of the core. ----

std::optional<DeviceState> CanonSimulator::accept(DeviceDescription& description,
                                                  std::string& error) {
    if (description.layer.empty()) description.layer = "usb";
    if (description.model.empty()) description.model = kDefaultModel;
    if (description.layer != "usb") {
        error = "unknown layer (usb): " + description.layer;
        return std::nullopt;
    }
    const std::vector<PixelFormat> colourOnly{PixelFormat::Rgb8};
    if (description.format != PixelFormat::Rgb8 ||
        (!description.supportedFormats.empty() && description.supportedFormats != colourOnly)) {
        error = "Canon bodies deliver rgb8 only";
        return std::nullopt;
    }
    description.supportedFormats = colourOnly;
    if (description.id.size() > kTextLimit || description.model.size() > kTextLimit) {
        error = "id or model longer than 255 bytes";
        return std::nullopt;
    }
    if (description.width > kMaxLiveViewSide || description.height > kMaxLiveViewSide) {
        error = "live view wider or higher than 32767: its stills would not fit a JPEG file";
        return std::nullopt;
    }
    return powerUpState(description);
}

void CanonSimulator::resetMake() {
    m_objects.clear();
    m_events.clear();
    m_heldAtTermination = 0;
}

std::size_t CanonSimulator::outstandingFrames() {
    return m_objects.outstanding() + m_heldAtTermination;
}

// The session ended with the power: its handlers hear that the body shut down.
void CanonSimulator::powerLost(const std::string& id) {
    Device* device = findDevice(id);
    if (!device || !device->state.sessionCamera) return;
    post(device->state, kEdsStateEvent_All, Event{kEdsStateEvent_Shutdown, 0, {}, id});
    forgetSession(device->state);
}

// ---- Objects. ----

template <class T>
T* CanonSimulator::object(const void* reference) {
    Object* found = m_objects.find(reference);
    return found ? std::get_if<T>(found) : nullptr;
}

void* CanonSimulator::hand(Object object) { return m_objects.create(std::move(object)); }

void CanonSimulator::destroy(const void* reference, const Object& object) {
    const Camera* camera = std::get_if<Camera>(&object);
    if (!camera) return;
    if (Handle* handle = findHandle(camera->handle); handle && handle->open)
        endBodySession(reference, camera->handle, *handle);
    removeHandle(camera->handle);
    m_events.forget(reference);
}

EdsUInt32 CanonSimulator::retain(EdsBaseRef reference) {
    return callAnyTime("EdsRetain", {}, [&] {
        return m_objects.retain(reference).value_or(kNoObject);
    });
}

EdsUInt32 CanonSimulator::release(EdsBaseRef reference) {
    return callAnyTime("EdsRelease", {}, [&] {
        const Object* found = m_objects.find(reference);
        if (!found) return kNoObject;
        const Object kept = *found;
        const EdsUInt32 left = *m_objects.release(reference);
        if (left == 0) destroy(reference, kept);
        return left;
    });
}

// ---- The SDK's start and stop. ----

EdsError CanonSimulator::initializeSdk() {
    return callAnyTime("EdsInitializeSDK", {}, [&] {
        setStarted(true);
        return EDS_ERR_OK;
    });
}

// Frees every object; those still held were leaked by the host.
EdsError CanonSimulator::terminateSdk() {
    return call("EdsTerminateSDK", {}, [&] {
        m_heldAtTermination += m_objects.outstanding();
        for (const Device& device : devices()) forgetSession(findDevice(device.model.id())->state);
        removeAllHandles();
        m_objects.clear();
        m_events.clear();
        setStarted(false);
        return EDS_ERR_OK;
    });
}

// ---- Bodies and sessions. ----

EdsError CanonSimulator::getCameraList(EdsCameraListRef* list) {
    return call("EdsGetCameraList", {}, [&] {
        if (!list) return EDS_ERR_INVALID_POINTER;
        CameraList bodies;
        for (const Device& device : devices())
            if (device.model.plugged()) bodies.ids.push_back(device.model.id());
        *list = static_cast<EdsCameraListRef>(hand(std::move(bodies)));
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::getChildCount(EdsBaseRef parent, EdsUInt32* count) {
    return call("EdsGetChildCount", {}, [&] {
        if (!count) return EDS_ERR_INVALID_POINTER;
        // Only camera lists have children here: bodies' volumes are not simulated.
        const CameraList* list = object<CameraList>(parent);
        if (!list) return EDS_ERR_INVALID_HANDLE;
        *count = static_cast<EdsUInt32>(list->ids.size());
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::getChildAtIndex(EdsBaseRef parent, EdsInt32 index, EdsBaseRef* child) {
    return call("EdsGetChildAtIndex", callArguments(index), [&] {
        if (!child) return EDS_ERR_INVALID_POINTER;
        const CameraList* list = object<CameraList>(parent);
        if (!list) return EDS_ERR_INVALID_HANDLE;
        if (index < 0 || static_cast<std::size_t>(index) >= list->ids.size())
            return EDS_ERR_INVALID_INDEX;
        const Device* device = findDevice(list->ids[static_cast<std::size_t>(index)]);
        if (!device) return EDS_ERR_DEVICE_NOT_FOUND;  // removed since the list was made
        *child = static_cast<EdsBaseRef>(hand(Camera{addHandle(*device, {})}));
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::getDeviceInfo(EdsCameraRef camera, EdsDeviceInfo* out) {
    return call("EdsGetDeviceInfo", {}, [&] {
        if (!out) return EDS_ERR_INVALID_POINTER;
        const Camera* body = object<Camera>(camera);
        if (!body) return EDS_ERR_INVALID_HANDLE;
        const Handle* handle = findHandle(body->handle);
        const Device* device = handle ? findDevice(handle->deviceId) : nullptr;
        if (!device || !device->model.plugged()) return EDS_ERR_COMM_DISCONNECTED;
        const auto position = std::find_if(devices().begin(), devices().end(),
                                           [&](const Device& each) { return &each == device; });
        char port[32];
        std::snprintf(port, sizeof port, "usb:001,%03d",
                      static_cast<int>(position - devices().begin()) + 1);
        *out = EdsDeviceInfo{};
        writeField(out->szPortName, port);
        writeField(out->szDeviceDescription, device->model.description().model);
        out->deviceSubType = 1;
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::openSession(EdsCameraRef camera) {
    return call("EdsOpenSession", {}, [&] {
        const Camera* body = object<Camera>(camera);
        if (!body) return EDS_ERR_INVALID_HANDLE;
        const SessionView view = session(body->handle);
        if (view.state == Session::Live) return EDS_ERR_SESSION_ALREADY_OPEN;
        if (view.state == Session::Lost) return EDS_ERR_COMM_DISCONNECTED;
        switch (SimulatorCore::openSession(body->handle, *view.handle)) {
            case Opening::DeviceGone:
                return EDS_ERR_COMM_DISCONNECTED;
            case Opening::Taken:
                return EDS_ERR_COMM_PORT_IS_IN_USE;
            case Opening::Opened:
                break;
        }
        DeviceState& state = findDevice(view.handle->deviceId)->state;
        forgetSession(state);
        state.sessionCamera = camera;
        state.commands.clear();
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::closeSession(EdsCameraRef camera) {
    return call("EdsCloseSession", {}, [&] {
        const Camera* body = object<Camera>(camera);
        if (!body) return EDS_ERR_INVALID_HANDLE;
        Handle* handle = findHandle(body->handle);
        if (!handle || !handle->open) return EDS_ERR_SESSION_NOT_OPEN;
        // Also when the body already ended it (unplugged).
        endBodySession(camera, body->handle, *handle);
        return EDS_ERR_OK;
    });
}

void CanonSimulator::endBodySession(const void* camera, const void* token, Handle& handle) {
    if (Device* device = findDevice(handle.deviceId);
        device && device->state.sessionCamera == camera)
        forgetSession(device->state);
    endSession(token, handle);
}

// What a body keeps only for its host: live view to it, a half-taken shot, held stills.
void CanonSimulator::forgetSession(DeviceState& state) {
    state.sessionCamera = nullptr;
    state.values[kEdsPropID_Evf_OutputDevice] &= ~kEdsEvfOutputDevice_PC;
    state.capacityKnown = false;
    state.shutterPressed = false;
    state.liveViewNotReady = 0;
    state.heldStills.clear();
}

template <class Body>
EdsError CanonSimulator::onBody(const char* function, std::string arguments, EdsCameraRef camera,
                                Body&& body) {
    return call(function, std::move(arguments), [&]() -> EdsError {
        const Camera* object = this->object<Camera>(camera);
        if (!object) return EDS_ERR_INVALID_HANDLE;
        const SessionView view = session(object->handle);
        switch (view.state) {
            case Session::Live:
                return body(*view.device);
            case Session::Lost:
                return EDS_ERR_COMM_DISCONNECTED;
            default:
                return EDS_ERR_SESSION_NOT_OPEN;
        }
    });
}

// ---- Properties. ----

EdsError CanonSimulator::getPropertySize(EdsBaseRef object, EdsUInt32 propertyId,
                                         EdsInt32 parameter, EdsInt32* dataType, EdsUInt32* size) {
    return onBody("EdsGetPropertySize", callArguments(propertyId, parameter), object,
                  [&](Device& device) {
                      if (!dataType || !size) return EDS_ERR_INVALID_POINTER;
                      if (isTextProperty(propertyId)) {
                          *dataType = kEdsDataType_String;
                          *size = static_cast<EdsUInt32>(
                              textProperty(device.state, device.model.description(), propertyId)
                                  .size() +
                              1);
                          return EDS_ERR_OK;
                      }
                      if (!isFourByteProperty(propertyId)) return EDS_ERR_PROPERTIES_UNAVAILABLE;
                      *dataType = kEdsDataType_UInt32;
                      *size = sizeof(EdsUInt32);
                      return EDS_ERR_OK;
                  });
}

EdsError CanonSimulator::getPropertyData(EdsBaseRef object, EdsUInt32 propertyId,
                                         EdsInt32 parameter, EdsUInt32 size, void* out) {
    return onBody(
        "EdsGetPropertyData", callArguments(propertyId, parameter, size), object,
        [&](Device& device) {
            if (!out) return EDS_ERR_INVALID_POINTER;
            if (isTextProperty(propertyId)) {
                const std::string text =
                    textProperty(device.state, device.model.description(), propertyId);
                if (size < text.size() + 1) return EDS_ERR_INVALID_LENGTH;
                std::memcpy(out, text.c_str(), text.size() + 1);
                return EDS_ERR_OK;
            }
            if (!isFourByteProperty(propertyId)) return EDS_ERR_PROPERTIES_UNAVAILABLE;
            if (size < sizeof(EdsUInt32)) return EDS_ERR_INVALID_LENGTH;
            const EdsUInt32 value = device.state.values.at(propertyId);
            std::memcpy(out, &value, sizeof value);
            return EDS_ERR_OK;
        });
}

EdsError CanonSimulator::setPropertyData(EdsBaseRef object, EdsUInt32 propertyId,
                                         EdsInt32 parameter, EdsUInt32 size, const void* in) {
    EdsUInt32 value = 0;
    if (in && size == sizeof value) std::memcpy(&value, in, sizeof value);
    std::string arguments = size == sizeof value && in
                                ? callArguments(propertyId, parameter, size, value)
                                : callArguments(propertyId, parameter, size);
    return onBody("EdsSetPropertyData", std::move(arguments), object, [&](Device& device) {
        if (!in) return EDS_ERR_INVALID_POINTER;
        if (isTextProperty(propertyId)) return EDS_ERR_PROTECTION_VIOLATION;
        if (!isFourByteProperty(propertyId)) return EDS_ERR_PROPERTIES_UNAVAILABLE;
        if (size != sizeof value) return EDS_ERR_INVALID_LENGTH;
        if (!valueAllowed(device.state, propertyId, value)) return EDS_ERR_INVALID_DEVICEPROP_VALUE;
        writeProperty(device, propertyId, value);
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::getPropertyDesc(EdsBaseRef object, EdsUInt32 propertyId,
                                         EdsPropertyDesc* out) {
    return onBody("EdsGetPropertyDesc", callArguments(propertyId), object, [&](Device& device) {
        if (!out) return EDS_ERR_INVALID_POINTER;
        if (!isFourByteProperty(propertyId) && !isTextProperty(propertyId))
            return EDS_ERR_PROPERTIES_UNAVAILABLE;
        *out = EdsPropertyDesc{};
        if (!isExposureProperty(propertyId)) return EDS_ERR_OK;  // no list of choices
        const std::vector<EdsInt32>& codes = device.state.allowed.at(propertyId);
        out->numElements = static_cast<EdsInt32>(codes.size());
        std::copy(codes.begin(), codes.end(), out->propDesc);
        return EDS_ERR_OK;
    });
}

void CanonSimulator::writeProperty(Device& device, EdsUInt32 propertyId, EdsUInt32 value) {
    DeviceState& state = device.state;
    EdsUInt32& current = state.values[propertyId];
    if (current == value) return;
    const bool wasLive = liveViewToHost(state);
    current = value;
    const bool live = liveViewToHost(state);
    device.model.setGrabbing(live);
    // A body's live view takes a moment to come.
    if (live && !wasLive && state.liveViewNotReady == 0) state.liveViewNotReady = 1;
    post(state, kEdsPropertyEvent_All,
         Event{kEdsPropertyEvent_PropertyChanged, propertyId, {}, device.model.id()});
}

// ---- Events. ----

void CanonSimulator::post(const DeviceState& state, EdsUInt32 family, Event event) {
    if (state.sessionCamera) m_events.post(state.sessionCamera, family, std::move(event));
}

// One handler per camera and family of events; registered for the family's All, it hears every
// event of the family, otherwise only the one it names. A null handler stops the events.
template <class Handler, class Deliver>
EdsError CanonSimulator::setHandler(const char* function, EdsCameraRef camera, EdsUInt32 event,
                                    EdsUInt32 family, Handler handler, void* context,
                                    Deliver&& deliver) {
    return call(function, callArguments(event), [&] {
        if (!object<Camera>(camera)) return EDS_ERR_INVALID_HANDLE;
        if (event < family || event > family + 0xFF) return EDS_ERR_INVALID_PARAMETER;
        if (!handler) {
            m_events.setHandler(camera, family, {}, nullptr);
            return EDS_ERR_OK;
        }
        m_events.setHandler(
            camera, family,
            [event, family, handler, deliver](const Event& posted, void* userContext) {
                if (event == family || event == posted.event) deliver(handler, posted, userContext);
            },
            context);
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::setPropertyEventHandler(EdsCameraRef camera, EdsUInt32 event,
                                                 EdsPropertyEventHandler handler, void* context) {
    return setHandler("EdsSetPropertyEventHandler", camera, event, kEdsPropertyEvent_All, handler,
                      context,
                      [](EdsPropertyEventHandler call, const Event& posted, void* userContext) {
                          call(posted.event, posted.data, 0, userContext);
                      });
}

EdsError CanonSimulator::setObjectEventHandler(EdsCameraRef camera, EdsUInt32 event,
                                               EdsObjectEventHandler handler, void* context) {
    return setHandler(
        "EdsSetObjectEventHandler", camera, event, kEdsObjectEvent_All, handler, context,
        [this](EdsObjectEventHandler call, const Event& posted, void* userContext) {
            // The handler owns the item it is given.
            void* item = hand(DirectoryItem{posted.deviceId, *posted.still});
            call(posted.event, static_cast<EdsBaseRef>(item), userContext);
        });
}

EdsError CanonSimulator::setCameraStateEventHandler(EdsCameraRef camera, EdsUInt32 event,
                                                    EdsStateEventHandler handler, void* context) {
    return setHandler("EdsSetCameraStateEventHandler", camera, event, kEdsStateEvent_All, handler,
                      context,
                      [](EdsStateEventHandler call, const Event& posted, void* userContext) {
                          call(posted.event, posted.data, userContext);
                      });
}

EdsError CanonSimulator::getEvent() {
    return call("EdsGetEvent", {}, [&] {
        m_events.pump();
        return EDS_ERR_OK;
    });
}

// ---- Commands and stills. ----

EdsError CanonSimulator::sendCommand(EdsCameraRef camera, EdsUInt32 command, EdsInt32 parameter) {
    return onBody("EdsSendCommand", callArguments(command, parameter), camera,
                  [&](Device& device) {
                      if (command == kEdsCameraCommand_PressShutterButton) {
                          switch (parameter) {
                              case kEdsCameraCommand_ShutterButton_OFF:
                              case kEdsCameraCommand_ShutterButton_Halfway:
                              case kEdsCameraCommand_ShutterButton_Completely:
                              case kEdsCameraCommand_ShutterButton_Halfway_NonAF:
                              case kEdsCameraCommand_ShutterButton_Completely_NonAF:
                                  break;
                              default:
                                  return EDS_ERR_INVALID_PARAMETER;
                          }
                      }
                      device.state.commands.push_back(std::to_string(command) + ":" +
                                                      std::to_string(parameter));
                      if (command == kEdsCameraCommand_PressShutterButton)
                          pressShutter(device, parameter);
                      else if (command == kEdsCameraCommand_TakePicture)
                          takeStill(device);
                      return EDS_ERR_OK;
                  });
}

// A full press takes the picture when the button comes up again.
void CanonSimulator::pressShutter(Device& device, EdsInt32 parameter) {
    DeviceState& state = device.state;
    if (parameter == kEdsCameraCommand_ShutterButton_Completely ||
        parameter == kEdsCameraCommand_ShutterButton_Completely_NonAF) {
        state.shutterPressed = true;
    } else if (parameter == kEdsCameraCommand_ShutterButton_OFF && state.shutterPressed) {
        state.shutterPressed = false;
        takeStill(device);
    }
}

void CanonSimulator::takeStill(Device& device) {
    DeviceState& state = device.state;
    const DeviceFrame frame = device.model.nextFrameHeader();
    const EdsUInt32 saveTo = state.values.at(kEdsPropID_SaveTo);
    // A host that never said how much room it has gets no still.
    if (saveTo != kEdsSaveTo_Camera && !state.capacityKnown) {
        post(state, kEdsStateEvent_All,
             Event{kEdsStateEvent_CaptureError, 0, {}, device.model.id()});
        return;
    }
    const std::uint32_t fileNumber = ++state.stillsTaken % 10000;
    if (saveTo == kEdsSaveTo_Camera) return;  // on the card: nothing for the host
    PictureCamera picture = device.model.picture();
    picture.width *= 2;
    picture.height *= 2;
    char name[16];
    std::snprintf(name, sizeof name, "IMG_%04u.JPG", fileNumber);
    Still still{name, picture.width, picture.height, pictureJpeg(picture, frame.number)};
    if (state.holdStills)
        state.heldStills.push_back(std::move(still));
    else
        announce(device, std::move(still));
}

void CanonSimulator::announce(Device& device, Still still) {
    post(device.state, kEdsObjectEvent_All,
         Event{kEdsObjectEvent_DirItemRequestTransfer, 0, std::move(still), device.model.id()});
}

EdsError CanonSimulator::setCapacity(EdsCameraRef camera, EdsCapacity capacity) {
    return onBody("EdsSetCapacity",
                  callArguments(capacity.numberOfFreeClusters, capacity.bytesPerSector,
                                capacity.reset),
                  camera, [&](Device& device) {
                      if (capacity.numberOfFreeClusters < 0 || capacity.bytesPerSector <= 0)
                          return EDS_ERR_INVALID_PARAMETER;
                      device.state.capacityKnown = capacity.numberOfFreeClusters > 0;
                      return EDS_ERR_OK;
                  });
}

// ---- Directory items. ----

EdsError CanonSimulator::getDirectoryItemInfo(EdsDirectoryItemRef item,
                                              EdsDirectoryItemInfo* out) {
    return call("EdsGetDirectoryItemInfo", {}, [&] {
        const DirectoryItem* file = object<DirectoryItem>(item);
        if (!file) return EDS_ERR_INVALID_HANDLE;
        if (!out) return EDS_ERR_INVALID_POINTER;
        *out = EdsDirectoryItemInfo{};
        out->size = file->still.jpeg.size();
        writeField(out->szFileName, file->still.fileName);
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::download(EdsDirectoryItemRef item, EdsUInt64 size, EdsStreamRef stream) {
    return call("EdsDownload", callArguments(size), [&] {
        DirectoryItem* file = object<DirectoryItem>(item);
        Stream* target = object<Stream>(stream);
        if (!file || !target) return EDS_ERR_INVALID_HANDLE;
        const Device* device = findDevice(file->deviceId);
        if (!device || !device->model.plugged()) return EDS_ERR_COMM_DISCONNECTED;
        if (file->transfer != DirectoryItem::Transfer::Waiting) return EDS_ERR_INVALID_HANDLE;
        const std::vector<std::uint8_t>& jpeg = file->still.jpeg;
        if (size > jpeg.size()) return EDS_ERR_INVALID_LENGTH;
        const EdsError written = writeToStream(*target, jpeg.data(), static_cast<std::size_t>(size));
        if (written == EDS_ERR_OK && target->data.size() == jpeg.size())
            target->picture = {{file->still.width, file->still.height}};
        return written;
    });
}

EdsError CanonSimulator::downloadComplete(EdsDirectoryItemRef item) {
    return call("EdsDownloadComplete", {}, [&] {
        DirectoryItem* file = object<DirectoryItem>(item);
        if (!file || file->transfer != DirectoryItem::Transfer::Waiting)
            return EDS_ERR_INVALID_HANDLE;
        file->transfer = DirectoryItem::Transfer::Completed;
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::downloadCancel(EdsDirectoryItemRef item) {
    return call("EdsDownloadCancel", {}, [&] {
        DirectoryItem* file = object<DirectoryItem>(item);
        if (!file || file->transfer != DirectoryItem::Transfer::Waiting)
            return EDS_ERR_INVALID_HANDLE;
        file->transfer = DirectoryItem::Transfer::Cancelled;
        return EDS_ERR_OK;
    });
}

// ---- Streams and images. ----

// A file stream's bytes go to its file as they come, as the SDK writes them.
EdsError CanonSimulator::writeToStream(Stream& stream, const std::uint8_t* bytes,
                                       std::size_t count) {
    if (!stream.path.empty()) {
        std::ofstream file(stream.path, std::ios::binary | std::ios::app);
        if (!file.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(count)))
            return EDS_ERR_FILE_WRITE_ERROR;
    }
    stream.data.insert(stream.data.end(), bytes, bytes + count);
    return EDS_ERR_OK;
}

EdsError CanonSimulator::createFileStream(const EdsChar* path, EdsInt32 disposition,
                                          EdsInt32 access, EdsStreamRef* stream) {
    return call("EdsCreateFileStream", callArguments(path, disposition, access), [&] {
        if (!path || !stream) return EDS_ERR_INVALID_POINTER;
        // The host's new file, written to: what a download needs. Opening existing files for
        // reading is not simulated.
        if (disposition != kEdsFileCreateDisposition_CreateAlways) return EDS_ERR_NOT_SUPPORTED;
        if (access != kEdsAccess_Write && access != kEdsAccess_ReadWrite)
            return EDS_ERR_INVALID_PARAMETER;
        if (!*path || !std::ofstream(path, std::ios::binary | std::ios::trunc))
            return EDS_ERR_FILE_OPEN_ERROR;
        *stream = static_cast<EdsStreamRef>(hand(Stream{path, {}, {}}));
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::createMemoryStream(EdsUInt64 initialSize, EdsStreamRef* stream) {
    return call("EdsCreateMemoryStream", callArguments(initialSize), [&] {
        if (!stream) return EDS_ERR_INVALID_POINTER;
        if (initialSize > kMaxInitialStream) return EDS_ERR_MEM_ALLOC_FAILED;
        Stream memory;
        memory.data.reserve(static_cast<std::size_t>(initialSize));
        *stream = static_cast<EdsStreamRef>(hand(std::move(memory)));
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::getPointer(EdsStreamRef stream, void** pointer) {
    return call("EdsGetPointer", {}, [&] {
        Stream* memory = object<Stream>(stream);
        if (!memory) return EDS_ERR_INVALID_HANDLE;
        if (!pointer) return EDS_ERR_INVALID_POINTER;
        if (!memory->path.empty()) return EDS_ERR_NOT_SUPPORTED;  // a file has no address
        *pointer = memory->data.data();
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::getLength(EdsStreamRef stream, EdsUInt64* length) {
    return call("EdsGetLength", {}, [&] {
        const Stream* found = object<Stream>(stream);
        if (!found) return EDS_ERR_INVALID_HANDLE;
        if (!length) return EDS_ERR_INVALID_POINTER;
        *length = found->data.size();
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::createImageRef(EdsStreamRef stream, EdsImageRef* image) {
    return call("EdsCreateImageRef", {}, [&] {
        const Stream* source = object<Stream>(stream);
        if (!source) return EDS_ERR_INVALID_HANDLE;
        if (!image) return EDS_ERR_INVALID_POINTER;
        if (!source->picture) return EDS_ERR_INVALID_PARAMETER;  // no whole picture in it
        *image = static_cast<EdsImageRef>(
            hand(Image{source->picture->first, source->picture->second}));
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::getImageInfo(EdsImageRef image, EdsInt32 source, EdsImageInfo* out) {
    return call("EdsGetImageInfo", callArguments(source), [&] {
        const Image* picture = object<Image>(image);
        if (!picture) return EDS_ERR_INVALID_HANDLE;
        if (!out) return EDS_ERR_INVALID_POINTER;
        // Thumbnails and RAW views are not simulated.
        if (source != kEdsImageSrc_FullView) return EDS_ERR_NOT_SUPPORTED;
        *out = EdsImageInfo{};
        out->width = picture->width;
        out->height = picture->height;
        out->numOfComponents = 3;
        out->componentDepth = 8;
        out->effectiveRect.size = {static_cast<EdsInt32>(picture->width),
                                   static_cast<EdsInt32>(picture->height)};
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::createEvfImageRef(EdsStreamRef stream, EdsEvfImageRef* image) {
    return call("EdsCreateEvfImageRef", {}, [&] {
        if (!object<Stream>(stream)) return EDS_ERR_INVALID_HANDLE;
        if (!image) return EDS_ERR_INVALID_POINTER;
        *image = static_cast<EdsEvfImageRef>(hand(EvfImage{stream}));
        return EDS_ERR_OK;
    });
}

EdsError CanonSimulator::downloadEvfImage(EdsCameraRef camera, EdsEvfImageRef image) {
    return onBody("EdsDownloadEvfImage", {}, camera, [&](Device& device) {
        const EvfImage* liveView = object<EvfImage>(image);
        Stream* stream = liveView ? object<Stream>(liveView->stream) : nullptr;
        if (!stream) return EDS_ERR_INVALID_HANDLE;
        DeviceState& state = device.state;
        if (!liveViewToHost(state)) return EDS_ERR_OBJECT_NOTREADY;
        if (state.liveViewNotReady > 0) {
            --state.liveViewNotReady;
            return EDS_ERR_OBJECT_NOTREADY;
        }
        const DeviceFrame frame = device.model.nextFrameHeader();
        const PictureCamera view = device.model.picture();
        std::vector<std::uint8_t> pixels(frameBytes(PixelFormat::Rgb8, view.width, view.height));
        device.model.draw(PixelFormat::Rgb8, frame.number, view.width, view.height, pixels.data());
        const std::vector<std::uint8_t> jpeg =
            encodeJpeg(PixelFormat::Rgb8, pixels.data(), view.width, view.height, kJpegQuality);
        stream->data.clear();
        stream->picture.reset();
        const EdsError written = writeToStream(*stream, jpeg.data(), jpeg.size());
        if (written == EDS_ERR_OK)
            stream->picture = {{device.model.description().width,
                                device.model.description().height}};
        return written;
    });
}

EdsError CanonSimulator::notSupported(const char* function) {
    return call(function, {}, [] { return EDS_ERR_NOT_SUPPORTED; });
}

// ---- Canon's own test control. ----

bool CanonSimulator::setSerialNumber(const std::string& id, const std::string& serial) {
    return changeDevice(id, [&](Device& device) -> std::string {
        if (serial.size() > kTextLimit) return "serial number longer than 255 bytes";
        device.state.serialNumber = serial;
        return {};
    });
}

bool CanonSimulator::setPropertyDesc(const std::string& id, EdsUInt32 propertyId, const int* codes,
                                     int count) {
    return changeDevice(id, [&](Device& device) -> std::string {
        if (!isExposureProperty(propertyId)) return "no list for property " + std::to_string(propertyId);
        if (count < 0 || count > 128 || (count > 0 && !codes))
            return "a list holds 0 to 128 codes: " + std::to_string(count);
        device.state.allowed[propertyId].assign(codes, codes + count);
        post(device.state, kEdsPropertyEvent_All,
             Event{kEdsPropertyEvent_PropertyDescChanged, propertyId, {}, id});
        return {};
    });
}

bool CanonSimulator::setProperty(const std::string& id, EdsUInt32 propertyId, EdsUInt32 value) {
    return changeDevice(id, [&](Device& device) -> std::string {
        if (!isFourByteProperty(propertyId)) return "no such property: " + std::to_string(propertyId);
        writeProperty(device, propertyId, value);
        return {};
    });
}

std::optional<EdsUInt32> CanonSimulator::property(const std::string& id, EdsUInt32 propertyId) {
    std::optional<EdsUInt32> value;
    changeDevice(id, [&](Device& device) -> std::string {
        if (!isFourByteProperty(propertyId)) return "no such property: " + std::to_string(propertyId);
        value = device.state.values.at(propertyId);
        return {};
    });
    return value;
}

std::optional<std::string> CanonSimulator::commands(const std::string& id) {
    std::optional<std::string> joined;
    changeDevice(id, [&](Device& device) {
        std::string text;
        for (const std::string& command : device.state.commands)
            text += (text.empty() ? "" : " ") + command;
        joined = text;
        return std::string();
    });
    return joined;
}

void CanonSimulator::clearCommands() {
    controlSimulator([&] {
        for (const Device& device : devices()) findDevice(device.model.id())->state.commands.clear();
        return std::string();
    });
}

bool CanonSimulator::setLiveViewNotReady(const std::string& id, std::uint32_t count) {
    return changeDevice(id, [&](Device& device) {
        device.state.liveViewNotReady = count;
        return std::string();
    });
}

bool CanonSimulator::holdStills(const std::string& id, bool hold) {
    return changeDevice(id, [&](Device& device) {
        device.state.holdStills = hold;
        if (!hold) {
            std::vector<Still> held = std::move(device.state.heldStills);
            device.state.heldStills.clear();
            for (Still& still : held) announce(device, std::move(still));
        }
        return std::string();
    });
}

std::size_t CanonSimulator::pendingEvents() {
    std::size_t pending = 0;
    controlSimulator([&] {
        pending = m_events.pending();
        return std::string();
    });
    return pending;
}

}  // namespace telvarra::sim::canon
