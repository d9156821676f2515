// The SDK's list of attached cameras, read one way for the driver's list and for a camera
// looking for its own device.
#ifndef TELVARRA_DRIVERS_MINDVISION_MINDVISIONDEVICES_H
#define TELVARRA_DRIVERS_MINDVISION_MINDVISIONDEVICES_H

#include <string>
#include <vector>

#include "drivers/mindvision/MindVisionBinding.h"

namespace telvarra::mindvision {

// The SDK's camera record holds at most this many cameras per enumeration.
constexpr int kMaxDevices = 255;

// Enumerates into `devices` (at most kMaxDevices records; empty on a refusal). False when the
// SDK refused or lacks the call; no camera attached is an empty list, not a refusal.
bool enumerateDevices(std::vector<sdk::tSdkCameraDevInfo>& devices);

// Logs that the loaded SDK lacks `name` and answers the status of an unsupported call.
sdk::CameraSdkStatus missingFunction(const char* name);

// Calls an SDK function that may be absent from the loaded library.
template <class Function, class... Arguments>
sdk::CameraSdkStatus callSdk(Function* function, const char* name, Arguments... arguments) {
    return function ? function(arguments...) : missingFunction(name);
}

}  // namespace telvarra::mindvision

// The call of SDK function `name` through the camera's or driver's table `functions`.
#define TELVARRA_MINDVISION_CALL(functions, name, ...) \
    ::telvarra::mindvision::callSdk((functions).name, #name, __VA_ARGS__)

#endif
