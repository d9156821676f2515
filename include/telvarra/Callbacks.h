// The three caller callbacks. The library stores each with one untyped user pointer and hands it
// back unchanged on every call.
#ifndef TELVARRA_CALLBACKS_H
#define TELVARRA_CALLBACKS_H

#include "telvarra/Types.h"

// A frame whose buffer stays the camera's; copy what must outlive the call.
using FrameCallback = void (*)(const ImageData& frame, void* user);
using EventCallback = void (*)(const char* cameraId, int eventCode, void* user);
using ImageProcessingCallback = void (*)(const char* cameraId, const ImageData& frame, void* user);

#endif
