#include "sim/common/VirtualDevice.h"

#include <algorithm>
#include <utility>

namespace telvarra::sim {

std::vector<PixelFormat> defaultSupportedFormats(PixelFormat sensorFormat) {
    switch (sensorFormat) {
        case PixelFormat::Mono8:
            return {PixelFormat::Mono8};
        case PixelFormat::Rgb8:
            return {PixelFormat::Rgb8, PixelFormat::Bgr8, PixelFormat::Mono8};
        case PixelFormat::Bgr8:
            return {PixelFormat::Bgr8, PixelFormat::Rgb8, PixelFormat::Mono8};
        default:
            return {sensorFormat, PixelFormat::Mono8, PixelFormat::Rgb8, PixelFormat::Bgr8};
    }
}

VirtualDevice::VirtualDevice(DeviceDescription description)
    : m_description(std::move(description)), m_format(m_description.format) {
    if (m_description.supportedFormats.empty())
        m_description.supportedFormats = defaultSupportedFormats(m_description.format);
    if (!supports(m_description.format))
        m_description.supportedFormats.insert(m_description.supportedFormats.begin(),
                                              m_description.format);
}

PictureCamera VirtualDevice::picture() const {
    return {m_description.id, m_description.make, m_description.seed, m_description.width,
            m_description.height};
}

void VirtualDevice::unplug() {
    m_plugged = false;
    m_owner = nullptr;
    m_grabbing = false;
}

void VirtualDevice::replug() { m_plugged = true; }

bool VirtualDevice::open(const void* owner) {
    if (!m_plugged || !owner || m_owner) return false;
    m_owner = owner;
    m_grabbing = false;
    m_framesDelivered = 0;
    return true;
}

void VirtualDevice::close(const void* owner) {
    if (!owner || m_owner != owner) return;
    m_owner = nullptr;
    m_grabbing = false;
}

bool VirtualDevice::supports(PixelFormat format) const {
    const auto& formats = m_description.supportedFormats;
    return std::find(formats.begin(), formats.end(), format) != formats.end();
}

bool VirtualDevice::setFormat(PixelFormat format) {
    if (!supports(format)) return false;
    m_format = format;
    return true;
}

DeviceFrame VirtualDevice::nextFrameHeader() {
    DeviceFrame frame;
    frame.number = ++m_framesDelivered;
    frame.timestampMicroseconds = frame.number * kFramePeriodMicroseconds;
    frame.format = m_format;
    frame.width = m_description.width;
    frame.height = m_description.height;
    return frame;
}

DeviceFrame VirtualDevice::nextFrame() {
    DeviceFrame frame = nextFrameHeader();
    if (m_prepared) {
        // One pass over the frame, as a camera's transfer into the SDK's memory would be.
        const std::vector<std::uint8_t>& bytes =
            preparedPicture(m_format, frame.number, frame.width, frame.height);
        frame.data.assign(bytes.begin(), bytes.end());
        return frame;
    }
    frame.data.resize(frameBytes(m_format, frame.width, frame.height));
    renderFrame(picture(), m_format, frame.number, frame.width, frame.height, frame.data.data());
    return frame;
}

void VirtualDevice::draw(PixelFormat format, std::uint32_t number, std::uint32_t width,
                         std::uint32_t height, std::uint8_t* target) {
    if (!m_prepared) {
        renderFrame(picture(), format, number, width, height, target);
        return;
    }
    const std::vector<std::uint8_t>& bytes = preparedPicture(format, number, width, height);
    std::copy(bytes.begin(), bytes.end(), target);
}

const std::vector<std::uint8_t>& VirtualDevice::preparedPicture(PixelFormat format,
                                                                std::uint32_t number,
                                                                std::uint32_t width,
                                                                std::uint32_t height) {
    auto prepared = std::find_if(
        m_preparedPictures.begin(), m_preparedPictures.end(), [&](const Prepared& picture) {
            return picture.format == format && picture.width == width && picture.height == height;
        });
    if (prepared == m_preparedPictures.end()) {
        Prepared picture{format, width, height,
                         std::vector<std::uint8_t>(frameBytes(format, width, height))};
        renderFrame(this->picture(), format, number, width, height, picture.bytes.data());
        prepared = m_preparedPictures.insert(m_preparedPictures.end(), std::move(picture));
    }
    return prepared->bytes;
}

void VirtualDevice::setPreparedFrames(bool on) {
    m_prepared = on;
    m_preparedPictures.clear();
}

}  // namespace telvarra::sim
