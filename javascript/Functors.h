// Members of a native class as the methods and properties of a script object.
#pragma once

#include <cstdint>

#include "npapi/npruntime.h"

namespace OipfJavaScript {

class IMethodFunctor {
public:
    virtual bool operator()(const NPVariant* args, std::uint32_t argCount, NPVariant* result) = 0;
    virtual ~IMethodFunctor() = default;
};

class IPropertyFunctor {
public:
    virtual bool GetProp(NPVariant* result) = 0;
    virtual bool SetProp(const NPVariant* value) = 0;
    virtual ~IPropertyFunctor() = default;
};

// A null member answers false.
template <class T>
class CMethodFunctor : public IMethodFunctor {
public:
    using Method = bool (T::*)(const NPVariant*, std::uint32_t, NPVariant*);

    CMethodFunctor(T* object, Method method) : m_object(object), m_method(method) {}

    bool operator()(const NPVariant* args, std::uint32_t argCount, NPVariant* result) override {
        return m_method && (m_object->*m_method)(args, argCount, result);
    }

private:
    T* m_object;
    Method m_method;
};

// Without a setter the property is read-only, without a getter write-only.
template <class T>
class CPropertyFunctor : public IPropertyFunctor {
public:
    using Getter = bool (T::*)(NPVariant*);
    using Setter = bool (T::*)(const NPVariant*);

    CPropertyFunctor(T* object, Getter getter, Setter setter) : m_object(object), m_getter(getter), m_setter(setter) {}

    bool GetProp(NPVariant* result) override { return m_getter && (m_object->*m_getter)(result); }
    bool SetProp(const NPVariant* value) override { return m_setter && (m_object->*m_setter)(value); }

private:
    T* m_object;
    Getter m_getter;
    Setter m_setter;
};

// The functors are made on the heap; registering one hands it to the script object.
template <class T>
IMethodFunctor* make_method(T* object, typename CMethodFunctor<T>::Method method) {
    return new CMethodFunctor<T>(object, method);
}

template <class T>
IPropertyFunctor* make_property(T* object, typename CPropertyFunctor<T>::Getter getter,
                                typename CPropertyFunctor<T>::Setter setter = nullptr) {
    return new CPropertyFunctor<T>(object, getter, setter);
}

}  // namespace OipfJavaScript
