#include "browser/host/PluginPlace.h"

#include <dlfcn.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <utility>

#include "browser/host/adapter/Contract.h"

namespace browser {

namespace {

QString BesideProgram(const QString& relative) {
    return QFileInfo(QCoreApplication::applicationDirPath() + QLatin1Char('/') + relative).absoluteFilePath();
}

QString AdapterFolder() {
    return BesideProgram(QStringLiteral("plugins"));
}

QString AdapterFile() {
    return AdapterFolder() + QStringLiteral("/nptvadapter.so");
}

// The reason why a library is no plug-in; nothing when it is one. It stays loaded, as Qt WebKit would keep it.
std::optional<QString> WhyNoPlugin(const QString& file) {
    void* library = dlopen(QFile::encodeName(file).constData(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return QString::fromLocal8Bit(dlerror());
    }
    for (const char* symbol : {"NP_Initialize", "NP_Shutdown", "NP_GetValue", "NP_GetMIMEDescription"}) {
        if (dlsym(library, symbol) == nullptr) {
            return QStringLiteral("it does not export %1").arg(QLatin1String(symbol));
        }
    }
    return std::nullopt;
}

// Null before OfferPlugin has loaded the adapter.
template <class Function>
Function AdapterFunction(const char* symbol) {
    void* library = dlopen(QFile::encodeName(AdapterFile()).constData(), RTLD_NOW | RTLD_NOLOAD);
    const auto function = library != nullptr ? reinterpret_cast<Function>(dlsym(library, symbol)) : nullptr;
    if (library != nullptr) {
        dlclose(library);
    }
    return function;
}

// Objects are told as such: reading their members would run the page's script.
QJsonValue ToJson(const NPVariant& value) {
    switch (value.type) {
    case NPVariantType_Void:
    case NPVariantType_Null:
        return {};
    case NPVariantType_Bool:
        return value.value.boolValue;
    case NPVariantType_Int32:
        return value.value.intValue;
    case NPVariantType_Double:
        return value.value.doubleValue;
    case NPVariantType_String:
        return QString::fromUtf8(value.value.stringValue.UTF8Characters, int(value.value.stringValue.UTF8Length));
    case NPVariantType_Object:
        return QStringLiteral("[object]");
    }
    return {};
}

void Tell(void* context, const adapter::Traffic& traffic) {
    QJsonArray arguments;
    QJsonObject members;
    for (std::uint32_t i = 0; i < traffic.count; ++i) {
        const adapter::TrafficValue& value = traffic.values[i];
        if (value.name != nullptr) {
            members.insert(QString::fromUtf8(value.name), ToJson(value.value));
        } else {
            arguments.append(ToJson(value.value));
        }
    }
    QJsonObject details{{QStringLiteral("name"), QString::fromUtf8(traffic.name)}};
    if (!arguments.isEmpty()) {
        details.insert(QStringLiteral("arguments"), arguments);
    }
    if (!members.isEmpty()) {
        details.insert(QStringLiteral("members"), members);
    }
    (*static_cast<TrafficObserver*>(context))(QString::fromUtf8(traffic.kind), details);
}

}  // namespace

std::optional<QString> OfferPlugin(const QString& plugin) {
    const QString file = plugin.isEmpty() ? BesideProgram(QStringLiteral("../plugin/npvideobroadcast.so"))
                                          : QFileInfo(plugin).absoluteFilePath();
    if (const auto reason = WhyNoPlugin(file)) {
        return QStringLiteral("The video/broadcast plug-in %1 cannot be loaded (%2): build it, or name another with "
                              "--plugin.").arg(file, *reason);
    }
    if (const auto reason = WhyNoPlugin(AdapterFile())) {
        return QStringLiteral("The TV browser's adapter plug-in cannot be loaded (%1): build all of the TV browser.")
            .arg(*reason);
    }
    qputenv(adapter::kPluginVariable, QFile::encodeName(file));
    qputenv("QTWEBKIT_PLUGIN_PATH", QFile::encodeName(AdapterFolder()));
    qputenv("MOZ_PLUGIN_PATH", QFile::encodeName(AdapterFolder()));
    return std::nullopt;
}

void InvalidatePluginObjects() {
    if (const auto invalidate = AdapterFunction<adapter::InvalidateAll>(adapter::kInvalidateAllSymbol)) {
        invalidate();
    }
}

void ObservePlugin(TrafficObserver observer) {
    static TrafficObserver s_observer;
    s_observer = std::move(observer);
    if (const auto observe = AdapterFunction<adapter::Observe>(adapter::kObserveSymbol)) {
        observe(s_observer ? Tell : nullptr, &s_observer);
    }
}

}  // namespace browser
