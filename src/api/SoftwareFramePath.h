// Mirror, rotation and the two-step digital zoom, done in software on a frame in the camera's
// own buffer, for the makes whose SDK does not do them. The settings are atomic: the host
// changes them without the frame lock while another thread's fetch reads them.
#ifndef TELVARRA_API_SOFTWAREFRAMEPATH_H
#define TELVARRA_API_SOFTWAREFRAMEPATH_H

#include <atomic>
#include <cstdint>
#include <string>

#include "telvarra/Types.h"

namespace telvarra {

class SoftwareFramePath {
  public:
    void setHorMirror(bool on) { m_horMirror = on; }
    bool horMirror() const { return m_horMirror; }
    void setVerMirror(bool on) { m_verMirror = on; }
    bool verMirror() const { return m_verMirror; }
    // Clamped to 0..3 quarter turns.
    void setRotation(int32_t quarterTurns);
    int32_t rotation() const { return m_rotation; }

    // The device's sensor size, which decides whether the zoom commands are accepted.
    void setSensorSize(int64_t width, int64_t height);
    // "CameraImageZoomIn" (one step more, at most two) and "CameraImageZoomInReturnNormal"
    // (back to none) answer whether the sensor is large enough for a zoom; any other name is
    // not a zoom command and answers true. Names compare exactly.
    bool applyZoomCommand(const std::string& name);
    int32_t zoomLevel() const { return m_zoomLevel; }

    // Mirrors (left-right, then top-bottom), turns, then zooms the frame `image` describes, in
    // place, and updates its size. False when a step refuses; a frame too small for the zoom
    // window also turns the zoom off.
    bool apply(ImageData& image);

  private:
    bool applyZoom(ImageData& image);

    std::atomic<bool> m_horMirror{false};
    std::atomic<bool> m_verMirror{false};
    std::atomic<int32_t> m_rotation{0};
    std::atomic<int32_t> m_zoomLevel{0};
    std::atomic<bool> m_sensorZoomable{false};
};

}  // namespace telvarra

#endif
