#include "drivers/canon/CanonCamera.h"

#include <filesystem>
#include <fstream>
#include <limits>
#include <thread>

#include "core/FileNames.h"
#include "drivers/canon/CanonBodies.h"
#include "platform/Paths.h"

namespace telvarra::canon {

using namespace vendor::canon;

namespace {

constexpr CameraProfile kProfile{RUVO_CAMERA_CANON,
                                 "Canon",
                                 "33333",
                                 "Canon ace",
                                 "Connecting to Canon camera: ",
                                 "Disconnecting from Canon camera: ",
                                 "Starting acquisition on Canon camera: ",
                                 "Stopping acquisition on Canon camera: ",
                                 "Reconnecting to Canon camera: ",
                                 " on Canon camera: ",
                                 " from Canon camera: ",
                                 " for Canon camera: ",
                                 RUVO_STATUS_ACQUIRING,
                                 false,
                                 false,
                                 true};

// The wait between a press of the shutter button and its release.
constexpr std::chrono::milliseconds kButtonWait{30};
// Live view answers "not ready" while it starts and between its frames: asked again this
// often, for at most this long, within one fetch.
constexpr std::chrono::milliseconds kLiveViewRetry{30};
constexpr std::chrono::milliseconds kLiveViewLimit{2000};
// A capture whose still never arrives (a body that kept it on its card, or lost it) stops
// holding the commands back after this long.
constexpr std::chrono::seconds kStillLimit{10};
// Neither a live-view picture nor a still file is larger; more is no JPEG of a camera.
constexpr EdsUInt64 kMaxJpegBytes = EdsUInt64{256} << 20;

bool ok(EdsError error) { return error == EDS_ERR_OK; }

}  // namespace

CanonCamera::CanonCamera(const std::string& cameraId)
    : CameraBase(cameraId, kProfile, FramePath::Software),
      m_eds(canonSdk()),
      m_shutterSpeed(kExposureLists[0]),
      m_aperture(kExposureLists[1]),
      m_isoSpeed(kExposureLists[2]) {
    m_width = m_deviceInfo.maxWidth;
    m_height = m_deviceInfo.maxHeight;
    m_imageFormat = RUVO_FORMAT_RGB8;
}

CanonCamera::~CanonCamera() {
    if (m_connected) disconnect();
}

// ---- opening and closing

bool CanonCamera::initialize() {
    logInfo("Initializing Canon camera: " + m_cameraId);
    if (!findBody() || !openSession() || !listenToEvents(true) || !sendImagesToHost() ||
        !readExposureLists())
        return false;
    _RUVO_IMAGE_FORMAT_LIST& formats = m_deviceInfo.supportedFormats;
    formats = _RUVO_IMAGE_FORMAT_LIST{};
    formats.formats[formats.count++] = RUVO_FORMAT_RGB8;
    // The live view's size comes with its first picture; a body's is never under the zoom's
    // minimum, so the zoom commands are taken from the start.
    m_softwareFrames->setSensorSize(m_deviceInfo.maxWidth, m_deviceInfo.maxHeight);
    return true;
}

bool CanonCamera::findBody() {
    BodyListing listing = listBodies();
    for (ListedBody& body : listing.bodies) {
        if (body.serialNumber != m_cameraId) continue;
        m_camera = std::move(body.camera);
        return true;
    }
    return false;
}

bool CanonCamera::openSession() {
    m_sessionOpen = ok(m_eds.EdsOpenSession(m_camera.get()));
    return m_sessionOpen;
}

// Registers the handlers, or with `listen` false removes them, so that no event reaches a
// camera that is gone.
bool CanonCamera::listenToEvents(bool listen) {
    void* context = listen ? this : nullptr;
    return ok(m_eds.EdsSetPropertyEventHandler(m_camera.get(), kEdsPropertyEvent_All,
                                               listen ? onPropertyEvent : nullptr, context)) &&
           ok(m_eds.EdsSetObjectEventHandler(m_camera.get(), kEdsObjectEvent_All,
                                             listen ? onObjectEvent : nullptr, context)) &&
           ok(m_eds.EdsSetCameraStateEventHandler(m_camera.get(), kEdsStateEvent_All,
                                                  listen ? onStateEvent : nullptr, context));
}

bool CanonCamera::sendImagesToHost() {
    const EdsUInt32 host = kEdsSaveTo_Host;
    if (!ok(m_eds.EdsSetPropertyData(m_camera.get(), kEdsPropID_SaveTo, 0, sizeof host, &host)))
        return false;
    // Room the body believes the host has for its pictures.
    const EdsCapacity capacity{0x7FFFFFFF, 0x1000, 1};
    return ok(m_eds.EdsSetCapacity(m_camera.get(), capacity));
}

bool CanonCamera::readExposureLists() {
    ExposureSetting* settings[] = {&m_shutterSpeed, &m_aperture, &m_isoSpeed};
    for (ExposureSetting* setting : settings) readCurrentCode(*setting);
    for (ExposureSetting* setting : settings) {
        if (!ok(m_eds.EdsGetPropertyDesc(m_camera.get(), setting->list().propertyId,
                                         &setting->description())))
            return false;
    }
    for (ExposureSetting* setting : settings) setting->findCurrentIndex();
    return true;
}

// Results not tested: a code the body would not give leaves the index where it was.
void CanonCamera::readCurrentCode(ExposureSetting& setting) {
    const EdsUInt32 property = setting.list().propertyId;
    EdsInt32 type = 0;
    EdsUInt32 size = 0;
    m_eds.EdsGetPropertySize(m_camera.get(), property, 0, &type, &size);
    // Read as the 4 bytes the code is, whatever size came back: a larger one would be written
    // past the code.
    m_eds.EdsGetPropertyData(m_camera.get(), property, 0, sizeof(EdsInt32), &setting.currentCode());
}

bool CanonCamera::closeDevice() {
    cancelWaitingStills();
    if (m_camera) listenToEvents(false);
    if (m_sessionOpen) m_eds.EdsCloseSession(m_camera.get());
    m_sessionOpen = false;
    m_camera.reset();
    m_busy = false;
    m_bodyGone = false;
    return true;
}

bool CanonCamera::deviceStillConnected() {
    if (!m_sessionOpen) return false;
    serviceEvents();
    return !m_bodyGone;
}

bool CanonCamera::isConnected() {
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    return m_connected && deviceStillConnected();
}

// ---- live view

bool CanonCamera::setLiveViewToHost(bool on) {
    EdsUInt32 outputs = 0;
    if (!ok(m_eds.EdsGetPropertyData(m_camera.get(), kEdsPropID_Evf_OutputDevice, 0, sizeof outputs,
                                     &outputs)))
        return false;
    outputs = on ? outputs | kEdsEvfOutputDevice_PC : outputs & ~kEdsEvfOutputDevice_PC;
    return ok(m_eds.EdsSetPropertyData(m_camera.get(), kEdsPropID_Evf_OutputDevice, 0,
                                       sizeof outputs, &outputs));
}

bool CanonCamera::startStreaming() { return setLiveViewToHost(true); }

bool CanonCamera::stopStreaming() { return !m_sessionOpen || setLiveViewToHost(false); }

bool CanonCamera::setImageFormat(Ruvo_ImageFormat format) {
    if (format != RUVO_FORMAT_RGB8) {
        logError("Image format not supported: " + std::to_string(static_cast<int>(format)) +
                 " for Canon camera: " + m_cameraId);
        return false;
    }
    logInfo("Set image format to " + std::to_string(static_cast<int>(format)) +
            " for Canon camera: " + m_cameraId);
    return true;
}

bool CanonCamera::liveViewError(const std::string& why) const {
    logError("Canon Camera ERROR: GenerateCurImage " + why);
    return false;
}

bool CanonCamera::fetchFrame(ImageData& image) {
    serviceEvents();
    if (!m_sessionOpen || m_bodyGone) return liveViewError("no body");
    if (!pullLiveView()) return false;
    m_softwareFrames->setSensorSize(m_picture.width, m_picture.height);
    describePicture(image);
    return true;
}

// One live-view picture into the frame buffer, asked for again while the body is not ready.
bool CanonCamera::pullLiveView() {
    const auto deadline = std::chrono::steady_clock::now() + kLiveViewLimit;
    for (;;) {
        CanonObject stream;
        CanonObject picture;
        if (!ok(m_eds.EdsCreateMemoryStream(0, stream.receive())))
            return liveViewError("memory stream");
        if (!ok(m_eds.EdsCreateEvfImageRef(stream.get(), picture.receive())))
            return liveViewError("live-view picture");
        const EdsError error = m_eds.EdsDownloadEvfImage(m_camera.get(), picture.get());
        if (ok(error)) {
            void* jpeg = nullptr;
            EdsUInt64 bytes = 0;
            if (!ok(m_eds.EdsGetPointer(stream.get(), &jpeg)) ||
                !ok(m_eds.EdsGetLength(stream.get(), &bytes)))
                return liveViewError("stream");
            return decodeInto(jpeg, bytes);
        }
        if (error != EDS_ERR_OBJECT_NOTREADY)
            return liveViewError("download " + std::to_string(error));
        if (std::chrono::steady_clock::now() + kLiveViewRetry > deadline)
            return liveViewError("not ready");
        std::this_thread::sleep_for(kLiveViewRetry);
    }
}

bool CanonCamera::decodeInto(const void* jpeg, EdsUInt64 bytes) {
    if (!jpeg || bytes == 0 || bytes > kMaxJpegBytes) return liveViewError("no picture");
    std::string problem;
    if (!platform::decodeJpeg(static_cast<const unsigned char*>(jpeg),
                              static_cast<std::size_t>(bytes), m_picture, problem))
        return liveViewError(problem);
    return true;
}

// The decoder refuses pictures whose bytes would not fit a frame's 32-bit size.
void CanonCamera::describePicture(ImageData& image) {
    describeFrame(image, m_picture.pixels.data(), m_picture.width, m_picture.height, 3,
                  static_cast<int32_t>(m_picture.pixels.size()));
}

// ---- events

EdsError CanonCamera::onPropertyEvent(EdsUInt32 event, EdsUInt32 propertyId, EdsUInt32,
                                      void* context) {
    auto& camera = *static_cast<CanonCamera*>(context);
    if (event != kEdsPropertyEvent_PropertyChanged) return EDS_ERR_OK;
    std::lock_guard<std::mutex> guard(camera.m_arrivalsLock);
    camera.m_arrivals.changedProperties.push_back(propertyId);
    return EDS_ERR_OK;
}

// The handler owns the item it is given: kept for its download, or released at once.
EdsError CanonCamera::onObjectEvent(EdsUInt32 event, EdsBaseRef item, void* context) {
    CanonObject held(item);
    if (event != kEdsObjectEvent_DirItemRequestTransfer || !held) return EDS_ERR_OK;
    auto& camera = *static_cast<CanonCamera*>(context);
    std::lock_guard<std::mutex> guard(camera.m_arrivalsLock);
    camera.m_arrivals.stills.push_back(std::move(held));
    return EDS_ERR_OK;
}

EdsError CanonCamera::onStateEvent(EdsUInt32 event, EdsUInt32, void* context) {
    auto& camera = *static_cast<CanonCamera*>(context);
    std::lock_guard<std::mutex> guard(camera.m_arrivalsLock);
    if (event == kEdsStateEvent_Shutdown) camera.m_arrivals.shutDown = true;
    if (event == kEdsStateEvent_CaptureError) camera.m_arrivals.captureFailed = true;
    return EDS_ERR_OK;
}

CanonCamera::Arrivals CanonCamera::takeArrivals() {
    std::lock_guard<std::mutex> guard(m_arrivalsLock);
    return std::exchange(m_arrivals, Arrivals{});
}

void CanonCamera::serviceEvents() {
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    if (!m_sessionOpen) return;
    m_eds.EdsGetEvent();
    Arrivals arrivals = takeArrivals();
    if (arrivals.shutDown) m_bodyGone = true;
    if (arrivals.captureFailed) m_busy = false;
    for (ExposureSetting* setting : {&m_shutterSpeed, &m_aperture, &m_isoSpeed}) {
        for (const EdsUInt32 property : arrivals.changedProperties) {
            if (property != setting->list().propertyId) continue;
            readCurrentCode(*setting);
            setting->findCurrentIndex();
            break;
        }
    }
    for (const CanonObject& item : arrivals.stills) receiveStill(item);
    if (m_busy && std::chrono::steady_clock::now() - m_busySince > kStillLimit) m_busy = false;
}

void CanonCamera::cancelWaitingStills() {
    for (const CanonObject& item : takeArrivals().stills) m_eds.EdsDownloadCancel(item.get());
}

// ---- stills

bool CanonCamera::downloadError(int code) const {
    logError("Canon Camera ERROR: EventDownloadImage " + std::to_string(code));
    return false;
}

// A still arrived: into the file beside this library, then decoded into the frame buffer and
// handed to the host's frame callback, which is how a host tells it from live view.
void CanonCamera::receiveStill(const CanonObject& item) {
    m_busy = false;
    const std::string path =
        platform::moduleDirectory() + "Canon__" + fileNamePart(m_cameraId) + ".jpg";
    if (!downloadStill(item, path) || !loadStill(path)) return;
    ImageData image{};
    describePicture(image);
    if (m_softwareFrames && !m_softwareFrames->apply(image)) return;
    if (m_frameCallback) m_frameCallback(image, m_frameCallbackUser);
}

bool CanonCamera::downloadStill(const CanonObject& item, const std::string& path) {
    EdsDirectoryItemInfo info{};
    if (!ok(m_eds.EdsGetDirectoryItemInfo(item.get(), &info))) return downloadError(-1);
    // The SDK would write through a link, or block on a FIFO, planted under the file's name.
    if (notAPlainFile(path)) return downloadError(-2);
    CanonObject stream;
    if (!ok(m_eds.EdsCreateFileStream(path.c_str(), kEdsFileCreateDisposition_CreateAlways,
                                      kEdsAccess_ReadWrite, stream.receive())))
        return downloadError(-2);
    int failure = 0;
    {
        CanonObject image;
        EdsImageInfo imageInfo{};
        if (!ok(m_eds.EdsDownload(item.get(), info.size, stream.get())))
            failure = -3;
        else if (!ok(m_eds.EdsCreateImageRef(stream.get(), image.receive())))
            failure = -4;
        else if (!ok(m_eds.EdsGetImageInfo(image.get(), kEdsImageSrc_FullView, &imageInfo)))
            failure = -5;
        else if (!ok(m_eds.EdsDownloadComplete(item.get())))
            failure = -6;
    }
    stream.reset();
    if (failure == 0) return true;
    m_eds.EdsDownloadCancel(item.get());
    return downloadError(failure);
}

bool CanonCamera::loadStill(const std::string& path) {
    std::error_code error;
    const std::uintmax_t bytes = std::filesystem::file_size(path, error);
    if (error || bytes == 0 || bytes > kMaxJpegBytes || notAPlainFile(path))
        return liveViewError("still file " + path);
    std::vector<unsigned char> jpeg(static_cast<std::size_t>(bytes));
    std::ifstream file(path, std::ios::binary);
    if (!file.read(reinterpret_cast<char*>(jpeg.data()), static_cast<std::streamsize>(bytes)))
        return liveViewError("still file " + path);
    return decodeInto(jpeg.data(), bytes);
}

// ---- commands

bool CanonCamera::commandError(int code) const {
    logError("Camera ERROR: sendCommandGrabFrame " + std::to_string(code));
    return false;
}

bool CanonCamera::pressShutter(EdsInt32 press) {
    return ok(m_eds.EdsSendCommand(m_camera.get(), kEdsCameraCommand_PressShutterButton, press));
}

// Pressed fully, held for a moment and released; the still arrives later as an event.
bool CanonCamera::capture(bool autofocus) {
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    logInfo("Setting parameter sendCommandGrabFrame  enter");
    serviceEvents();
    if (m_busy) return commandError(-3);
    if (!m_camera) return commandError(-4);
    if (!pressShutter(autofocus ? kEdsCameraCommand_ShutterButton_Completely
                                : kEdsCameraCommand_ShutterButton_Completely_NonAF)) {
        commandError(autofocus ? -2 : -1);
        pressShutter(kEdsCameraCommand_ShutterButton_OFF);
        return false;
    }
    std::this_thread::sleep_for(kButtonWait);
    if (!pressShutter(kEdsCameraCommand_ShutterButton_OFF)) return false;
    m_busy = true;
    m_busySince = std::chrono::steady_clock::now();
    serviceEvents();
    return true;
}

bool CanonCamera::autofocus() {
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    serviceEvents();
    if (m_busy || !m_camera) return false;
    const bool pressed = pressShutter(kEdsCameraCommand_ShutterButton_Halfway);
    if (pressed) std::this_thread::sleep_for(kButtonWait);
    const bool released = pressShutter(kEdsCameraCommand_ShutterButton_OFF);
    return pressed && released;
}

bool CanonCamera::setStringValue(const char* name, const char* /*value*/) {
    const std::string command = name ? name : "";
    if (command == "sendCommandGrabFrame_0") return capture(false);
    if (command == "sendCommandGrabFrame_1") return capture(true);
    if (command == "sendCommandAutofocus") return autofocus();
    return false;
}

// ---- exposure lists

ExposureSetting* CanonCamera::settingNamed(const char* name, bool setter) {
    if (!name) return nullptr;
    for (ExposureSetting* setting : {&m_shutterSpeed, &m_aperture, &m_isoSpeed}) {
        const char* listName = setter ? setting->list().setName : setting->list().getName;
        if (std::string(name) == listName) return setting;
    }
    return nullptr;
}

bool CanonCamera::getEnumValue(const char* name, _RUVO_ENUM_VALUE* value) {
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    if (!value) return false;
    if (!m_camera) {
        value->count = 0;
        value->current.value = 0;
        return false;
    }
    serviceEvents();
    const ExposureSetting* setting = settingNamed(name, false);
    if (!setting) return false;
    setting->describe(*value);
    return true;
}

bool CanonCamera::setEnumValue(const char* name, int64_t index) {
    std::lock_guard<QCriticalSection> guard(m_frameLock);
    logInfo(std::string("Setting parameter ") + (name ? name : "") +
            " on Canon camera:" + m_cameraId);
    ExposureSetting* setting = settingNamed(name, true);
    if (!setting || !m_camera || index < 0 || index > std::numeric_limits<uint32_t>::max())
        return false;
    // Before the choice: a change the body reported earlier must not overwrite it.
    serviceEvents();
    if (!setting->choose(static_cast<uint32_t>(index))) return false;
    const EdsUInt32 property = setting->list().propertyId;
    const EdsInt32 code = setting->chosenCode();
    EdsInt32 type = 0;
    EdsUInt32 size = 0;
    m_eds.EdsGetPropertySize(m_camera.get(), property, 0, &type, &size);
    // Written as the 4 bytes the code is: a larger size reported would read past it.
    return ok(m_eds.EdsSetPropertyData(m_camera.get(), property, 0, sizeof code, &code));
}

}  // namespace telvarra::canon
