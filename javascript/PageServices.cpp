// What an object asks of the page around it, by evaluating script in the page's window.
#include "debug/Log.h"
#include "javascript/JSNPObject.h"
#include "javascript/Variants.h"
#include "platform/CDAEBrowserAPI.h"
#include "platform/IJSObjCreation.h"

namespace OipfJavaScript {

namespace {

std::string KeyOf(const std::string& objectId) {
    IJSObjCreation* keys = IJSObjCreation::Instance();
    return keys ? keys->GetKey(objectId) : std::string();
}

}  // namespace

NPObject* JSNPObject::t_GetWindow() {
    NPObject* window = nullptr;
    if (m_pNPNFuncs->getvalue(m_npp, NPNVWindowNPObject, &window) == NPERR_NO_ERROR && window) return window;
    LOG_WARNING("failed to get the window object");
    return nullptr;
}

bool JSNPObject::t_Evaluate(NPObject* window, const std::string& script, NPVariant& result) {
    NPString text{script.data(), static_cast<std::uint32_t>(script.size())};
    if (m_pNPNFuncs->evaluate(m_npp, window, &text, &result)) return true;
    result = VoidVariant();
    return false;
}

bool JSNPObject::t_GetDocumentUrl(NPObject* window, std::string& url, unsigned long level) {
    NPVariant result = VoidVariant();
    const bool evaluated = t_Evaluate(window, "document.location.href", result);
    const bool isString = IsString(result);
    CCDebug::Print<CCDebugDAEPlugin>(1, level, "Evaluate %s", evaluated ? "succeeded" : "failed");
    CCDebug::Print<CCDebugDAEPlugin>(1, level, "String? %s", isString ? "YES" : "NO");
    if (isString && result.value.stringValue.UTF8Characters)
        url.assign(result.value.stringValue.UTF8Characters, result.value.stringValue.UTF8Length);
    if (!isString) LOG_WARNING("failed to get document location.");
    if (evaluated) ReleaseVariant(*m_pNPNFuncs, result);
    return isString;
}

bool JSNPObject::t_GetDocumentLocation(std::string& location) {
    if (!m_npp) {
        t_LogInvalidated("t_GetDocumentLocation");
        return false;
    }
    LOG_TRACE("t_GetDocumentLocation");
    NPObject* window = t_GetWindow();
    if (!window) return false;
    std::string url;
    const bool known = t_GetDocumentUrl(window, url, 3);
    m_pNPNFuncs->releaseobject(window);
    if (!known) return false;
    location = url.substr(0, url.rfind('/'));
    LOG_TRACE("success to get document url:%s (location:%s)", url.c_str(), location.c_str());
    return true;
}

bool JSNPObject::t_MakeAbsolutePath(std::string& path) {
    LOG_TRACE("m_MakeAbsolutePath from %s", path.c_str());
    if (path.starts_with("dvb:") || path.starts_with("http:") || path.starts_with("https:")) {
        LOG_TRACE("the path is already absolute path");
        return true;
    }
    std::string location;
    if (!t_GetDocumentLocation(location)) {
        LOG_WARNING("failed to get the document location");
        return false;
    }
    path = location + (path.starts_with("/") ? "" : "/") + path;
    LOG_TRACE("absolute path: %s", path.c_str());
    return true;
}

bool JSNPObject::t_IsCurrentPageTrusted() {
    if (!m_npp) {
        t_LogInvalidated("t_IsCurrentPageTrusted");
        return false;
    }
    NPObject* window = t_GetWindow();
    if (!window) return false;
    std::string origin;
    const bool known = t_GetDocumentUrl(window, origin, 4);
    if (const auto slashes = origin.find("//"); slashes != std::string::npos)
        origin = origin.substr(0, origin.find('/', slashes + 2));
    const bool trusted = known && m_pBrowserAPI && m_pBrowserAPI->IsURLInAppBoundary(origin);
    m_pNPNFuncs->releaseobject(window);
    return trusted;
}

bool JSNPObject::t_CreateJSObject(const std::string& className, const std::string& params, bool withKey,
                                  NPObject** object) {
    if (!m_npp) {
        t_LogInvalidated("t_CreateJSObject");
        return false;
    }
    NPObject* window = t_GetWindow();
    if (!window) return false;
    std::string script = "new " + className + "(";
    if (withKey) script += "\"" + KeyOf(m_defaultPrefix) + "\"";
    if (!params.empty()) script += ", " + params;
    script += ");";

    LOG_TRACE("Evaluate script \"%s\"", script.c_str());
    NPVariant result = VoidVariant();
    const bool evaluated = t_Evaluate(window, script, result);
    const bool isObject = IsObject(result);
    LOG_TRACE("Evaluate %s, Object? %s", evaluated ? "succeeded" : "failed", isObject ? "YES" : "NO");
    if (isObject) {
        *object = result.value.objectValue;
    } else {
        LOG_WARNING("Failed to get object.");
        if (evaluated) ReleaseVariant(*m_pNPNFuncs, result);
    }
    m_pNPNFuncs->releaseobject(window);
    return isObject;
}

}  // namespace OipfJavaScript
