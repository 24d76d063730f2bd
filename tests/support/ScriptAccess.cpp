// Script of the fake browser's page that uses an object of the plug-in.
#include "tests/support/BrowserFunctions.h"
#include "tests/support/FakeBrowser.h"

namespace support {

template <class Hook>
Outcome FakeBrowser::Use(const std::string& what, NPObject* object, Hook hook) {
    if (!m_ledger.Check(what, object)) {
        return {};
    }
    const std::size_t exceptionsBefore = m_exceptions.size();
    const bool hold = pageHoldsDuringCalls;
    if (hold) {
        m_ledger.Hold(object);
    }
    Outcome outcome;
    NPVariant result{};
    outcome.accepted = hook(object->_class, &result);
    if (outcome.accepted) {
        outcome.value = TakeResult(what, result);
    }
    if (m_exceptions.size() > exceptionsBefore) {
        outcome.exception = m_exceptions[exceptionsBefore];
    }
    if (hold) {
        m_ledger.Drop(object);
    }
    return outcome;
}

Outcome FakeBrowser::Get(NPObject* object, const std::string& name) {
    return Use("Reading \"" + name + "\"", object, [&](NPClass* objectClass, NPVariant* result) {
        return objectClass->getProperty(object, IdentifierOf(name), result);
    });
}

Outcome FakeBrowser::Set(NPObject* object, const std::string& name, const Value& value) {
    const PassedValues passed(*this, {value});
    return Use("Writing \"" + name + "\"", object, [&](NPClass* objectClass, NPVariant*) {
        return objectClass->setProperty(object, IdentifierOf(name), passed.Data());
    });
}

Outcome FakeBrowser::Call(NPObject* object, const std::string& name, const Values& arguments) {
    const PassedValues passed(*this, arguments);
    return Use("Calling \"" + name + "\"", object, [&](NPClass* objectClass, NPVariant* result) {
        return objectClass->invoke(object, IdentifierOf(name), passed.Data(), passed.Count(), result);
    });
}

bool FakeBrowser::HasProperty(NPObject* object, const std::string& name) {
    return object->_class->hasProperty(object, IdentifierOf(name));
}

bool FakeBrowser::HasMethod(NPObject* object, const std::string& name) {
    return object->_class->hasMethod(object, IdentifierOf(name));
}

}  // namespace support
