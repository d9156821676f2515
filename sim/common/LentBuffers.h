// Frame buffers an SDK lends its caller until the caller gives them back. The simulator owns the
// memory; what is not given back stays counted as outstanding, which is how tests see a leak.
#ifndef TELVARRA_SIM_COMMON_LENTBUFFERS_H
#define TELVARRA_SIM_COMMON_LENTBUFFERS_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace telvarra::sim {

class LentBuffers {
  public:
    // Keeps `data` and lends its address to `borrower` (any token, such as a handle).
    std::uint8_t* lend(const void* borrower, std::vector<std::uint8_t> data);
    // Frees the buffer at `address` if `borrower` holds it; false otherwise.
    bool giveBack(const void* borrower, const std::uint8_t* address);
    std::size_t outstanding() const { return m_lent.size(); }
    std::size_t outstanding(const void* borrower) const;
    void clear() { m_lent.clear(); }

  private:
    struct Loan {
        const void* borrower;
        std::vector<std::uint8_t> data;
    };
    std::vector<Loan> m_lent;
};

}  // namespace telvarra::sim

#endif
