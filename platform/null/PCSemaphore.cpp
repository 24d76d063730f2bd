// The semaphore, on a POSIX one.
#include "platform/PCSemaphore.h"

#include <semaphore.h>

#include <cerrno>
#include <new>

bool PCSemaphore::Create(unsigned int count) {
    if (m_handle != nullptr) {
        return false;
    }
    auto* semaphore = new (std::nothrow) sem_t;
    if (semaphore != nullptr && sem_init(semaphore, 0, count) != 0) {
        delete semaphore;
        semaphore = nullptr;
    }
    m_handle = semaphore;
    return semaphore != nullptr;
}

void PCSemaphore::Take() {
    if (m_handle != nullptr) {
        while (sem_wait(static_cast<sem_t*>(m_handle)) != 0 && errno == EINTR) {
        }
    }
}

void PCSemaphore::Give() {
    if (m_handle != nullptr) {
        sem_post(static_cast<sem_t*>(m_handle));
    }
}

void PCSemaphore::Destroy() {
    auto* semaphore = static_cast<sem_t*>(m_handle);
    m_handle = nullptr;
    if (semaphore != nullptr) {
        sem_destroy(semaphore);
        delete semaphore;
    }
}
