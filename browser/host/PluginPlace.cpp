#include "browser/host/PluginPlace.h"

#include <dlfcn.h>

#include <QCoreApplication>
#include <QFileInfo>

#include "browser/host/adapter/Contract.h"

namespace browser {

namespace {

QString BesideProgram(const QString& relative) {
    return QFileInfo(QCoreApplication::applicationDirPath() + QLatin1Char('/') + relative).absoluteFilePath();
}

QString AdapterFolder() {
    return BesideProgram(QStringLiteral("plugins"));
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

}  // namespace

std::optional<QString> OfferPlugin(const QString& plugin) {
    const QString file = plugin.isEmpty() ? BesideProgram(QStringLiteral("../plugin/npvideobroadcast.so"))
                                          : QFileInfo(plugin).absoluteFilePath();
    if (const auto reason = WhyNoPlugin(file)) {
        return QStringLiteral("The video/broadcast plug-in %1 cannot be loaded (%2): build it, or name another with "
                              "--plugin.").arg(file, *reason);
    }
    if (const auto reason = WhyNoPlugin(AdapterFolder() + QStringLiteral("/nptvadapter.so"))) {
        return QStringLiteral("The TV browser's adapter plug-in cannot be loaded (%1): build all of the TV browser.")
            .arg(*reason);
    }
    qputenv(adapter::kPluginVariable, QFile::encodeName(file));
    qputenv("QTWEBKIT_PLUGIN_PATH", QFile::encodeName(AdapterFolder()));
    qputenv("MOZ_PLUGIN_PATH", QFile::encodeName(AdapterFolder()));
    return std::nullopt;
}

void InvalidatePluginObjects() {
    const QByteArray file = QFile::encodeName(AdapterFolder() + QStringLiteral("/nptvadapter.so"));
    void* library = dlopen(file.constData(), RTLD_NOW | RTLD_NOLOAD);
    if (library == nullptr) {
        return;
    }
    const auto invalidate = reinterpret_cast<adapter::InvalidateAll>(dlsym(library, adapter::kInvalidateAllSymbol));
    if (invalidate != nullptr) {
        invalidate();
    }
    dlclose(library);
}

}  // namespace browser
