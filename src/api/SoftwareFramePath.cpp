#include "api/SoftwareFramePath.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "api/DigitalZoom.h"
#include "api/FrameRoutines.h"

namespace telvarra {

namespace {

bool wholePicture(int32_t width, int32_t height, int32_t channels, std::size_t bytes) {
    return width >= 1 && height >= 1 && (channels == 1 || channels == 3) &&
           static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * channels <= bytes;
}

}  // namespace

void SoftwareFramePath::setRotation(int32_t quarterTurns) {
    m_rotation = std::clamp(quarterTurns, 0, 3);
}

void SoftwareFramePath::setSensorSize(int64_t width, int64_t height) {
    m_sensorZoomable = width >= kZoomMinimumSide && height >= kZoomMinimumSide;
}

bool SoftwareFramePath::applyZoomCommand(const std::string& name) {
    if (name == "CameraImageZoomIn") {
        if (!m_sensorZoomable) return false;
        m_zoomLevel = std::min(m_zoomLevel + 1, kZoomMaximumLevel);
        return true;
    }
    if (name == "CameraImageZoomInReturnNormal") {
        m_zoomLevel = 0;
        return m_sensorZoomable;
    }
    return true;
}

SoftwareFramePath::Settings SoftwareFramePath::current() const {
    return {m_horMirror, m_verMirror, m_rotation, m_zoomLevel};
}

bool SoftwareFramePath::copyFrom(const unsigned char* source, std::size_t sourceBytes,
                                 int32_t width, int32_t height, int32_t channels,
                                 FrameBuffer& target, ImageData& image) {
    const Settings settings = current();
    if (settings.plain()) {
        if (!source || !target.reserve(sourceBytes)) return false;
        std::memcpy(target.data(), source, sourceBytes);
        image.data = target.data();
        image.width = width;
        image.height = height;
        image.dataSize = static_cast<int32_t>(sourceBytes);
    } else if (!source || !wholePicture(width, height, channels, sourceBytes) ||
               !orientInto(settings, source, width, height, channels, target, image)) {
        return false;
    }
    image.channels = channels;
    m_finished = true;
    return true;
}

bool SoftwareFramePath::apply(ImageData& image) {
    const Settings settings = current();
    if (settings.plain()) return true;
    if (!image.data || image.dataSize < 0 ||
        !wholePicture(image.width, image.height, image.channels,
                      static_cast<std::size_t>(image.dataSize)))
        return false;
    return orientInto(settings, image.data, image.width, image.height, image.channels, m_output,
                      image);
}

// The zoom window is cut from the mirrored and turned frame; in one pass that is the rectangle
// of the source which, oriented, fills the window, so nothing outside it is read.
bool SoftwareFramePath::orientInto(const Settings& settings, const unsigned char* source,
                                   int32_t width, int32_t height, int32_t channels,
                                   FrameBuffer& target, ImageData& image) {
    const Orientation orientation =
        orientationOf(settings.horMirror, settings.verMirror, settings.rotation);
    const int32_t turnedWidth = orientation.transpose ? height : width;
    const int32_t turnedHeight = orientation.transpose ? width : height;
    ZoomWindow window{turnedWidth, turnedHeight, 0, 0};
    if (settings.zoomLevel != 0) {
        const std::optional<ZoomWindow> zoomed =
            zoomWindow(settings.zoomLevel, turnedWidth, turnedHeight);
        if (!zoomed) {
            m_zoomLevel = 0;
            return false;
        }
        window = *zoomed;
    }
    const std::size_t bytes = static_cast<std::size_t>(window.width) * window.height * channels;
    if (!target.reserve(bytes)) return false;

    // The window's columns are source rows when the frame turns a quarter.
    int32_t left = orientation.transpose ? window.top : window.left;
    int32_t top = orientation.transpose ? window.left : window.top;
    const int32_t columns = orientation.transpose ? window.height : window.width;
    const int32_t rows = orientation.transpose ? window.width : window.height;
    if (orientation.flipX) left = width - left - columns;
    if (orientation.flipY) top = height - top - rows;
    orientFrame(source + (static_cast<std::size_t>(top) * width + left) * channels,
                static_cast<std::ptrdiff_t>(width) * channels, columns, rows, channels, orientation,
                target.data(), static_cast<std::ptrdiff_t>(window.width) * channels);
    image.data = target.data();
    image.width = window.width;
    image.height = window.height;
    image.dataSize = static_cast<int32_t>(bytes);
    return true;
}

}  // namespace telvarra
