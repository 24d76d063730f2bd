// Preloaded into a program, lets its threads wait a moment now and then after they give back a mutex. So they take
// turns in ways that are rare otherwise, and what relies on luck fails. TV_DELAYS says one unlocking in how many is
// followed by a moment; 40 unless it is set.
#include <dlfcn.h>
#include <errno.h>
#include <pthread.h>
#include <unistd.h>

#include <cstdlib>
#include <random>
#include <string_view>

namespace {

constexpr unsigned kUsualRarity = 40, kLongestMicroseconds = 5000;

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
    usleep(static_cast<useconds_t>(chance() % kLongestMicroseconds));
    errno = error;
}

}  // namespace

extern "C" int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept {
    static const auto unlock =
        reinterpret_cast<int (*)(pthread_mutex_t*)>(dlsym(RTLD_NEXT, "pthread_mutex_unlock"));
    const int result = unlock(mutex);
    WaitPerhaps();
    return result;
}
