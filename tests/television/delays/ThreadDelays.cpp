// Preloaded into a program, lets its threads wait a moment now and then: after they give back a mutex, and after a
// wait for descriptors has ended, which is how the loop of a window's thread goes round. So they take turns in ways
// that are rare otherwise, and what relies on luck fails. Most moments are short; one in twenty is as long as a
// machine with other things to do may leave a thread alone. TV_DELAYS says one occasion in how many is followed by a
// moment; 40 unless it is set.
#include <dlfcn.h>
#include <errno.h>
#include <poll.h>
#include <pthread.h>
#include <unistd.h>

#include <cstdlib>
#include <random>
#include <string_view>

namespace {

constexpr unsigned kUsualRarity = 40, kUsualMicroseconds = 5000, kRarelyMicroseconds = 150'000;

// The helpers of a test, a virtual display and other readers, go on undisturbed.
bool IsDelayed() {
    const std::string_view name = program_invocation_short_name;
    return name.starts_with("tv-") || name.ends_with("_tests") || name.ends_with("_of_the_television");
}

unsigned Rarity() {
    const char* wanted = std::getenv("TV_DELAYS");
    const int rarity = wanted ? std::atoi(wanted) : 0;
    return rarity > 0 ? static_cast<unsigned>(rarity) : kUsualRarity;
}

void WaitPerhaps() {
    static const unsigned rarity = IsDelayed() ? Rarity() : 0;
    static thread_local std::minstd_rand chance{static_cast<unsigned>(gettid())};
    if (rarity == 0 || chance() % rarity != 0) return;
    const int error = errno;
    const unsigned longest = chance() % 20 == 0 ? kRarelyMicroseconds : kUsualMicroseconds;
    usleep(static_cast<useconds_t>(chance() % longest));
    errno = error;
}

template <typename Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept {
    static const auto unlock = Next<int(pthread_mutex_t*)>("pthread_mutex_unlock");
    const int result = unlock(mutex);
    WaitPerhaps();
    return result;
}

extern "C" int poll(pollfd* descriptors, nfds_t count, int timeout) {
    static const auto wait = Next<int(pollfd*, nfds_t, int)>("poll");
    const int result = wait(descriptors, count, timeout);
    WaitPerhaps();
    return result;
}

extern "C" int ppoll(pollfd* descriptors, nfds_t count, const timespec* timeout, const sigset_t* mask) {
    static const auto wait = Next<int(pollfd*, nfds_t, const timespec*, const sigset_t*)>("ppoll");
    const int result = wait(descriptors, count, timeout, mask);
    WaitPerhaps();
    return result;
}
