#include "sim/common/FrameMemory.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace telvarra::sim {

std::uint8_t* LentBuffers::lend(const void* borrower, std::vector<std::uint8_t> data) {
    // An empty frame still needs an address of its own to be given back by.
    if (data.empty()) data.resize(1);
    m_lent.push_back({borrower, std::move(data)});
    return m_lent.back().data.data();
}

bool LentBuffers::giveBack(const void* borrower, const std::uint8_t* address) {
    const auto found = std::find_if(m_lent.begin(), m_lent.end(), [&](const Loan& loan) {
        return loan.borrower == borrower && loan.data.data() == address;
    });
    if (found == m_lent.end()) return false;
    m_lent.erase(found);
    return true;
}

std::optional<std::size_t> LentBuffers::lentBytes(const void* borrower,
                                                  const std::uint8_t* address) const {
    for (const Loan& loan : m_lent)
        if (loan.borrower == borrower && loan.data.data() == address) return loan.data.size();
    return std::nullopt;
}

std::size_t LentBuffers::outstanding(const void* borrower) const {
    return static_cast<std::size_t>(std::count_if(
        m_lent.begin(), m_lent.end(), [&](const Loan& loan) { return loan.borrower == borrower; }));
}

CallerBuffers::Outcome CallerBuffers::write(void* destination, std::size_t capacity,
                                            const std::vector<std::uint8_t>& frame) {
    if (!destination) return Outcome::NoBuffer;
    if (capacity < frame.size()) return Outcome::TooSmall;
    if (!frame.empty()) std::memcpy(destination, frame.data(), frame.size());
    return Outcome::Written;
}

std::uint8_t NextCallBuffers::poisonAt(std::size_t offset) {
    static constexpr std::uint8_t kPoison[4] = {0xDE, 0xAD, 0xBE, 0xEF};
    return kPoison[offset % 4];
}

void NextCallBuffers::expire(const void* holder) {
    const auto found = m_holders.find(holder);
    if (found == m_holders.end() || !found->second.valid) return;
    std::vector<std::uint8_t>& stale = found->second.buffer[found->second.last];
    // The pattern, then copies of what is written so far, doubling: at memory speed, so that
    // the poison does not make the SDK look slower than it is.
    std::size_t written = std::min<std::size_t>(stale.size(), 4);
    for (std::size_t i = 0; i < written; ++i) stale[i] = poisonAt(i);
    while (written < stale.size()) {
        const std::size_t more = std::min(written, stale.size() - written);
        std::memcpy(stale.data() + written, stale.data(), more);
        written += more;
    }
    found->second.valid = false;
}

const std::uint8_t* NextCallBuffers::deliver(const void* holder,
                                             const std::vector<std::uint8_t>& frame) {
    expire(holder);
    Buffers& buffers = m_holders[holder];
    buffers.last = 1 - buffers.last;
    std::vector<std::uint8_t>& next = buffers.buffer[buffers.last];
    // Only a larger frame moves the buffer; a stale pointer into it stays readable otherwise.
    if (next.size() < frame.size()) next.resize(frame.size());
    std::copy(frame.begin(), frame.end(), next.begin());
    buffers.valid = true;
    return next.data();
}

std::size_t NextCallBuffers::outstanding() const {
    return static_cast<std::size_t>(std::count_if(
        m_holders.begin(), m_holders.end(), [](const auto& entry) { return entry.second.valid; }));
}

}  // namespace telvarra::sim
