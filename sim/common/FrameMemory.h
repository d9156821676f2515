// Frame memory in the four ways vendor SDKs hand it out. Each counts what is outstanding, which is
// how tests see a caller that keeps what it should give back, or reads what it may no longer:
//  - LentBuffers: lent until the caller frees them (HikVision, MindVision);
//  - CallerBuffers: written into the caller's own buffer, nothing outstanding (DaHeng);
//  - NextCallBuffers: valid until the caller's next call, then poisoned (Dvp);
//  - RefCountedObjects: objects alive while their reference count is above 0 (Canon).
// Holders and borrowers are any tokens of the simulator's choosing, such as handles.
#ifndef TELVARRA_SIM_COMMON_FRAMEMEMORY_H
#define TELVARRA_SIM_COMMON_FRAMEMEMORY_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "sim/common/HandleRegistry.h"

namespace telvarra::sim {

// The simulator owns the memory; what is not given back stays counted as outstanding.
class LentBuffers {
  public:
    // Keeps `data` and lends its address to `borrower`.
    std::uint8_t* lend(const void* borrower, std::vector<std::uint8_t> data);
    // Frees the buffer at `address` if `borrower` holds it; false otherwise.
    bool giveBack(const void* borrower, const std::uint8_t* address);
    // The size of the buffer at `address` if `borrower` holds it (SDKs that process a lent frame
    // check it is one).
    std::optional<std::size_t> lentBytes(const void* borrower, const std::uint8_t* address) const;
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

// The caller owns every byte, so nothing is ever outstanding; what can go wrong is the buffer.
class CallerBuffers {
  public:
    enum class Outcome { Written, NoBuffer, TooSmall };
    // Copies `frame` into `destination`, which holds `capacity` bytes; writes nothing on failure.
    static Outcome write(void* destination, std::size_t capacity,
                         const std::vector<std::uint8_t>& frame);
    static constexpr std::size_t outstanding() { return 0; }
};

// A frame stays valid until the holder's next call, which first overwrites it with a poison
// pattern, so a caller that reads a stale pointer sees garbage, the same garbage every run. Each
// holder has two buffers used in turn, so that the new frame never lands where a stale pointer
// points. A buffer moves only when frames grow.
class NextCallBuffers {
  public:
    // The byte at `offset` of a poisoned buffer: 0xDE 0xAD 0xBE 0xEF, repeated.
    static std::uint8_t poisonAt(std::size_t offset);

    // Poisons the holder's previous frame, then copies `frame` into its other buffer.
    const std::uint8_t* deliver(const void* holder, const std::vector<std::uint8_t>& frame);
    // A call that returns no frame ends the previous frame's validity all the same.
    void expire(const void* holder);
    // The holder is gone (its handle closed): its buffers are freed.
    void release(const void* holder) { m_holders.erase(holder); }
    // Holders whose last frame is still valid.
    std::size_t outstanding() const;
    void clear() { m_holders.clear(); }

  private:
    struct Buffers {
        std::array<std::vector<std::uint8_t>, 2> buffer;
        std::size_t last = 1;  // the buffer written last
        bool valid = false;    // its frame is still valid
    };
    std::map<const void*, Buffers> m_holders;
};

// Objects handed out with a reference count of 1: retain adds one, release takes one and
// destroys the object at 0. Live objects are outstanding. References are tokens that are never
// reused, so an unknown reference and one to a destroyed object are both refused (nullopt).
template <class Object>
class RefCountedObjects {
  public:
    RefCountedObjects(std::uintptr_t base, std::uintptr_t step) : m_objects(base, step) {}

    void* create(Object object) { return m_objects.add(Counted{1, std::move(object)}); }
    Object* find(const void* reference) {
        Counted* counted = m_objects.find(reference);
        return counted ? &counted->object : nullptr;
    }
    // The new count.
    std::optional<std::uint32_t> retain(const void* reference) {
        Counted* counted = m_objects.find(reference);
        if (!counted) return std::nullopt;
        return ++counted->count;
    }
    // The count left; the object is gone at 0.
    std::optional<std::uint32_t> release(const void* reference) {
        Counted* counted = m_objects.find(reference);
        if (!counted) return std::nullopt;
        const std::uint32_t left = --counted->count;
        if (left == 0) m_objects.erase(reference);
        return left;
    }
    std::size_t outstanding() const { return m_objects.size(); }
    void clear() { m_objects.clear(); }

  private:
    struct Counted {
        std::uint32_t count;
        Object object;
    };
    HandleRegistry<Counted> m_objects;
};

}  // namespace telvarra::sim

#endif
