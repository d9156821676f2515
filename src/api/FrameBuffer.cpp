#include "api/FrameBuffer.h"

#include <new>
#include <stdexcept>

namespace telvarra {

bool FrameBuffer::reserve(std::size_t bytes) {
    if (bytes <= m_bytes.size()) return true;
    try {
        m_bytes.resize(bytes);
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    return true;
}

}  // namespace telvarra
