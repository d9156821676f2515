// Mirror, rotation and the two-step digital zoom, done in software for the makes whose SDK does
// not do them, in one pass over the frame: straight out of the SDK's memory where the make copies
// the frame out anyway (copyFrom), otherwise from the camera's buffer into the path's own
// (apply). The settings are atomic: the host changes them without the frame lock while another
// thread's fetch reads them.
#ifndef TELVARRA_API_SOFTWAREFRAMEPATH_H
#define TELVARRA_API_SOFTWAREFRAMEPATH_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

#include "api/FrameBuffer.h"
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

    // The frame is mirrored (left-right, then top-bottom), turned, then zoomed, all in one pass.
    // A frame too small for the zoom window fails and turns the zoom off.

    // Out of the SDK's memory: the `width` x `height` frame of `channels` (1 or 3) bytes a pixel
    // at `source`, `sourceBytes` long with rows back to back, goes into `target`, and `image`'s
    // data, size, channels and data size say where and how large. Without mirror, turn or zoom all
    // `sourceBytes` are copied as they are. False when the source is short of the picture or
    // `target` cannot grow. The frame is then finished: finishFrame leaves it.
    bool copyFrom(const unsigned char* source, std::size_t sourceBytes, int32_t width,
                  int32_t height, int32_t channels, FrameBuffer& target, ImageData& image);
    // For a frame `image` describes, wherever it is: without mirror, turn or zoom nothing
    // happens; otherwise it goes into the path's own buffer, which `image` then points into,
    // valid until the next frame. False for a frame that is not a whole picture of 1 or 3
    // channels, or when memory is short.
    bool apply(ImageData& image);

    // The camera's frame fetch between the two: finishFrame applies the path to a frame the make
    // did not take through copyFrom.
    void startFrame() { m_finished = false; }
    bool finishFrame(ImageData& image) { return m_finished || apply(image); }

  private:
    struct Settings {
        bool horMirror;
        bool verMirror;
        int32_t rotation;
        int32_t zoomLevel;
        bool plain() const { return !horMirror && !verMirror && rotation == 0 && zoomLevel == 0; }
    };
    // Read once per frame, so that a frame is made under one set of settings.
    Settings current() const;
    bool orientInto(const Settings& settings, const unsigned char* source, int32_t width,
                    int32_t height, int32_t channels, FrameBuffer& target, ImageData& image);

    std::atomic<bool> m_horMirror{false};
    std::atomic<bool> m_verMirror{false};
    std::atomic<int32_t> m_rotation{0};
    std::atomic<int32_t> m_zoomLevel{0};
    std::atomic<bool> m_sensorZoomable{false};
    // Under the camera's frame lock.
    bool m_finished = false;
    FrameBuffer m_output;  // apply's frames; grows to the largest, never shrinks
};

}  // namespace telvarra

#endif
