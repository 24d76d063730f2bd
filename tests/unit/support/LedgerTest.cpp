// What the fake browser's books find.
#include "tests/support/PluginTest.h"

#include <gtest/gtest-spi.h>

#include <cstdlib>
#include <cstring>
#include <thread>

namespace support {
namespace {

class LedgerTest : public PluginTest {
protected:
    NPNetscapeFuncs& npn = *browser.Functions();
    NPP npp = browser.MakeInstance();

    NPVariant Evaluate(const std::string& text) {
        NPObject* window = nullptr;
        npn.getvalue(npp, NPNVWindowNPObject, &window);
        NPString script{text.c_str(), static_cast<std::uint32_t>(text.size())};
        NPVariant result{};
        EXPECT_TRUE(npn.evaluate(npp, window, &script, &result));
        npn.releaseobject(window);
        return result;
    }
};

TEST_F(LedgerTest, AReferenceThatIsNotGivenBackIsFound) {
    FakeObject& handler = browser.MakeFunction("handler");
    npn.retainobject(handler.Pointer());
    EXPECT_EQ(handler.HeldByPlugin(), 1u);
    EXPECT_NONFATAL_FAILURE(browser.ExpectBalanced(), "The plug-in still holds 1 reference(s) of handler.");
    npn.releaseobject(handler.Pointer());
}

TEST_F(LedgerTest, WhatATestNamesMayBeKeptButNoMore) {
    FakeObject& handler = browser.MakeFunction("handler");
    npn.retainobject(handler.Pointer());
    browser.MayKeep(handler);
    browser.ExpectBalanced();
    npn.retainobject(handler.Pointer());
    EXPECT_NONFATAL_FAILURE(browser.ExpectBalanced(), "The plug-in still holds 2 reference(s) of handler.");
    npn.releaseobject(handler.Pointer());
}

TEST_F(LedgerTest, GivingBackAReferenceThatIsNotHeldIsFoundAtOnce) {
    FakeObject& handler = browser.MakeFunction("handler");
    EXPECT_NONFATAL_FAILURE(npn.releaseobject(handler.Pointer()),
                            "NPN_ReleaseObject gives back a reference of handler that the plug-in does not hold.");
    EXPECT_TRUE(handler.IsAlive());
}

TEST_F(LedgerTest, UsingADeadObjectIsFoundByItsName) {
    const NPVariant result = Evaluate("new Channel(\"key\", 7);");
    npn.releaseobject(result.value.objectValue);
    EXPECT_FALSE(browser.Created("Channel").front()->IsAlive());
    EXPECT_NONFATAL_FAILURE(npn.retainobject(result.value.objectValue), "Channel(7), which is dead already");
    EXPECT_NONFATAL_FAILURE(npn.releaseobject(result.value.objectValue), "Channel(7), which is dead already");
}

TEST_F(LedgerTest, AForeignOrNullPointerIsNoObject) {
    NPObject foreign{};
    EXPECT_NONFATAL_FAILURE(npn.retainobject(&foreign), "which is no object");
    EXPECT_NONFATAL_FAILURE(npn.releaseobject(nullptr), "a null pointer for an object");
}

TEST_F(LedgerTest, AChangedReferenceCountIsFound) {
    FakeObject& handler = browser.MakeFunction("handler");
    ++handler.Pointer()->referenceCount;
    EXPECT_NONFATAL_FAILURE(npn.retainobject(handler.Pointer()), "changed behind the browser's back");
    --handler.Pointer()->referenceCount;
}

TEST_F(LedgerTest, MemoryThatIsNotFreedIsFoundWithItsContent) {
    auto* block = static_cast<char*>(npn.memalloc(6));
    std::memcpy(block, "hello", 6);
    EXPECT_NONFATAL_FAILURE(browser.ExpectBalanced(), "A block of 6 bytes of browser memory was not freed: \"hello.\"");
    npn.memfree(block);
}

TEST_F(LedgerTest, FreeingTwiceOrForeignMemoryIsFound) {
    void* block = npn.memalloc(6);
    npn.memfree(block);
    EXPECT_NONFATAL_FAILURE(npn.memfree(block), "frees a block of 6 bytes for the second time");
    EXPECT_NONFATAL_FAILURE(npn.memfree(&npn), "which is no block of browser memory");
    npn.memfree(nullptr);
}

TEST_F(LedgerTest, AStringResultThatIsReleasedTwiceIsFound) {
    browser.AnswerEvaluate("text", [](const std::string&) { return Value("hello"); });
    NPVariant result = Evaluate("text");
    ASSERT_EQ(result.type, NPVariantType_String);
    npn.releasevariantvalue(&result);
    EXPECT_EQ(result.type, NPVariantType_String) << "the variant is left as it was";
    EXPECT_NONFATAL_FAILURE(npn.releasevariantvalue(&result), "frees a block of 5 bytes for the second time");
}

TEST_F(LedgerTest, AResultThatIsNotReleasedIsFound) {
    NPVariant result = Evaluate("new Array();");
    EXPECT_NONFATAL_FAILURE(browser.ExpectBalanced(), "The plug-in still holds 1 reference(s) of Array().");
    npn.releasevariantvalue(&result);
}

TEST_F(LedgerTest, ABrowserMayMakeReleasedVariantsVoid) {
    browser.releaseMakesVoid = true;
    NPVariant result = Evaluate("new Array();");
    npn.releasevariantvalue(&result);
    EXPECT_EQ(result.type, NPVariantType_Void);
    npn.releasevariantvalue(&result);
}

TEST_F(LedgerTest, AFunctionThatDiesDuringItsOwnCallIsFound) {
    FakeObject& handler = browser.MakeFunction("handler");
    handler.SetFunction([&] { npn.releaseobject(handler.Pointer()); });
    npn.retainobject(handler.Pointer());
    browser.Forget(handler);
    NPVariant result{};
    EXPECT_NONFATAL_FAILURE(npn.invokeDefault(npp, handler.Pointer(), nullptr, 0, &result),
                            "handler died during its own call");
}

TEST_F(LedgerTest, ADeadObjectAsArgumentIsFound) {
    FakeObject& handler = browser.MakeFunction("handler");
    FakeObject& channel = browser.MakeObject("channel");
    NPVariant argument{};
    argument.type = NPVariantType_Object;
    argument.value.objectValue = channel.Pointer();
    browser.Forget(channel);
    NPVariant result{};
    EXPECT_NONFATAL_FAILURE(npn.invokeDefault(npp, handler.Pointer(), &argument, 1, &result),
                            "An argument of NPN_InvokeDefault was given channel, which is dead already.");
}

TEST_F(LedgerTest, AnObjectOfThePluginDiesThroughItsClass) {
    static int deallocated;
    deallocated = 0;
    NPClass objectClass{};
    objectClass.deallocate = [](NPObject* object) {
        ++deallocated;
        std::free(object);
    };
    NPObject* object = npn.createobject(npp, &objectClass);
    EXPECT_EQ(object->_class, &objectClass);
    EXPECT_EQ(object->referenceCount, 1u);
    EXPECT_NONFATAL_FAILURE(browser.ExpectBalanced(), "The plug-in still holds 1 reference(s) of plug-in object.");
    npn.releaseobject(object);
    EXPECT_EQ(deallocated, 1);
}

TEST_F(LedgerTest, AnObjectThatIsHandedOutWithoutAReferenceIsFound) {
    FakeObject& handler = browser.MakeFunction("handler");
    EXPECT_NONFATAL_FAILURE(browser.TakeOver("The getter", handler.Pointer()),
                            "The getter hands out handler without a reference for the browser.");
    browser.GetLedger().Drop(handler.Pointer());
}

TEST_F(LedgerTest, ACallFromAnotherThreadIsFound) {
    EXPECT_NONFATAL_FAILURE_ON_ALL_THREADS(std::thread([&] { npn.memalloc(1); }).join(),
                                           "was called on a thread that is not the main thread");
    EXPECT_NONFATAL_FAILURE_ON_ALL_THREADS(std::thread([] { CDAEBrowserAPI::Instance()->IsBroadcastRelated(); }).join(),
                                           "browser.IsBroadcastRelated was called on a platform thread");
}

}  // namespace
}  // namespace support
