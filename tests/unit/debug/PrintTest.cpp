// The log channel: which module a line goes to and what the shared module does with it.
#include "tests/support/PluginTest.h"

#include <thread>

#include "debug/CCDebugCommon.h"
#include "debug/Log.h"
#include "tests/support/Slots.h"

extern template std::atomic<CCDebugCommon*> CCDebug::m_Instance<CCDebugCommon>;
extern template std::atomic<CCDebugDAEPlugin*> CCDebug::m_Instance<CCDebugDAEPlugin>;

namespace {

class Output final : public IDebugIO {
public:
    void Print(const char* text, std::size_t length) override { m_pieces.emplace_back(text, length); }
    std::vector<std::string> m_pieces;
};

// The shared module with its protected operations open.
class Common : public CCDebugCommon {
public:
    using CCDebugCommon::t_InitModule;
    using CCDebugCommon::t_IsCommonModule;
    using CCDebugCommon::t_Print;
    using CCDebugCommon::t_PrintR;
    using CCDebugCommon::t_SelectDebugSubMenu;
    using CCDebugCommon::t_SetDebugLevel;
    using CCDebugCommon::t_SetDebugModule;
    using CCDebugCommon::t_ShowDebugSubMenu;

    void Print(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        t_Print(5, 4, format, &arguments);
        va_end(arguments);
    }
    void PrintR(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        t_PrintR(5, 4, format, &arguments);
        va_end(arguments);
    }
};

class PrintTest : public support::PluginTest {
protected:
    void TearDown() override {
        CCDebug::DebugIO = nullptr;
        PluginTest::TearDown();
    }
    using Pieces = std::vector<std::string>;
    static std::vector<support::LogLine> Lines() { return support::Log::Instance().Lines(); }
    Output m_output;
};

TEST_F(PrintTest, AnyModuleButZeroGoesToThePluginsOwnModuleWithItsNumberAndLevel) {
    CCDebug::DebugIO = &m_output;
    CCDebug::Print<CCDebugDAEPlugin>(1, 2, "first %d", 1);
    CCDebug::Print<CCDebugDAEPlugin>(77, 0, "second %s", "line");
    EXPECT_EQ(Lines(), (std::vector<support::LogLine>{{1, 2, "first 1"}, {77, 0, "second line"}}));
    EXPECT_TRUE(m_output.m_pieces.empty());
}

TEST_F(PrintTest, ModuleZeroGoesToTheSharedModule) {
    CCDebug::DebugIO = &m_output;
    CCDebug::Print<CCDebugDAEPlugin>(0, 2, "shared %d", 1);
    EXPECT_EQ(m_output.m_pieces, (Pieces{"shared 1", "\n"}));
    EXPECT_TRUE(Lines().empty());
}

TEST_F(PrintTest, TheSharedModulePrintsEveryLevel) {
    CCDebug::DebugIO = &m_output;
    for (unsigned long level = 0; level < 6; ++level) {
        CCDebug::Print<CCDebugDAEPlugin>(0, level, "%lu", level);
    }
    EXPECT_EQ(m_output.m_pieces, (Pieces{"0", "\n", "1", "\n", "2", "\n", "3", "\n", "4", "\n", "5", "\n"}));
}

TEST_F(PrintTest, WithoutAnOutputTheSharedModulePrintsNothing) {
    CCDebug::Print<CCDebugDAEPlugin>(0, 0, "lost");
    CCDebug::DebugIO = &m_output;
    CCDebug::Print<CCDebugDAEPlugin>(0, 0, "seen");
    EXPECT_EQ(m_output.m_pieces, (Pieces{"seen", "\n"}));
}

TEST_F(PrintTest, TheSharedModuleCanPrintWithoutTheLinesEnd) {
    Common common;
    common.PrintR("%s", "nowhere");
    CCDebug::DebugIO = &m_output;
    common.PrintR("%s and %d", "part", 2);
    common.Print("%s", "line");
    EXPECT_EQ(m_output.m_pieces, (Pieces{"part and 2", "line", "\n"}));
}

TEST_F(PrintTest, TheSharedModuleRegistersItselfByItsName) {
    Common common;
    common.t_InitModule();
    EXPECT_EQ(Calls(), Pieces{"debug.AddModule(CommonDebug, 1)"});
}

TEST_F(PrintTest, OnlyTheSharedModuleIsTheCommonOne) {
    struct Own : CCDebugDAEPlugin {
        using CCDebugDAEPlugin::t_IsCommonModule;
    };
    Common common;
    Own own;
    EXPECT_TRUE(common.t_IsCommonModule());
    EXPECT_FALSE(own.t_IsCommonModule());
}

TEST_F(PrintTest, WhatTheSharedModuleInheritsDoesNothing) {
    CCDebug::DebugIO = &m_output;
    Common common;
    common.Reset();
    common.t_ShowDebugSubMenu();
    common.t_SelectDebugSubMenu(1);
    common.t_SetDebugLevel(0);
    common.t_SetDebugModule(5, false);
    common.Print("still printed");
    EXPECT_EQ(m_output.m_pieces, (Pieces{"still printed", "\n"}));
    EXPECT_TRUE(Calls().empty());
}

TEST_F(PrintTest, TheOperationsKeepTheirSlots) {
    EXPECT_EQ(support::SlotOf(&Common::Reset), 2u);  // after the destructor's two
    EXPECT_EQ(support::SlotOf(&Common::t_Print), 3u);
    EXPECT_EQ(support::SlotOf(&Common::t_PrintR), 4u);
    EXPECT_EQ(support::SlotOf(&Common::t_InitModule), 5u);
    EXPECT_EQ(support::SlotOf(&Common::t_ShowDebugSubMenu), 6u);
    EXPECT_EQ(support::SlotOf(&Common::t_SelectDebugSubMenu), 7u);
    EXPECT_EQ(support::SlotOf(&Common::t_SetDebugLevel), 8u);
    EXPECT_EQ(support::SlotOf(&Common::t_SetDebugModule), 9u);
    EXPECT_EQ(support::SlotOf(&Common::t_IsCommonModule), 10u);
}

TEST_F(PrintTest, TextFromOutsideIsNeverAFormat) {
    CCDebug::DebugIO = &m_output;
    CCDebug::Print<CCDebugDAEPlugin>(0, 0, "%s", "100%s %n %d");
    CCDebug::Print<CCDebugDAEPlugin>(1, 0, "%s", "100%s %n %d");
    EXPECT_EQ(m_output.m_pieces, (Pieces{"100%s %n %d", "\n"}));
    ExpectLogged(0, "100%s %n %d");
}

TEST_F(PrintTest, LongLinesAreNotCut) {
    CCDebug::DebugIO = &m_output;
    const std::string text(100000, 'x');
    CCDebug::Print<CCDebugDAEPlugin>(0, 0, "%s.", text.c_str());
    CCDebug::Print<CCDebugDAEPlugin>(1, 0, "%s.", text.c_str());
    EXPECT_EQ(m_output.m_pieces, (Pieces{text + ".", "\n"}));
    ExpectLogged(0, text + ".");
}

TEST_F(PrintTest, ALineThatCannotBeFormattedIsEmpty) {
    CCDebug::DebugIO = &m_output;
    CCDebug::Print<CCDebugDAEPlugin>(0, 0, "%ls", L"\x20AC");  // no such character in the C locale
    EXPECT_EQ(m_output.m_pieces, (Pieces{"", "\n"}));
}

TEST_F(PrintTest, AnEmptyLineIsALine) {
    CCDebug::DebugIO = &m_output;
    CCDebug::Print<CCDebugDAEPlugin>(0, 0, "%s", "");
    EXPECT_EQ(m_output.m_pieces, (Pieces{"", "\n"}));
}

TEST_F(PrintTest, EachModuleIsMadeOnce) {
    CCDebug::Print<CCDebugDAEPlugin>(0, 0, "one");
    CCDebug::Print<CCDebugDAEPlugin>(1, 0, "one");
    CCDebugCommon* common = CCDebug::m_Instance<CCDebugCommon>;
    CCDebugDAEPlugin* own = CCDebug::m_Instance<CCDebugDAEPlugin>;
    ASSERT_NE(common, nullptr);
    ASSERT_NE(own, nullptr);
    CCDebug::Print<CCDebugDAEPlugin>(0, 0, "two");
    CCDebug::Print<CCDebugDAEPlugin>(1, 0, "two");
    EXPECT_EQ(CCDebug::m_Instance<CCDebugCommon>, common);
    EXPECT_EQ(CCDebug::m_Instance<CCDebugDAEPlugin>, own);
}

TEST_F(PrintTest, AModuleThatAnotherLineMadeFirstIsUsedByBoth) {
    CCDebugDAEPlugin* own = CCDebug::m_Instance<CCDebugDAEPlugin>.exchange(nullptr);
    CCDebugDAEPlugin* first = nullptr;
    support::Log::Instance().WhenModuleIsMade([&] {
        LOG_TRACE("inner");
        first = CCDebug::m_Instance<CCDebugDAEPlugin>;
    });
    LOG_TRACE("outer");
    EXPECT_EQ(support::Log::Instance().Texts(), (Pieces{"inner", "outer"}));
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(CCDebug::m_Instance<CCDebugDAEPlugin>, first);
    if (own != nullptr) delete CCDebug::m_Instance<CCDebugDAEPlugin>.exchange(own);
}

TEST_F(PrintTest, EachKindOfLineHasItsModuleAndLevel) {
    LOG_ENTRY("entry");
    LOG_TRACE("trace");
    LOG_DETAIL("detail");
    LOG_WARNING("warning");
    LOG_ERROR("error");
    EXPECT_EQ(Lines(), (std::vector<support::LogLine>{
                           {3, 3, "entry"}, {1, 3, "trace"}, {1, 4, "detail"}, {1, 2, "warning"}, {1, 0, "error"}}));
}

TEST_F(PrintTest, TheModuleDecidesWhichLevelsItKeeps) {
    support::Log::Instance().SetLevel(2);
    LOG_TRACE("trace");
    LOG_WARNING("warning");
    support::Log::Instance().SetLevel(-1);
    LOG_ERROR("error");
    EXPECT_EQ(Lines(), (std::vector<support::LogLine>{{1, 2, "warning"}}));
}

TEST_F(PrintTest, ThreadsMayPrintAtTheSameTimeAndFirst) {
    constexpr int kLines = 200;
    const auto print = [](int thread) {
        for (int i = 0; i < kLines; ++i) {
            CCDebug::Print<CCDebugDAEPlugin>(1, 3, "thread %d line %d", thread, i);
        }
    };
    std::thread first(print, 1), second(print, 2);
    first.join();
    second.join();
    EXPECT_EQ(Lines().size(), 2u * kLines);
    ExpectLogged(3, "thread 1 line 0");
    ExpectLogged(3, "thread 2 line 199");
}

}  // namespace
