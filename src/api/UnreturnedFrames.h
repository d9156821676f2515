// Frames an SDK lent and then refused to take back. An SDK lends from a few buffers only: a
// release that fails once and is forgotten costs one of them for good, and once all are held no
// frame comes until the device is closed. Kept here, each is offered back again before the next
// fetch and before the device stops or closes, until the SDK takes it.
#ifndef TELVARRA_API_UNRETURNEDFRAMES_H
#define TELVARRA_API_UNRETURNEDFRAMES_H

#include <algorithm>
#include <cstddef>
#include <vector>

namespace telvarra {

template <class Frame>
class UnreturnedFrames {
  public:
    // More than any SDK lends at once; an SDK that lends without bound while refusing every
    // release is not followed further: at this many the camera borrows no more.
    static constexpr std::size_t kCapacity = 64;

    // Hands `frame` to `release` (true when the SDK took it back) and keeps it when refused;
    // false then.
    template <class Release>
    bool giveBack(const Frame& frame, Release&& release) {
        Frame offered = frame;
        if (release(offered)) return true;
        m_frames.push_back(offered);
        return false;
    }

    // Offers every kept frame back again; true when none is left.
    template <class Release>
    bool retry(Release&& release) {
        m_frames.erase(std::remove_if(m_frames.begin(), m_frames.end(),
                                      [&](Frame& frame) { return release(frame); }),
                       m_frames.end());
        return m_frames.empty();
    }

    bool full() const { return m_frames.size() >= kCapacity; }
    std::size_t size() const { return m_frames.size(); }
    // The handle that borrowed them is gone: no call can return them any more.
    void forget() { m_frames.clear(); }

  private:
    std::vector<Frame> m_frames;
};

}  // namespace telvarra

#endif
