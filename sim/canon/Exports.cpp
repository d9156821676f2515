// The vendor's exported C functions (declared in CanonExports.h): each hands its arguments to the
// simulator.
#include "sim/canon/CanonExports.h"
#include "sim/canon/CanonSimulator.h"

namespace telvarra::vendor::canon {

using telvarra::sim::canon::simulator;

extern "C" {

EdsError EdsInitializeSDK() { return simulator().initializeSdk(); }

EdsError EdsTerminateSDK() { return simulator().terminateSdk(); }

EdsUInt32 EdsRetain(EdsBaseRef object) { return simulator().retain(object); }

EdsUInt32 EdsRelease(EdsBaseRef object) { return simulator().release(object); }

EdsError EdsGetChildCount(EdsBaseRef parent, EdsUInt32* count) {
    return simulator().getChildCount(parent, count);
}

EdsError EdsGetChildAtIndex(EdsBaseRef parent, EdsInt32 index, EdsBaseRef* child) {
    return simulator().getChildAtIndex(parent, index, child);
}

EdsError EdsGetPropertySize(EdsBaseRef object, EdsUInt32 propertyId, EdsInt32 parameter,
                            EdsInt32* dataType, EdsUInt32* size) {
    return simulator().getPropertySize(object, propertyId, parameter, dataType, size);
}

EdsError EdsGetPropertyData(EdsBaseRef object, EdsUInt32 propertyId, EdsInt32 parameter,
                            EdsUInt32 size, void* out) {
    return simulator().getPropertyData(object, propertyId, parameter, size, out);
}

EdsError EdsSetPropertyData(EdsBaseRef object, EdsUInt32 propertyId, EdsInt32 parameter,
                            EdsUInt32 size, const void* in) {
    return simulator().setPropertyData(object, propertyId, parameter, size, in);
}

EdsError EdsGetPropertyDesc(EdsBaseRef object, EdsUInt32 propertyId, EdsPropertyDesc* out) {
    return simulator().getPropertyDesc(object, propertyId, out);
}

EdsError EdsGetCameraList(EdsCameraListRef* list) { return simulator().getCameraList(list); }

EdsError EdsGetDeviceInfo(EdsCameraRef camera, EdsDeviceInfo* out) {
    return simulator().getDeviceInfo(camera, out);
}

EdsError EdsOpenSession(EdsCameraRef camera) { return simulator().openSession(camera); }

EdsError EdsCloseSession(EdsCameraRef camera) { return simulator().closeSession(camera); }

EdsError EdsSendCommand(EdsCameraRef camera, EdsUInt32 command, EdsInt32 parameter) {
    return simulator().sendCommand(camera, command, parameter);
}

EdsError EdsSetCapacity(EdsCameraRef camera, EdsCapacity capacity) {
    return simulator().setCapacity(camera, capacity);
}

EdsError EdsGetDirectoryItemInfo(EdsDirectoryItemRef item, EdsDirectoryItemInfo* out) {
    return simulator().getDirectoryItemInfo(item, out);
}

EdsError EdsDownload(EdsDirectoryItemRef item, EdsUInt64 size, EdsStreamRef stream) {
    return simulator().download(item, size, stream);
}

EdsError EdsDownloadCancel(EdsDirectoryItemRef item) { return simulator().downloadCancel(item); }

EdsError EdsDownloadComplete(EdsDirectoryItemRef item) {
    return simulator().downloadComplete(item);
}

EdsError EdsCreateFileStream(const EdsChar* path, EdsInt32 disposition, EdsInt32 access,
                             EdsStreamRef* stream) {
    return simulator().createFileStream(path, disposition, access, stream);
}

EdsError EdsCreateMemoryStream(EdsUInt64 initialSize, EdsStreamRef* stream) {
    return simulator().createMemoryStream(initialSize, stream);
}

EdsError EdsGetPointer(EdsStreamRef stream, void** pointer) {
    return simulator().getPointer(stream, pointer);
}

EdsError EdsGetLength(EdsStreamRef stream, EdsUInt64* length) {
    return simulator().getLength(stream, length);
}

EdsError EdsCreateImageRef(EdsStreamRef stream, EdsImageRef* image) {
    return simulator().createImageRef(stream, image);
}

EdsError EdsGetImageInfo(EdsImageRef image, EdsInt32 source, EdsImageInfo* out) {
    return simulator().getImageInfo(image, source, out);
}

EdsError EdsCreateEvfImageRef(EdsStreamRef stream, EdsEvfImageRef* image) {
    return simulator().createEvfImageRef(stream, image);
}

EdsError EdsDownloadEvfImage(EdsCameraRef camera, EdsEvfImageRef image) {
    return simulator().downloadEvfImage(camera, image);
}

EdsError EdsSetPropertyEventHandler(EdsCameraRef camera, EdsUInt32 event,
                                    EdsPropertyEventHandler handler, void* context) {
    return simulator().setPropertyEventHandler(camera, event, handler, context);
}

EdsError EdsSetObjectEventHandler(EdsCameraRef camera, EdsUInt32 event,
                                  EdsObjectEventHandler handler, void* context) {
    return simulator().setObjectEventHandler(camera, event, handler, context);
}

EdsError EdsSetCameraStateEventHandler(EdsCameraRef camera, EdsUInt32 event,
                                       EdsStateEventHandler handler, void* context) {
    return simulator().setCameraStateEventHandler(camera, event, handler, context);
}

EdsError EdsGetEvent() { return simulator().getEvent(); }

#define CANONSIM_SKIP_CALLED(name)
#define CANONSIM_DEFINE_OTHER(name) \
    EdsError name(void) { return simulator().notSupported(#name); }
TELVARRA_CANON_LOAD_LIST(CANONSIM_SKIP_CALLED, CANONSIM_DEFINE_OTHER)
#undef CANONSIM_DEFINE_OTHER
#undef CANONSIM_SKIP_CALLED

}  // extern "C"

}  // namespace telvarra::vendor::canon
