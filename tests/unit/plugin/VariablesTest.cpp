// NPP_GetValue and NPP_SetValue.
#include "tests/unit/plugin/TestPlugin.h"

namespace {

class VariablesTest : public TestPluginTest {
protected:
    NPError Get(unsigned int variable, void* value) {
        return functions->getvalue(npp, static_cast<NPPVariable>(variable), value);
    }
};

TEST_F(VariablesTest, NameAndDescriptionAreAnswered) {
    const char* text = nullptr;
    EXPECT_EQ(Get(1, &text), NPERR_NO_ERROR);
    EXPECT_STREQ(text, "OIPF video/broadcast plugin");
    EXPECT_EQ(Get(2, &text), NPERR_NO_ERROR);
    EXPECT_STREQ(text, "video/test::A test plug-in");
}

TEST_F(VariablesTest, XEmbedIsNotNeededWhichIsOneByte) {
    unsigned char bytes[4] = {0xAB, 0xAB, 0xAB, 0xAB};
    EXPECT_EQ(Get(14, bytes), NPERR_NO_ERROR);
    EXPECT_EQ(bytes[0], 0);
    EXPECT_EQ(bytes[1], 0xAB);
}

TEST_F(VariablesTest, TheScriptableObjectIsHandedOutWithAReference) {
    Create();
    NPObject* object = nullptr;
    EXPECT_EQ(Get(15, &object), NPERR_NO_ERROR);
    EXPECT_EQ(object, static_cast<NPObject*>(Object()));
    EXPECT_EQ(object->referenceCount, 2u);
    browser.TakeOver("NPP_GetValue", object);
    Destroy();
    EXPECT_EQ(TestObject::s_living, 1);
    browser.GetLedger().Drop(object);
}

TEST_F(VariablesTest, TheScriptableObjectNeedsAnInstanceWithAnObject) {
    NPObject* object = nullptr;
    EXPECT_EQ(functions->getvalue(nullptr, NPPVpluginScriptableNPObject, &object), NPERR_GENERIC_ERROR);
    ExpectLogged(0, "NULL instance!");
    EXPECT_EQ(Get(15, &object), NPERR_GENERIC_ERROR);
    ExpectLogged(0, "NULL instance->pdata!");
    EXPECT_EQ(object, nullptr);
}

TEST_F(VariablesTest, KnownVariablesAreRefusedWithoutALine) {
    ClearLog();
    std::intptr_t untouched = 0x5A5A;
    for (const unsigned int variable : {3u, 4u, 5u, 6u, 7u, 11u, 12u, 13u, 16u, 17u, 18u, 20u, 0x1000000Au}) {
        EXPECT_EQ(Get(variable, &untouched), NPERR_GENERIC_ERROR) << variable;
    }
    EXPECT_EQ(untouched, 0x5A5A);
    EXPECT_TRUE(support::Log::Instance().Lines().empty());
}

TEST_F(VariablesTest, WhatIsAnsweredIsNotLogged) {
    Create();
    ClearLog();
    std::intptr_t answer = 0;
    for (const unsigned int variable : {1u, 2u, 14u, 15u}) {
        EXPECT_EQ(Get(variable, &answer), NPERR_NO_ERROR) << variable;
    }
    EXPECT_TRUE(support::Log::Instance().Lines().empty());
    browser.Functions()->releaseobject(Object());  // the last answer's reference
    Destroy();
}

TEST_F(VariablesTest, UnknownVariablesAreRefusedWithTheirNumber) {
    std::intptr_t untouched = 0x5A5A;
    for (const unsigned int variable :
         {0u, 8u, 9u, 10u, 19u, 21u, 22u, 1000u, 3001u, 4000u, 0x10000000u, 0x1000000Bu}) {
        ClearLog();
        EXPECT_EQ(Get(variable, &untouched), NPERR_GENERIC_ERROR) << variable;
        EXPECT_EQ(support::Log::Instance().Lines(), (std::vector<support::LogLine>{{1, 2, std::to_string(variable)}}));
    }
    ClearLog();
    EXPECT_EQ(Get(0xFFFFFFFF, &untouched), NPERR_GENERIC_ERROR);
    ExpectLogged(2, "-1");
    EXPECT_EQ(untouched, 0x5A5A);
}

TEST_F(VariablesTest, WithoutAPlaceForTheAnswerThereIsNone) {
    Create();
    for (const unsigned int variable : {1u, 2u, 14u, 15u, 16u}) {
        EXPECT_EQ(Get(variable, nullptr), NPERR_GENERIC_ERROR) << variable;
    }
    EXPECT_EQ(Object()->referenceCount, 1u);
    Destroy();
}

TEST_F(VariablesTest, VariablesOfTheBrowserAreAcceptedAndForgotten) {
    EXPECT_EQ(functions->setvalue(npp, NPNVprivateModeBool, this), NPERR_NO_ERROR);
    EXPECT_EQ(functions->setvalue(nullptr, static_cast<NPNVariable>(9999), nullptr), NPERR_NO_ERROR);
    ExpectLogged(3, Line("SetValue()"), 2);
}

}  // namespace
