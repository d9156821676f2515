#include "platform/QCriticalSection.h"

#ifdef _WIN32

QCriticalSection::QCriticalSection() { InitializeCriticalSection(&m_section); }
QCriticalSection::~QCriticalSection() { DeleteCriticalSection(&m_section); }
void QCriticalSection::lock() { EnterCriticalSection(&m_section); }
void QCriticalSection::unlock() { LeaveCriticalSection(&m_section); }
bool QCriticalSection::try_lock() { return TryEnterCriticalSection(&m_section) != 0; }

#else

QCriticalSection::QCriticalSection() = default;
QCriticalSection::~QCriticalSection() = default;
void QCriticalSection::lock() { m_section.lock(); }
void QCriticalSection::unlock() { m_section.unlock(); }
bool QCriticalSection::try_lock() { return m_section.try_lock(); }

#endif
