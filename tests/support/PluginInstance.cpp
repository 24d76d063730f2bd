// The plug-in as a browser uses it.
#include "tests/support/PluginInstance.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

extern "C" NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin);

namespace support {

void PluginInstance::FreeTable::operator()(NPPluginFuncs* table) const { std::free(table); }

PluginInstance::Table PluginInstance::MakeTable(std::size_t size) {
    Table table(static_cast<NPPluginFuncs*>(std::calloc(1, size)));
    table->size = static_cast<std::uint16_t>(size);
    return table;
}

PluginInstance::PluginInstance(FakeBrowser& browser, const Attributes& attributes)
    : m_browser(browser), m_functions(MakeTable()), m_npp(browser.MakeInstance()) {
    EXPECT_EQ(NP_Initialize(browser.Table(), m_functions.get()), NPERR_NO_ERROR);
    Create(attributes);
    FetchObject();
}

PluginInstance::~PluginInstance() { Destroy(); }

void PluginInstance::Create(const Attributes& attributes) {
    std::string type = "video/broadcast";
    std::vector<std::string> texts;
    for (const auto& [name, value] : attributes) {
        texts.push_back(name);
        texts.push_back(value);
    }
    std::vector<char*> names, values;
    for (std::size_t i = 0; i < texts.size(); i += 2) {
        names.push_back(texts[i].data());
        values.push_back(texts[i + 1].data());
    }
    const auto count = static_cast<std::int16_t>(names.size());
    EXPECT_EQ(m_functions->newp(type.data(), m_npp, NP_EMBED, count, names.data(), values.data(), nullptr),
              NPERR_NO_ERROR);
}

void PluginInstance::FetchObject() {
    NPObject* object = nullptr;
    if (m_functions->getvalue(m_npp, NPPVpluginScriptableNPObject, &object) == NPERR_NO_ERROR) {
        m_browser.TakeOver("NPP_GetValue", object);
        m_object = object;
    }
}

void PluginInstance::Invalidate() { m_object->_class->invalidate(m_object); }

NPError PluginInstance::Destroy() {
    if (!m_lives) {
        return NPERR_NO_ERROR;
    }
    m_lives = false;
    const NPError error = m_functions->destroy(m_npp, nullptr);
    m_browser.EndInstance(m_npp);
    m_browser.GetLedger().Drop(m_object);
    return error;
}

}  // namespace support
