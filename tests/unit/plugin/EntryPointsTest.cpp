// The four exported functions, over the video/broadcast object.
#include "tests/support/PluginTest.h"

#include "tests/support/PluginInstance.h"

extern "C" {
NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin);
NPError NP_GetValue(void* future, NPPVariable variable, void* value);
const char* NP_GetMIMEDescription();
NPError NP_Shutdown();
}

namespace {

using support::PluginInstance;
using support::Value;

class EntryPointsTest : public support::PluginTest {
protected:
    static std::vector<support::LogLine> Lines() { return support::Log::Instance().Lines(); }
    static bool StartsWith(const support::LogLine& line, const std::string& text) {
        return line.module == 3 && line.level == 3 && line.text.starts_with(text);
    }
    PluginInstance::Table functions = PluginInstance::MakeTable();
};

TEST_F(EntryPointsTest, TheMimeDescriptionIsKnownBeforeAnythingElse) {
    EXPECT_STREQ(NP_GetMIMEDescription(), "video/broadcast::OIPF Video Broadcast Plugin");
    EXPECT_EQ(Lines(), (std::vector<support::LogLine>{
                           {3, 3, "NP_GetMIMEDescription():video/broadcast::OIPF Video Broadcast Plugin"}}));
}

TEST_F(EntryPointsTest, NameAndDescriptionAreAnsweredWithoutAnInstance) {
    const char* text = nullptr;
    EXPECT_EQ(NP_GetValue(nullptr, NPPVpluginNameString, &text), NPERR_NO_ERROR);
    EXPECT_STREQ(text, "OIPF video/broadcast plugin");
    EXPECT_EQ(NP_GetValue(this, NPPVpluginDescriptionString, &text), NPERR_NO_ERROR);
    EXPECT_STREQ(text, "video/broadcast::OIPF Video Broadcast Plugin");
    ExpectLogged(3, "NP_GetValue()", 2);
}

TEST_F(EntryPointsTest, AScriptableObjectIsNotToBeHadWithoutAnInstance) {
    NPObject* object = nullptr;
    EXPECT_EQ(NP_GetValue(nullptr, NPPVpluginScriptableNPObject, &object), NPERR_GENERIC_ERROR);
    ExpectLogged(0, "NULL instance!");
}

TEST_F(EntryPointsTest, InitialisingFillsTheTable) {
    EXPECT_EQ(NP_Initialize(browser.Table(), functions.get()), NPERR_NO_ERROR);
    EXPECT_EQ(functions->version, 24);
    EXPECT_EQ(Lines().at(0), (support::LogLine{3, 3, "NP_Initialize()"}));
    EXPECT_TRUE(StartsWith(Lines().at(1), "CNPAPIPlugin<"));
    EXPECT_TRUE(Lines().at(1).text.ends_with(">::Initialize(d)"));
}

TEST_F(EntryPointsTest, ARefusalReachesTheBrowser) {
    EXPECT_EQ(NP_Initialize(nullptr, functions.get()), NPERR_INVALID_FUNCTABLE_ERROR);
    EXPECT_EQ(NP_Initialize(browser.Table(support::FakeBrowser::kThroughConvertPoint, 0x0100), functions.get()),
              NPERR_INCOMPATIBLE_VERSION_ERROR);
}

TEST_F(EntryPointsTest, ShutdownOnlyLogs) {
    EXPECT_EQ(NP_Shutdown(), NPERR_NO_ERROR);
    ASSERT_EQ(Lines().size(), 2u);
    EXPECT_EQ(Lines()[0], (support::LogLine{3, 3, "NP_Shutdown()"}));
    EXPECT_TRUE(StartsWith(Lines()[1], "CNPAPIPlugin<"));
    EXPECT_TRUE(Lines()[1].text.ends_with(">::Shutdown()"));
}

TEST_F(EntryPointsTest, InstancesSurviveAShutdownAndASecondStart) {
    PluginInstance before(browser);
    EXPECT_EQ(NP_Shutdown(), NPERR_NO_ERROR);
    PluginInstance after(browser);
    EXPECT_EQ(before.Get("playState").value, Value(0));
    EXPECT_EQ(after.Get("playState").value, Value(0));
}

TEST_F(EntryPointsTest, ABrowserWithoutTheOptionalFunctionsIsServed) {
    browser.LeaveOutOptionalFunctions();
    PluginInstance instance(browser);
    NPSetWindowCallbackStruct platformInformation{};
    NPWindow window{};
    window.width = 640;
    window.height = 360;
    window.ws_info = &platformInformation;
    EXPECT_EQ(instance.Functions().setwindow(instance.Npp(), &window), NPERR_NO_ERROR);
    EXPECT_EQ(instance.Get("width").value, Value(640));
}

TEST_F(EntryPointsTest, TheObjectRefusesStreams) {
    PluginInstance instance(browser);
    NPStream stream{};
    EXPECT_EQ(instance.Functions().newstream(instance.Npp(), nullptr, &stream, 0, nullptr), NPERR_INVALID_PARAM);
    EXPECT_EQ(instance.Functions().destroystream(instance.Npp(), &stream, 0), NPERR_INVALID_PARAM);
    EXPECT_EQ(instance.Functions().writeready(instance.Npp(), &stream), -1);
    EXPECT_EQ(instance.Functions().write(instance.Npp(), &stream, 0, 0, nullptr), -1);
}

TEST_F(EntryPointsTest, AnInstanceWithoutAnObjectIsDestroyedWithoutData) {
    browser.FailNth("createobject", 1);
    PluginInstance instance(browser);
    EXPECT_EQ(instance.Object(), nullptr);
    EXPECT_EQ(instance.Destroy(), NPERR_NO_DATA);
}

}  // namespace
