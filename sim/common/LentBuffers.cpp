#include "sim/common/LentBuffers.h"

#include <algorithm>
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

std::size_t LentBuffers::outstanding(const void* borrower) const {
    return static_cast<std::size_t>(std::count_if(
        m_lent.begin(), m_lent.end(), [&](const Loan& loan) { return loan.borrower == borrower; }));
}

}  // namespace telvarra::sim
