// A recursive lock over the platform's semaphore.
#pragma once

#include <pthread.h>

#include <atomic>

#include "platform/PCSemaphore.h"

// Does nothing before Create. Unlocking by a thread that does not own the lock is ignored. The semaphore is ended by
// Destroy, not by the destructor: threads may still be waiting when the library's statics go.
class PCMutex {
public:
    // Makes the semaphore at the first call; later calls change nothing.
    void Create();
    void Destroy();
    void Lock();
    void Unlock();

private:
    PCSemaphore m_semaphore;
    std::atomic<pthread_t> m_owner{};  // 0 when free; read by threads that do not own the lock
    unsigned int m_count = 0;          // touched by the owner alone
};

class CLock {
public:
    explicit CLock(PCMutex& mutex) : m_mutex(mutex) { m_mutex.Lock(); }
    ~CLock() { m_mutex.Unlock(); }
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

private:
    PCMutex& m_mutex;
};
