// What any platform library must keep, asked of the one that is loaded as libtvplatform.so.1.
#include <gtest/gtest.h>

#include "tests/platform/Host.h"

namespace {

class Platform : public testing::Environment {
    void SetUp() override { contract::StartPlatform(); }
    void TearDown() override { contract::EndPlatform(); }
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::AddGlobalTestEnvironment(new Platform);
    return RUN_ALL_TESTS();
}
