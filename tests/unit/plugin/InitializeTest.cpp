// What the plug-in takes from the browser's table and what it puts into its own.
#include "tests/unit/plugin/TestPlugin.h"

#include <cstring>

#include "tests/unit/plugin/MallocFault.h"

namespace {

using support::FakeBrowser;
using support::PluginInstance;

class InitializeTest : public TestPluginTest {
protected:
    InitializeTest() { ClearLog(); }
    static constexpr std::size_t kBrowserSize = FakeBrowser::kThroughConvertPoint;
    static constexpr std::size_t kPluginSize = PluginInstance::kThroughGetSitesWithData;
};

TEST_F(InitializeTest, TheSizesAreThoseOfATelevision) {
    if (sizeof(void*) == 4) {
        EXPECT_EQ(kBrowserTableSize, 212u);
        EXPECT_EQ(kPluginTableSize, 80u);
    } else {
        EXPECT_EQ(kBrowserTableSize, 424u);
        EXPECT_EQ(kPluginTableSize, 160u);
    }
}

TEST_F(InitializeTest, NullTablesAreRefused) {
    EXPECT_EQ(Plugin::Initialize(nullptr, functions.get()), NPERR_INVALID_FUNCTABLE_ERROR);
    EXPECT_EQ(Plugin::Initialize(browser.Table(), nullptr), NPERR_INVALID_FUNCTABLE_ERROR);
    EXPECT_EQ(Plugin::Initialize(nullptr, nullptr), NPERR_INVALID_FUNCTABLE_ERROR);
    ExpectLogged(0, "NPERR_INVALID_FUNCTABLE_ERROR (NULL pointers)", 3);
    EXPECT_EQ(support::Log::Instance().Lines()[0], (support::LogLine{3, 3, Line("Initialize(d)")}));
}

TEST_F(InitializeTest, ATableOneByteTooShortIsRefused) {
    NPNetscapeFuncs* table = browser.Table();
    table->size = kBrowserSize - 1;
    EXPECT_EQ(Plugin::Initialize(table, functions.get()), NPERR_INVALID_FUNCTABLE_ERROR);
    functions->size = kPluginSize - 1;
    EXPECT_EQ(Plugin::Initialize(browser.Table(), functions.get()), NPERR_INVALID_FUNCTABLE_ERROR);
    ExpectLogged(0, "NPERR_INVALID_FUNCTABLE_ERROR (sizes)", 2);
    EXPECT_EQ(functions->size, kPluginSize - 1) << "a refused table is not written";
}

TEST_F(InitializeTest, TablesOfExactlyTheLeastSizeAreTaken) {
    auto table = PluginInstance::MakeTable(kPluginSize);
    EXPECT_EQ(Plugin::Initialize(browser.Table(kBrowserSize, 0x0018), table.get()), NPERR_NO_ERROR);
}

TEST_F(InitializeTest, LongerTablesAreTaken) {
    auto table = PluginInstance::MakeTable(kPluginSize + sizeof(void*));
    EXPECT_EQ(Plugin::Initialize(browser.Table(sizeof(NPNetscapeFuncs) + 24), table.get()), NPERR_NO_ERROR);
    EXPECT_EQ(table->size, kPluginSize) << "the size that we fill";
}

TEST_F(InitializeTest, OnlyTheMajorVersionMustBeZero) {
    EXPECT_EQ(Plugin::Initialize(browser.Table(kBrowserSize, 0x0000), functions.get()), NPERR_NO_ERROR);
    EXPECT_EQ(Plugin::Initialize(browser.Table(kBrowserSize, 0x00FF), functions.get()), NPERR_NO_ERROR);
    EXPECT_EQ(Plugin::Initialize(browser.Table(kBrowserSize, 0x0100), functions.get()),
              NPERR_INCOMPATIBLE_VERSION_ERROR);
    EXPECT_EQ(Plugin::Initialize(browser.Table(sizeof(NPNetscapeFuncs) + 24, 0xFF18), functions.get()),
              NPERR_INCOMPATIBLE_VERSION_ERROR);
    ExpectLogged(0, "NPERR_INCOMPATIBLE_VERSION_ERROR", 2);
}

TEST_F(InitializeTest, TheSizesAreLookedAtBeforeTheVersion) {
    NPNetscapeFuncs* table = browser.Table(kBrowserSize, 0x0100);
    table->size = kBrowserSize - 1;
    EXPECT_EQ(Plugin::Initialize(table, functions.get()), NPERR_INVALID_FUNCTABLE_ERROR);
    ExpectLogged(0, "NPERR_INVALID_FUNCTABLE_ERROR (sizes)");
}

TEST_F(InitializeTest, TheBrowsersTableIsCopiedByteForByteIntoTheSameBlock) {
    NPNetscapeFuncs* first = browser.Table();
    EXPECT_EQ(Plugin::Initialize(first, functions.get()), NPERR_NO_ERROR);
    NPNetscapeFuncs* block = Plugin::s_pNPNFuncs;
    ASSERT_NE(block, nullptr);
    EXPECT_NE(block, first);
    EXPECT_EQ(std::memcmp(block, first, kBrowserSize), 0);
    browser.LeaveOut(&NPNetscapeFuncs::forceredraw);
    NPNetscapeFuncs* second = browser.Table(sizeof(NPNetscapeFuncs), 27);
    EXPECT_EQ(Plugin::Initialize(second, functions.get()), NPERR_NO_ERROR);
    EXPECT_EQ(Plugin::s_pNPNFuncs, block);
    EXPECT_EQ(std::memcmp(block, second, kBrowserSize), 0);
    EXPECT_EQ(block->forceredraw, nullptr);
}

TEST_F(InitializeTest, WithoutMemoryForTheCopyThePluginIsNotInitialised) {
    NPNetscapeFuncs* block = std::exchange(Plugin::s_pNPNFuncs, nullptr);
    auto table = PluginInstance::MakeTable();
    NPNetscapeFuncs* browserTable = browser.Table();
    {
        const MallocFault fault(kBrowserSize);
        EXPECT_EQ(Plugin::Initialize(browserTable, table.get()), NPERR_OUT_OF_MEMORY_ERROR);
    }
    ExpectLogged(0, "Out of memory!");
    EXPECT_EQ(Plugin::s_pNPNFuncs, nullptr);
    EXPECT_EQ(table->newp, nullptr);
    Plugin::s_pNPNFuncs = block;
}

TEST_F(InitializeTest, ARefusedFirstTableIsNotCopied) {
    NPNetscapeFuncs* block = std::exchange(Plugin::s_pNPNFuncs, nullptr);
    auto table = PluginInstance::MakeTable(kPluginSize - 1);
    EXPECT_NE(Plugin::Initialize(browser.Table(), table.get()), NPERR_NO_ERROR);
    EXPECT_NE(Plugin::Initialize(browser.Table(kBrowserSize, 0x0100), functions.get()), NPERR_NO_ERROR);
    EXPECT_EQ(Plugin::s_pNPNFuncs, nullptr);
    Plugin::s_pNPNFuncs = block;
}

TEST_F(InitializeTest, ARefusedTableLeavesTheCopyAlone) {
    const NPNetscapeFuncs* block = Plugin::s_pNPNFuncs;
    NPNetscapeFuncs* table = browser.Table(kBrowserSize, 0x0100);
    EXPECT_NE(Plugin::Initialize(table, functions.get()), NPERR_NO_ERROR);
    EXPECT_EQ(Plugin::s_pNPNFuncs, block);
    EXPECT_EQ(block->version, 26);
}

TEST_F(InitializeTest, TheSlotsOfThePluginsTableAreFilled) {
    std::memset(static_cast<void*>(functions.get()), 0xAB, kPluginSize);
    functions->size = kPluginSize;
    const auto beyond = functions->gotfocus;
    EXPECT_EQ(Plugin::Initialize(browser.Table(), functions.get()), NPERR_NO_ERROR);
    EXPECT_EQ(functions->size, kPluginSize);
    EXPECT_EQ(functions->version, 24);
    EXPECT_NE(functions->newp, nullptr);
    EXPECT_NE(functions->destroy, nullptr);
    EXPECT_NE(functions->setwindow, nullptr);
    EXPECT_NE(functions->newstream, nullptr);
    EXPECT_NE(functions->destroystream, nullptr);
    EXPECT_EQ(functions->asfile, nullptr);
    EXPECT_NE(functions->writeready, nullptr);
    EXPECT_NE(functions->write, nullptr);
    EXPECT_EQ(functions->print, nullptr);
    EXPECT_NE(functions->event, nullptr);
    EXPECT_EQ(functions->urlnotify, nullptr);
    EXPECT_EQ(functions->javaClass, nullptr);
    EXPECT_NE(functions->getvalue, nullptr);
    EXPECT_NE(functions->setvalue, nullptr);
    EXPECT_EQ(functions->gotfocus, beyond) << "what lies beyond is not written";
    EXPECT_EQ(std::memcmp(&functions->gotfocus, &functions->lostfocus, sizeof(void*)), 0);
    EXPECT_EQ(std::memcmp(&functions->gotfocus, &functions->getsiteswithdata, sizeof(void*)), 0);
}

}  // namespace
