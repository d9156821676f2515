#include "api/DigitalZoom.h"

namespace telvarra {

std::optional<ZoomWindow> zoomWindow(int32_t level, int32_t width, int32_t height) {
    if (level < 1 || level > kZoomMaximumLevel) return std::nullopt;
    if (width < kZoomMinimumSide || height < kZoomMinimumSide) return std::nullopt;
    const int32_t windowWidth = level == 1 ? 640 : 320;
    const double aspect = static_cast<double>(height) / width;
    ZoomWindow window{};
    window.width = windowWidth;
    window.height = static_cast<int32_t>(aspect * windowWidth);
    window.left = width / 2 - windowWidth / 2;
    window.top = height / 2 - window.height / 2;
    // A frame under 640 pixels wide has no room for the first step's window.
    if (window.left < 0 || window.top < 0 || window.left + window.width > width ||
        window.top + window.height > height || window.height < 1) {
        return std::nullopt;
    }
    return window;
}

}  // namespace telvarra
