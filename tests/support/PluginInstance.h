// The plug-in as a browser uses it: its entry points and one embedded object.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/FakeBrowser.h"
#include "tests/support/Npapi.h"

namespace support {

// Initialises the plug-in and makes an instance (NP_Initialize, NPP_New, NPP_GetValue). The destructor destroys it.
class PluginInstance {
public:
    using Attributes = std::vector<std::pair<std::string, std::string>>;
    explicit PluginInstance(FakeBrowser& browser, const Attributes& attributes = {});
    PluginInstance(const PluginInstance&) = delete;
    PluginInstance& operator=(const PluginInstance&) = delete;
    ~PluginInstance();

    NPP Npp() const { return m_npp; }
    // The scriptable object, which the page holds until Destroy; null when the instance has none.
    NPObject* Object() const { return m_object; }
    const NPPluginFuncs& Functions() const { return *m_functions; }

    // The browser invalidates the object, as at the end of a page.
    void Invalidate();
    // NPP_Destroy, then the page lets go of the object. Hosts that invalidate do it before. Nothing when done already.
    NPError Destroy();

    Outcome Get(const std::string& name) { return m_browser.Get(m_object, name); }
    Outcome Set(const std::string& name, const Value& value) { return m_browser.Set(m_object, name, value); }
    Outcome Call(const std::string& name, const Values& arguments = {}) {
        return m_browser.Call(m_object, name, arguments);
    }

    // A plug-in table in a block of exactly `size` bytes, for NP_Initialize.
    static constexpr std::size_t kThroughGetSitesWithData = sizeof(NPPluginFuncs);
    struct FreeTable {
        void operator()(NPPluginFuncs* table) const;
    };
    using Table = std::unique_ptr<NPPluginFuncs, FreeTable>;
    static Table MakeTable(std::size_t size = kThroughGetSitesWithData);

private:
    void Create(const Attributes& attributes);
    void FetchObject();

    FakeBrowser& m_browser;
    Table m_functions;
    NPP m_npp;
    NPObject* m_object = nullptr;
    bool m_lives = true;
};

}  // namespace support
