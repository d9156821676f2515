// A camera's own frame memory: it grows to the largest frame seen and never shrinks, and an
// allocation that fails is a false result rather than an exception out of the camera.
#ifndef TELVARRA_API_FRAMEBUFFER_H
#define TELVARRA_API_FRAMEBUFFER_H

#include <cstddef>
#include <vector>

namespace telvarra {

class FrameBuffer {
  public:
    // Makes room for at least `bytes`; false (and the buffer as it was) when memory is short.
    bool reserve(std::size_t bytes);
    unsigned char* data() { return m_bytes.data(); }
    std::size_t size() const { return m_bytes.size(); }

  private:
    std::vector<unsigned char> m_bytes;
};

}  // namespace telvarra

#endif
