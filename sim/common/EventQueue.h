// Events a simulator raises for its host, such as Canon's object and state events. The host
// registers a handler per source (a camera) and kind (a family of events), with a context pointer
// it wants back; the simulator posts events, and they wait until the host pumps (Canon:
// EdsGetEvent). Delivery happens only there, on the pumping thread, in the order posted: never on
// a thread of the simulator's own. The queue takes no lock of its own: the simulator posts and
// pumps inside its call gate, whose lock is recursive, so a handler may call back into the SDK.
#ifndef TELVARRA_SIM_COMMON_EVENTQUEUE_H
#define TELVARRA_SIM_COMMON_EVENTQUEUE_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <utility>

namespace telvarra::sim {

template <class Event>
class EventQueue {
  public:
    using Handler = std::function<void(const Event& event, void* context)>;

    // Registers, replaces, or (with an empty handler) removes the handler of one kind of events.
    void setHandler(const void* source, std::uint32_t kind, Handler handler, void* context) {
        if (handler)
            m_handlers[{source, kind}] = Registration{std::move(handler), context};
        else
            m_handlers.erase({source, kind});
    }

    void post(const void* source, std::uint32_t kind, Event event) {
        m_queue.push_back(Posted{source, kind, std::move(event)});
    }

    // Delivers the events posted so far to the handlers registered at delivery; events without
    // one are dropped, as an SDK drops what nobody listens to. Events a handler posts wait for
    // the next pump, and a pump from inside a handler delivers nothing, so the order holds.
    // Returns how many events reached a handler.
    std::size_t pump() {
        if (m_pumping) return 0;
        m_pumping = true;
        std::deque<Posted> batch;
        batch.swap(m_queue);
        std::size_t delivered = 0;
        for (const Posted& posted : batch) {
            const auto found = m_handlers.find({posted.source, posted.kind});
            if (found == m_handlers.end()) continue;
            // A copy: the handler may replace or remove itself.
            const Registration registration = found->second;
            registration.handler(posted.event, registration.context);
            ++delivered;
        }
        m_pumping = false;
        return delivered;
    }

    std::size_t pending() const { return m_queue.size(); }

    // The source is gone: its handlers and the events still queued for it go too.
    void forget(const void* source) {
        for (auto it = m_handlers.begin(); it != m_handlers.end();)
            it = it->first.first == source ? m_handlers.erase(it) : std::next(it);
        for (auto it = m_queue.begin(); it != m_queue.end();)
            it = it->source == source ? m_queue.erase(it) : std::next(it);
    }

    void clear() {
        m_handlers.clear();
        m_queue.clear();
    }

  private:
    struct Registration {
        Handler handler;
        void* context;
    };
    struct Posted {
        const void* source;
        std::uint32_t kind;
        Event event;
    };
    std::map<std::pair<const void*, std::uint32_t>, Registration> m_handlers;
    std::deque<Posted> m_queue;
    bool m_pumping = false;
};

}  // namespace telvarra::sim

#endif
