// The recursive lock.
#include "videobroadcast/PCMutex.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>
#include <type_traits>
#include <vector>

namespace videobroadcast {
namespace {

using namespace std::chrono_literals;

// Another thread that wants the lock, and gives it back as soon as it has it.
class Contender {
public:
    explicit Contender(PCMutex& mutex)
        : m_thread([this, &mutex] {
              mutex.Lock();
              m_entered.set_value();
              mutex.Unlock();
          }) {}
    ~Contender() { m_thread.join(); }
    Contender(const Contender&) = delete;
    Contender& operator=(const Contender&) = delete;

    bool EntersWithin(std::chrono::milliseconds limit) {
        return m_result.wait_for(limit) == std::future_status::ready;
    }

private:
    std::promise<void> m_entered;
    std::future<void> m_result = m_entered.get_future();
    std::thread m_thread;
};

constexpr auto kForAWhile = 20ms;
constexpr auto kInTheEnd = 10s;

class PCMutexThreads : public ::testing::Test {
protected:
    PCMutexThreads() { mutex.Create(); }
    ~PCMutexThreads() override { mutex.Destroy(); }

    PCMutex mutex;
};

TEST_F(PCMutexThreads, AThreadMayLockAgainAndGivesTheLockUpWithTheLastUnlock) {
    for (int i = 0; i < 3; ++i) mutex.Lock();
    Contender contender(mutex);
    mutex.Unlock();
    mutex.Unlock();
    EXPECT_FALSE(contender.EntersWithin(kForAWhile));
    mutex.Unlock();
    EXPECT_TRUE(contender.EntersWithin(kInTheEnd));
}

TEST_F(PCMutexThreads, UnlockingWithoutTheLockDoesNothing) {
    mutex.Unlock();  // would give the semaphore a second unit
    mutex.Lock();
    Contender contender(mutex);
    EXPECT_FALSE(contender.EntersWithin(kForAWhile));
    std::thread([&] { mutex.Unlock(); }).join();
    EXPECT_FALSE(contender.EntersWithin(kForAWhile));
    mutex.Unlock();
    EXPECT_TRUE(contender.EntersWithin(kInTheEnd));
}

TEST_F(PCMutexThreads, CreatingAgainChangesNothing) {
    mutex.Lock();
    mutex.Create();
    Contender contender(mutex);
    EXPECT_FALSE(contender.EntersWithin(kForAWhile));
    mutex.Unlock();
    EXPECT_TRUE(contender.EntersWithin(kInTheEnd));
}

TEST_F(PCMutexThreads, DestroyEndsTheSemaphoreAndTheNextOneStartsFree) {
    mutex.Lock();
    mutex.Destroy();
    mutex.Create();
    mutex.Unlock();  // owns nothing any more
    Contender contender(mutex);
    EXPECT_TRUE(contender.EntersWithin(kInTheEnd));
    mutex.Lock();
    Contender second(mutex);
    EXPECT_FALSE(second.EntersWithin(kForAWhile));
    mutex.Unlock();
    EXPECT_TRUE(second.EntersWithin(kInTheEnd));
}

TEST_F(PCMutexThreads, WhoHeldADestroyedLockTakesTheNextOneLikeAnyOther) {
    mutex.Lock();
    mutex.Destroy();
    mutex.Create();
    mutex.Lock();
    Contender contender(mutex);
    EXPECT_FALSE(contender.EntersWithin(kForAWhile));
    mutex.Unlock();
    EXPECT_TRUE(contender.EntersWithin(kInTheEnd));
}

TEST_F(PCMutexThreads, OnlyOneThreadIsInsideAtATime) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 5000;
    int counter = 0;  // not atomic: the lock guards it
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                const CLock outer(mutex);
                const CLock inner(mutex);
                ++counter;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(counter, kThreads * kRounds);
}

TEST(PCMutex, NeitherItsBirthNorItsDeathNeedsASemaphore) {
    PCMutex mutex;
    mutex.Lock();
    mutex.Unlock();
    mutex.Destroy();
}

// Threads may still be waiting when the library's statics go.
static_assert(std::is_trivially_destructible_v<PCMutex>, "Only Destroy ends the semaphore.");

TEST(PCMutex, AfterDestroyItCanBeCreatedAgain) {
    PCMutex mutex;
    mutex.Create();
    mutex.Lock();
    mutex.Unlock();
    mutex.Destroy();
    mutex.Create();
    mutex.Lock();
    mutex.Unlock();
    mutex.Destroy();
}

}  // namespace
}  // namespace videobroadcast
