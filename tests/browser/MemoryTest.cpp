// That memory does not come from more places than it must.
#include "browser/Memory.h"

#include <gtest/gtest.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <algorithm>
#include <barrier>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace browser {

namespace {

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

int Arenas() {
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* file = open_memstream(&text, &size);
    malloc_info(0, file);
    std::fclose(file);
    const std::string xml(text, size);
    std::free(text);
    int count = 0;
    for (auto at = xml.find("<heap nr="); at != std::string::npos; at = xml.find("<heap nr=", at + 1)) {
        ++count;
    }
    return count;
}

TEST(Memory, ComesFromTwoPlacesForHoweverManyThreads) {
    constexpr int kThreads = 12;
    const int before = Arenas();
    ShareMemoryAmongThreads();
    std::barrier allThere(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            const auto memory = std::make_unique<std::vector<char>>(10'000);
            allThere.arrive_and_wait();
            EXPECT_EQ(memory->back(), 0);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_LE(Arenas(), std::max(before, 2));
}

#endif

}  // namespace

}  // namespace browser
