// Frames written to files on threads of their own, so that the camera is asked for the next frame
// while earlier ones are still being compressed and written. At most a few frames wait: a
// camera faster than the disk or the compression slows down to their pace, with memory bounded.
#ifndef TELVARRA_TOOLS_FRAMESAVER_H
#define TELVARRA_TOOLS_FRAMESAVER_H

#include <atomic>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "ImageFiles.h"

namespace telvarra::cli {

class FrameSaver {
  public:
    FrameSaver(ImageFileFormat format, unsigned threads);
    // Writes what is still waiting first.
    ~FrameSaver();
    FrameSaver(const FrameSaver&) = delete;
    FrameSaver& operator=(const FrameSaver&) = delete;

    // Copies `frame`'s pixels, which the camera reuses for its next frame, and queues them for
    // `path` under `index`; waits while the queue is full.
    void save(int index, std::filesystem::path path, const ImageData& frame);
    // Waits until every queued frame has been written or has failed.
    void finish();

    int written() const { return m_written; }
    int failed() const { return m_failed; }
    // Files that failed since the last one written, in the order the writes ended.
    int failedInARow() const { return m_failedInARow; }
    // After finish(): why frame `index` was not written; empty when it was.
    std::string problem(int index) const;

  private:
    struct Job {
        int index;
        std::filesystem::path path;
        ImageData frame;
        std::vector<unsigned char> pixels;
    };
    void work();

    const ImageFileFormat m_format;
    const std::size_t m_capacity;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Job> m_waiting;
    std::vector<std::vector<unsigned char>> m_spare;  // pixel buffers written, to use again
    int m_busy = 0;
    bool m_stopping = false;
    std::map<int, std::string> m_problems;
    std::atomic<int> m_written{0};
    std::atomic<int> m_failed{0};
    std::atomic<int> m_failedInARow{0};
    std::vector<std::thread> m_threads;
};

}  // namespace telvarra::cli

#endif
