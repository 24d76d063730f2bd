// A plug-in of a script object that records what its instance is told.
#pragma once

#include "tests/support/PluginTest.h"

#include "plugin/CNPAPIPlugin.h"
#include "tests/support/PluginInstance.h"

class TestObject : public OipfJavaScript::JSNPObject {
public:
    TestObject(NPP npp, NPNetscapeFuncs* funcs) : JSNPObject("[object Test]", npp, funcs) {
        ++s_living;
        s_table = funcs;
        s_atConstruction();
    }
    ~TestObject() override {
        s_log.push_back("~TestObject");
        s_atDestruction();
        --s_living;
    }

    static const char* PluginDescription() { return "video/test::A test plug-in"; }

    void SetMimeType(char* type) override {
        s_log.push_back(std::string("SetMimeType ") + type);
        s_during();
    }
    void SetAttributes(std::int16_t argc, char** argn, char** argv) override {
        std::string text = "SetAttributes";
        for (std::int16_t i = 0; i < argc; ++i) text += std::string(" ") + argn[i] + "=" + argv[i];
        s_log.push_back(text);
    }
    void SetWindow(NPWindow* window) override {
        s_window = window;
        s_log.push_back("SetWindow");
        s_during();
    }
    std::int16_t HandleEvent(void* event) override {
        s_log.push_back("HandleEvent");
        s_during();
        return *static_cast<std::int16_t*>(event);
    }
    NPError NewStream(NPStream* stream) override {
        s_stream = stream;
        s_log.push_back("NewStream");
        return 40;
    }
    NPError DestroyStream(NPStream* stream, NPReason reason) override {
        s_stream = stream;
        s_log.push_back("DestroyStream " + std::to_string(reason));
        return 41;
    }
    std::int32_t WriteReady(NPStream* stream) override {
        s_stream = stream;
        s_log.push_back("WriteReady");
        return 42000;
    }
    std::int32_t Write(NPStream* stream, std::int32_t offset, std::int32_t len, void* buffer) override {
        s_stream = stream;
        s_log.push_back("Write " + std::to_string(offset) + " " + std::to_string(len) + " " +
                        static_cast<const char*>(buffer));
        return 43000;
    }

    static void Forget() {
        s_log.clear();
        s_window = nullptr;
        s_stream = nullptr;
        s_table = nullptr;
        s_atConstruction = s_during = s_atDestruction = [] {};
    }

    static inline int s_living = 0;
    static inline std::vector<std::string> s_log;
    static inline NPWindow* s_window = nullptr;
    static inline NPStream* s_stream = nullptr;
    static inline NPNetscapeFuncs* s_table = nullptr;
    static inline std::function<void()> s_atConstruction = [] {};
    static inline std::function<void()> s_during = [] {};
    static inline std::function<void()> s_atDestruction = [] {};
};

// Initialises the plug-in with fresh tables for each test.
class TestPluginTest : public support::PluginTest {
protected:
    using Plugin = CNPAPIPlugin<TestObject>;
    using Class = OipfJavaScript::JSNpapiObject<TestObject>;
    using Texts = std::vector<std::string>;

    TestPluginTest() {
        TestObject::Forget();
        EXPECT_EQ(Plugin::Initialize(browser.Table(), functions.get()), NPERR_NO_ERROR);
    }

    void TearDown() override {
        PluginTest::TearDown();
        EXPECT_EQ(TestObject::s_living, 0);
    }

    NPError Create(const std::vector<std::string>& attributes = {}) {
        std::string type = "video/test";
        std::vector<std::string> texts = attributes;
        std::vector<char*> names, values;
        for (std::size_t i = 0; i + 1 < texts.size(); i += 2) {
            names.push_back(texts[i].data());
            values.push_back(texts[i + 1].data());
        }
        return functions->newp(type.data(), npp, NP_EMBED, static_cast<std::int16_t>(names.size()), names.data(),
                               values.data(), nullptr);
    }
    NPError Destroy() { return functions->destroy(npp, nullptr); }
    TestObject* Object() { return static_cast<TestObject*>(npp->pdata); }

    // The log line "CNPAPIPlugin<name>" and the rest; the spelling of the class's name is free.
    static std::string Line(const std::string& rest) {
        return "CNPAPIPlugin<" + std::string(typeid(TestObject).name()) + ">::" + rest;
    }

    support::PluginInstance::Table functions = support::PluginInstance::MakeTable();
    NPP npp = browser.MakeInstance();
};
