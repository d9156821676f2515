#include "api/SoftwareFramePath.h"

#include <algorithm>
#include <optional>

#include "api/DigitalZoom.h"
#include "api/FrameRoutines.h"

namespace telvarra {

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

bool SoftwareFramePath::apply(ImageData& image) {
    unsigned char* data = image.data;
    if (m_horMirror && mirrorHorizontal(image.width, image.height, data, image.dataSize,
                                        image.channels) != kFrameDone) {
        return false;
    }
    if (m_verMirror && mirrorVertical(image.width, image.height, data, image.dataSize,
                                      image.channels) != kFrameDone) {
        return false;
    }
    const int32_t turns = m_rotation;
    if (turns != 0 && rotateQuarterTurns(image.width, image.height, data, image.dataSize,
                                         image.channels, turns) != kFrameDone) {
        return false;
    }
    return applyZoom(image);
}

bool SoftwareFramePath::applyZoom(ImageData& image) {
    const int32_t level = m_zoomLevel;
    if (level == 0) return true;
    const std::optional<ZoomWindow> window = zoomWindow(level, image.width, image.height);
    if (!window) {
        m_zoomLevel = 0;
        return false;
    }
    cropToWindow(image.data, image.width, image.channels, *window);
    image.width = window->width;
    image.height = window->height;
    image.dataSize = window->width * window->height * image.channels;
    return true;
}

}  // namespace telvarra
