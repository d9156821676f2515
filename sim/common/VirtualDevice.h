// A virtual camera as every simulator models it: what enumeration reports, what the sensor
// delivers, whether it is plugged in, who has it open, whether it streams, and its frames.
#ifndef TELVARRA_SIM_COMMON_VIRTUALDEVICE_H
#define TELVARRA_SIM_COMMON_VIRTUALDEVICE_H

#include <cstdint>
#include <string>
#include <vector>

#include "sim/common/PixelFormat.h"
#include "sim/common/TestPattern.h"

namespace telvarra::sim {

// One camera as a rig line describes it. `layer` is the make's own transport word (empty: the
// make's default); `model` empty: the make's default model name.
struct DeviceDescription {
    std::string make;
    std::string id;  // serial number, the identifier hosts use
    std::string userName;
    std::string model;
    std::string layer;
    std::uint32_t width = 640;
    std::uint32_t height = 480;
    PixelFormat format = PixelFormat::Mono8;
    // The formats the device can be switched to; always holds `format`.
    std::vector<PixelFormat> supportedFormats;
    std::uint32_t seed = 0;
};

// The formats a sensor offers when the rig does not list them: a mono sensor only Mono8; a
// colour sensor its own format, the other packed colour order, and Mono8; a Bayer sensor its
// mosaic, Mono8, RGB8 and BGR8 (the camera interpolates).
std::vector<PixelFormat> defaultSupportedFormats(PixelFormat sensorFormat);

// A frame as the device sends it.
struct DeviceFrame {
    std::uint32_t number = 0;  // 1 for the first frame of a session
    std::uint64_t timestampMicroseconds = 0;
    PixelFormat format = PixelFormat::Mono8;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> data;
};

class VirtualDevice {
  public:
    // Frames are 40 ms apart on the device clock (25 frames per second).
    static constexpr std::uint64_t kFramePeriodMicroseconds = 40000;

    explicit VirtualDevice(DeviceDescription description);

    const DeviceDescription& description() const { return m_description; }
    const std::string& id() const { return m_description.id; }
    // Who the device's frames show: its identifier, make, seed and sensor size.
    PictureCamera picture() const;

    // Pulling the plug ends the session of whoever had the device open (their handle stays,
    // dead) and stops streaming; plugging it back in leaves it closed and free.
    bool plugged() const { return m_plugged; }
    void unplug();
    void replug();

    // One session at a time. `owner` is any non-null token of the caller's choosing.
    bool isFree() const { return m_owner == nullptr; }
    bool isOpenBy(const void* owner) const { return m_plugged && owner && m_owner == owner; }
    // Fails when unplugged or open by someone else. Starts the frame numbers again.
    bool open(const void* owner);
    // Ends `owner`'s session; does nothing when `owner` does not hold it.
    void close(const void* owner);

    bool grabbing() const { return m_grabbing; }
    void setGrabbing(bool on) { m_grabbing = on; }

    PixelFormat format() const { return m_format; }
    bool supports(PixelFormat format) const;
    // Changes the delivered format; false when the device does not offer it.
    bool setFormat(PixelFormat format);

    // Renders the next frame of the session and counts it.
    DeviceFrame nextFrame();
    // The top-left `width` x `height` pixels of frame `number` in `format` into `target`
    // (renderFrame), or, with prepared frames on, the prepared picture of that shape.
    void draw(PixelFormat format, std::uint32_t number, std::uint32_t width, std::uint32_t height,
              std::uint8_t* target);
    // Prepared frames: every frame shows one picture, drawn once, so that a host's own frame
    // path can be timed without the pattern's drawing. Frame numbers still count.
    void setPreparedFrames(bool on);
    // Counts the next frame without rendering it (its data stays empty), for makes that render
    // straight into the caller's memory.
    DeviceFrame nextFrameHeader();
    std::uint32_t framesDelivered() const { return m_framesDelivered; }

  private:
    // The prepared picture of that shape, drawn as frame `number` the first time it is asked for.
    const std::vector<std::uint8_t>& preparedPicture(PixelFormat format, std::uint32_t number,
                                                     std::uint32_t width, std::uint32_t height);

    DeviceDescription m_description;
    PixelFormat m_format;
    bool m_plugged = true;
    const void* m_owner = nullptr;
    bool m_grabbing = false;
    std::uint32_t m_framesDelivered = 0;
    bool m_prepared = false;
    struct Prepared {
        PixelFormat format;
        std::uint32_t width;
        std::uint32_t height;
        std::vector<std::uint8_t> bytes;
    };
    std::vector<Prepared> m_preparedPictures;  // one per shape asked for
};

}  // namespace telvarra::sim

#endif
