// The two-step digital zoom: a centred window of 640 (first step) or 320 (second step) pixels
// wide, as high as the frame's aspect ratio makes it (cut out by the software frame path).
#ifndef TELVARRA_API_DIGITALZOOM_H
#define TELVARRA_API_DIGITALZOOM_H

#include <cstdint>
#include <optional>

namespace telvarra {

// Frames narrower or lower than this cannot be zoomed.
constexpr int32_t kZoomMinimumSide = 320;
constexpr int32_t kZoomMaximumLevel = 2;

struct ZoomWindow {
    int32_t width;
    int32_t height;
    int32_t left;
    int32_t top;
};

// The window of zoom level 1 or 2 for a width x height frame; none when the frame is too small
// for it (a side under 320 pixels, or a window that would reach outside the frame).
std::optional<ZoomWindow> zoomWindow(int32_t level, int32_t width, int32_t height);

}  // namespace telvarra

#endif
