#include "videobroadcast/PCMutex.h"

void PCMutex::Create() {
    if (m_semaphore.IsCreated()) return;
    m_owner = 0;
    m_count = 0;
    m_semaphore.Create(1);
}

void PCMutex::Destroy() { m_semaphore.Destroy(); }

void PCMutex::Lock() {
    if (m_owner.load() == pthread_self()) {
        ++m_count;
        return;
    }
    m_semaphore.Take();
    m_owner = pthread_self();
    m_count = 1;
}

void PCMutex::Unlock() {
    if (m_owner.load() != pthread_self()) return;
    if (--m_count > 0) return;
    m_owner = 0;
    m_semaphore.Give();
}
