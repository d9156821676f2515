// The handles a simulator gives its caller: opaque tokens, each with the make's payload. A token
// is never reused, not even after a reset, so a handle used after it was destroyed is always
// recognised as invalid rather than mistaken for a newer one.
#ifndef TELVARRA_SIM_COMMON_HANDLEREGISTRY_H
#define TELVARRA_SIM_COMMON_HANDLEREGISTRY_H

#include <cstdint>
#include <map>
#include <utility>

namespace telvarra::sim {

template <class Payload>
class HandleRegistry {
  public:
    // Tokens are base + step, base + 2 * step, ...: never null, and recognisable in a debugger.
    // Makes whose handles are 32-bit numbers choose a base and step that keep them below 2^32.
    HandleRegistry(std::uintptr_t base, std::uintptr_t step) : m_base(base), m_step(step) {}

    void* add(Payload payload) {
        void* token = reinterpret_cast<void*>(m_base + m_step * ++m_issued);
        m_entries.emplace(token, std::move(payload));
        return token;
    }

    Payload* find(const void* token) {
        const auto found = m_entries.find(token);
        return found == m_entries.end() ? nullptr : &found->second;
    }

    bool erase(const void* token) { return m_entries.erase(token) != 0; }

    // Forgets every handle; the tokens handed out so far stay unused.
    void clear() { m_entries.clear(); }

    std::size_t size() const { return m_entries.size(); }

    // In the order the handles were made.
    auto begin() { return m_entries.begin(); }
    auto end() { return m_entries.end(); }

  private:
    std::uintptr_t m_base;
    std::uintptr_t m_step;
    std::uintptr_t m_issued = 0;
    // Ordered by token, which is creation order.
    std::map<const void*, Payload> m_entries;
};

}  // namespace telvarra::sim

#endif
