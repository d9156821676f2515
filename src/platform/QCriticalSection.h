// A recursive lock, as the Windows critical section is: the owning thread may enter again.
// It satisfies Lockable, so std::lock_guard<QCriticalSection> guards a stretch on every path.
#ifndef TELVARRA_PLATFORM_QCRITICALSECTION_H
#define TELVARRA_PLATFORM_QCRITICALSECTION_H

#ifdef _WIN32
#include "platform/WindowsText.h"
#else
#include <mutex>
#endif

class QCriticalSection {
  public:
    QCriticalSection();
    virtual ~QCriticalSection();
    QCriticalSection(const QCriticalSection&) = delete;
    QCriticalSection& operator=(const QCriticalSection&) = delete;

    void lock();
    void unlock();
    bool try_lock();

  private:
#ifdef _WIN32
    CRITICAL_SECTION m_section;
#else
    std::recursive_mutex m_section;
#endif
};

#endif
