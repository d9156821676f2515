#include "FrameSaver.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <utility>

namespace telvarra::cli {

FrameSaver::FrameSaver(ImageFileFormat format, unsigned threads)
    : m_format(format), m_capacity(std::max(1u, threads) + 1) {
    for (unsigned i = 0; i < std::max(1u, threads); ++i) m_threads.emplace_back([this] { work(); });
}

FrameSaver::~FrameSaver() {
    {
        std::lock_guard<std::mutex> guard(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    for (std::thread& thread : m_threads) thread.join();
}

void FrameSaver::save(int index, std::filesystem::path path, const ImageData& frame) {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [&] { return m_waiting.size() < m_capacity; });
    std::vector<unsigned char> pixels;
    if (!m_spare.empty()) {
        pixels = std::move(m_spare.back());
        m_spare.pop_back();
    }
    lock.unlock();
    // The copy outside the lock: the writers go on meanwhile.
    const std::size_t bytes = frame.data && frame.dataSize > 0 ? std::size_t(frame.dataSize) : 0;
    pixels.resize(bytes);
    if (bytes > 0) std::memcpy(pixels.data(), frame.data, bytes);
    Job job{index, std::move(path), frame, std::move(pixels)};
    job.frame.data = job.pixels.empty() ? nullptr : job.pixels.data();
    lock.lock();
    m_waiting.push_back(std::move(job));
    lock.unlock();
    m_changed.notify_all();
}

void FrameSaver::finish() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [&] { return m_waiting.empty() && m_busy == 0; });
}

std::string FrameSaver::problem(int index) const {
    std::lock_guard<std::mutex> guard(m_mutex);
    const auto found = m_problems.find(index);
    return found == m_problems.end() ? std::string() : found->second;
}

void FrameSaver::work() {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [&] { return m_stopping || !m_waiting.empty(); });
        if (m_waiting.empty()) return;  // stopping, and nothing left to write
        Job job = std::move(m_waiting.front());
        m_waiting.pop_front();
        ++m_busy;
        lock.unlock();
        m_changed.notify_all();  // room in the queue

        std::string error;
        bool written = false;
        try {
            written = writeImage(job.path, job.frame, m_format, error);
        } catch (const std::exception& failure) {
            error = failure.what();
        }
        if (written) {
            ++m_written;
            m_failedInARow = 0;
        } else {
            ++m_failed;
            ++m_failedInARow;
        }

        lock.lock();
        if (!written) m_problems[job.index] = error;
        m_spare.push_back(std::move(job.pixels));
        --m_busy;
        m_changed.notify_all();
    }
}

}  // namespace telvarra::cli
