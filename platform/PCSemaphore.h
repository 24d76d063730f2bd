// The platform's counting semaphore.
#pragma once

#include "platform/visibility.h"

// Starts without a semaphore behind it; Create makes one. All operations may be called on any thread.
class TVPLATFORM_API PCSemaphore {
public:
    PCSemaphore() = default;
    PCSemaphore(const PCSemaphore&) = delete;
    PCSemaphore& operator=(const PCSemaphore&) = delete;
    ~PCSemaphore() = default;  // does not destroy the semaphore: see Destroy

    // Makes the semaphore with `count` units. False when it exists already or cannot be made.
    bool Create(unsigned int count);
    bool IsCreated() const { return m_handle != nullptr; }
    // Waits for a unit and takes it. Returns at once while there is no semaphore.
    void Take();
    // Gives a unit back.
    void Give();
    // Ends the semaphore. Nobody may be waiting.
    void Destroy();

private:
    void* m_handle = nullptr;  // the platform's
};
