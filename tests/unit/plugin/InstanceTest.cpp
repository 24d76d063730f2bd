// The life of an instance and what its object is told.
#include "tests/unit/plugin/TestPlugin.h"

namespace {

class InstanceTest : public TestPluginTest {};

TEST_F(InstanceTest, CreatingOneMakesItsObjectAndTellsItTypeAndAttributes) {
    EXPECT_EQ(Create({"id", "tv", "width", "640"}), NPERR_NO_ERROR);
    ASSERT_NE(npp->pdata, nullptr);
    EXPECT_EQ(TestObject::s_log, (Texts{"SetMimeType video/test", "SetAttributes id=tv width=640"}));
    EXPECT_EQ(Object()->referenceCount, 1u);
    EXPECT_EQ(Object()->_class, &Class::s_npclass);
    ExpectLogged(3, Line("CreateInstance()"));
    EXPECT_EQ(Destroy(), NPERR_NO_ERROR);
}

TEST_F(InstanceTest, TheInstanceHasItsObjectWhenThatIsToldItsType) {
    void* data = nullptr;
    TestObject::s_during = [&] { data = npp->pdata; };
    Create();
    EXPECT_NE(data, nullptr);
    EXPECT_EQ(data, npp->pdata);
    Destroy();
}

TEST_F(InstanceTest, ThePrivateDataIsTheObjectAndNotItsBrowserPart) {
    Create();
    EXPECT_EQ(static_cast<char*>(npp->pdata) + sizeof(void*),
              reinterpret_cast<char*>(static_cast<NPObject*>(Object())));
    Destroy();
}

TEST_F(InstanceTest, WithoutAnInstanceThereIsNothingToCreate) {
    ClearLog();
    char type[] = "video/test";
    EXPECT_EQ(functions->newp(type, nullptr, NP_EMBED, 0, nullptr, nullptr, nullptr), NPERR_INVALID_INSTANCE_ERROR);
    EXPECT_TRUE(support::Log::Instance().Lines().empty());
}

TEST_F(InstanceTest, TheFirstInstanceGivesTheClassTheTable) {
    Class::s_pNPNFuncs = nullptr;
    Create();
    EXPECT_EQ(Class::s_pNPNFuncs, Plugin::s_pNPNFuncs);
    EXPECT_EQ(TestObject::s_table, Plugin::s_pNPNFuncs);
    Destroy();
}

TEST_F(InstanceTest, ATableThatTheClassHasStays) {
    Class::s_pNPNFuncs = browser.Functions();
    Create();
    EXPECT_EQ(Class::s_pNPNFuncs, browser.Functions());
    EXPECT_EQ(TestObject::s_table, browser.Functions());
    Destroy();
    Class::s_pNPNFuncs = nullptr;
}

TEST_F(InstanceTest, AnInstanceMayLiveWithoutAnObject) {
    browser.FailNth("createobject", 1);
    npp->pdata = this;
    EXPECT_EQ(Create(), NPERR_NO_ERROR);
    EXPECT_EQ(npp->pdata, nullptr);
    EXPECT_TRUE(TestObject::s_log.empty());
    NPObject* object = nullptr;
    EXPECT_EQ(functions->getvalue(npp, NPPVpluginScriptableNPObject, &object), NPERR_GENERIC_ERROR);
    ExpectLogged(0, "NULL instance->pdata!");
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(Destroy(), NPERR_NO_DATA);
}

TEST_F(InstanceTest, BeforeTheTableIsKnownAnInstanceHasNoObject) {
    NPNetscapeFuncs* table = std::exchange(Plugin::s_pNPNFuncs, nullptr);
    EXPECT_EQ(Create(), NPERR_NO_ERROR);
    EXPECT_EQ(npp->pdata, nullptr);
    Plugin::s_pNPNFuncs = table;
}

TEST_F(InstanceTest, CallsDuringTheConstructionFindNoObject) {
    npp->pdata = this;
    TestObject::s_atConstruction = [this] {
        EXPECT_EQ(npp->pdata, nullptr);
        NPObject* object = nullptr;
        EXPECT_EQ(functions->getvalue(npp, NPPVpluginScriptableNPObject, &object), NPERR_GENERIC_ERROR);
        EXPECT_EQ(functions->setwindow(npp, nullptr), NPERR_NO_ERROR);
    };
    EXPECT_EQ(Create(), NPERR_NO_ERROR);
    EXPECT_EQ(TestObject::s_log, (Texts{"SetMimeType video/test", "SetAttributes"}));
    Destroy();
}

TEST_F(InstanceTest, AnObjectThatCannotBeConstructedIsNone) {
    TestObject::s_atConstruction = [] {
        --TestObject::s_living;
        throw std::runtime_error("no");
    };
    EXPECT_EQ(Create(), NPERR_NO_ERROR);
    EXPECT_EQ(npp->pdata, nullptr);
}

TEST_F(InstanceTest, DestroyingOneGivesItsReferenceBack) {
    Create();
    ClearLog();
    EXPECT_EQ(Destroy(), NPERR_NO_ERROR);
    EXPECT_EQ(npp->pdata, nullptr);
    EXPECT_EQ(TestObject::s_living, 0);
    EXPECT_EQ(support::Log::Instance().Lines(), (std::vector<support::LogLine>{{3, 3, Line("DestroyInstance()")}}))
        << "the object is not invalidated";
}

TEST_F(InstanceTest, TheInstanceHasNoObjectAnyMoreWhenThatDies) {
    Create();
    void* data = this;
    TestObject::s_atDestruction = [&] { data = npp->pdata; };
    Destroy();
    EXPECT_EQ(data, nullptr);
}

TEST_F(InstanceTest, AfterAShutdownObjectsAreStillMadeFromTheSameTable) {
    Plugin::Shutdown();
    NPNetscapeFuncs* table = Plugin::s_pNPNFuncs;
    EXPECT_NE(table, nullptr);
    Create();
    EXPECT_NE(npp->pdata, nullptr);
    EXPECT_EQ(Plugin::s_pNPNFuncs, table);
    Destroy();
}

TEST_F(InstanceTest, AnObjectThatThePageHoldsOutlivesItsInstance) {
    Create();
    NPObject* object = Object();
    browser.GetLedger().Hold(object);
    EXPECT_EQ(Destroy(), NPERR_NO_ERROR);
    EXPECT_EQ(TestObject::s_living, 1);
    EXPECT_EQ(browser.Call(object, "toString").value, support::Value("[object Test]"));
    browser.GetLedger().Drop(object);
    EXPECT_EQ(TestObject::s_living, 0);
}

TEST_F(InstanceTest, DestroyingTwiceFindsNoData) {
    Create();
    NPSavedData* saved = reinterpret_cast<NPSavedData*>(this);
    EXPECT_EQ(functions->destroy(npp, &saved), NPERR_NO_ERROR);
    EXPECT_EQ(functions->destroy(npp, &saved), NPERR_NO_DATA);
    EXPECT_EQ(saved, reinterpret_cast<NPSavedData*>(this)) << "never written";
    ExpectLogged(3, Line("DestroyInstance()"), 2);
}

TEST_F(InstanceTest, ANullInstanceIsAnsweredAsOneWithoutAnObject) {
    std::int16_t event = 5;
    NPStream stream{};
    EXPECT_EQ(functions->destroy(nullptr, nullptr), NPERR_NO_DATA);
    EXPECT_EQ(functions->setwindow(nullptr, nullptr), NPERR_NO_ERROR);
    EXPECT_EQ(functions->event(nullptr, &event), 0);
    EXPECT_EQ(functions->newstream(nullptr, nullptr, &stream, 0, nullptr), 2);
    EXPECT_EQ(functions->destroystream(nullptr, &stream, 0), 2);
    EXPECT_EQ(functions->writeready(nullptr, &stream), 2);
    EXPECT_EQ(functions->write(nullptr, &stream, 0, 0, nullptr), 2);
}

TEST_F(InstanceTest, TheWindowReachesTheObjectAndIsAlwaysAccepted) {
    NPWindow window{};
    EXPECT_EQ(functions->setwindow(npp, &window), NPERR_NO_ERROR) << "without an object";
    Create();
    EXPECT_EQ(functions->setwindow(npp, &window), NPERR_NO_ERROR);
    EXPECT_EQ(TestObject::s_window, &window);
    TestObject::s_during = [] { throw std::runtime_error("no"); };
    EXPECT_EQ(functions->setwindow(npp, &window), NPERR_NO_ERROR);
    Destroy();
}

TEST_F(InstanceTest, AnEventReachesTheObjectAndItsAnswerTheBrowser) {
    std::int16_t event = 1;
    EXPECT_EQ(functions->event(npp, &event), 0);
    Create();
    EXPECT_EQ(functions->event(npp, &event), 1);
    event = -2;
    EXPECT_EQ(functions->event(npp, &event), -2);
    TestObject::s_during = [] { throw std::runtime_error("no"); };
    EXPECT_EQ(functions->event(npp, &event), 0);
    Destroy();
}

TEST_F(InstanceTest, AnObjectWhoseInstanceIsDestroyedDuringItsCallLivesUntilTheCallEnds) {
    Create();
    std::int16_t event = 7;
    TestObject::s_during = [this] {
        EXPECT_EQ(Destroy(), NPERR_NO_ERROR);
        EXPECT_EQ(TestObject::s_living, 1);
    };
    EXPECT_EQ(functions->event(npp, &event), 7);
    EXPECT_EQ(TestObject::s_living, 0);
}

TEST_F(InstanceTest, ManyInstancesHaveObjectsOfTheirOwn) {
    Create();
    NPP first = std::exchange(npp, browser.MakeInstance());
    Create();
    EXPECT_NE(first->pdata, npp->pdata);
    EXPECT_EQ(TestObject::s_living, 2);
    EXPECT_EQ(Destroy(), NPERR_NO_ERROR);
    EXPECT_EQ(functions->destroy(first, nullptr), NPERR_NO_ERROR);
}

// Streams.
class StreamsTest : public TestPluginTest {
protected:
    NPStream stream{};
    StreamsTest() { stream.url = "http://tv.example/x"; }
    void TellAll(NPStream* told) {
        char buffer[] = "bytes";
        functions->newstream(npp, nullptr, told, 1, nullptr);
        functions->destroystream(npp, told, 1);
        functions->writeready(npp, told);
        functions->write(npp, told, 10, 20, buffer);
    }
};

TEST_F(StreamsTest, TheObjectsAnswersReachTheBrowser) {
    Create();
    char buffer[] = "bytes";
    std::uint16_t streamType = 99;
    TestObject::s_log.clear();
    EXPECT_EQ(functions->newstream(npp, nullptr, &stream, 1, &streamType), 40);
    EXPECT_EQ(TestObject::s_stream, &stream);
    EXPECT_EQ(functions->destroystream(npp, &stream, 2), 41);
    EXPECT_EQ(functions->writeready(npp, &stream), 42000);
    EXPECT_EQ(functions->write(npp, &stream, 10, 20, buffer), 43000);
    EXPECT_EQ(TestObject::s_log, (Texts{"NewStream", "DestroyStream 2", "WriteReady", "Write 10 20 bytes"}));
    EXPECT_EQ(streamType, 99) << "not written";
    Destroy();
}

TEST_F(StreamsTest, WithoutAnObjectEachAnswersTwo) {
    EXPECT_EQ(functions->newstream(npp, nullptr, &stream, 1, nullptr), 2);
    EXPECT_EQ(functions->destroystream(npp, &stream, 1), 2);
    EXPECT_EQ(functions->writeready(npp, &stream), 2);
    EXPECT_EQ(functions->write(npp, &stream, 0, 0, nullptr), 2);
}

TEST_F(StreamsTest, TheyAreLoggedWithAndWithoutAnObject) {
    TellAll(&stream);
    Create();
    TellAll(&stream);
    ExpectLogged(3, Line("NewStream(http://tv.example/x)"), 2);
    ExpectLogged(3, Line("DestroyStream(http://tv.example/x)"), 2);
    ExpectLogged(3, Line("WriteReady(http://tv.example/x)"), 2);
    ExpectLogged(3, Line("Write(http://tv.example/x, offset 10, length 20)"), 2);
    Destroy();
}

TEST_F(StreamsTest, AMissingStreamOrUrlIsAnEmptyText) {
    stream.url = nullptr;
    Create();
    TellAll(&stream);
    EXPECT_EQ(TestObject::s_stream, &stream);
    TellAll(nullptr);
    EXPECT_EQ(TestObject::s_stream, nullptr) << "forwarded all the same";
    ExpectLogged(3, Line("NewStream()"), 2);
    ExpectLogged(3, Line("Write(, offset 10, length 20)"), 2);
    Destroy();
}

}  // namespace
