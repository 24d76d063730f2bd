// What the remote answers about the television, as JSON.
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <optional>

#include "television/Television.h"

namespace browser {

QJsonObject ToJson(const television::Service& service);
QJsonObject ToJson(const television::Programme& programme);

QJsonObject TelevisionStatus();
QJsonArray TelevisionServices();

// By number (of those that are not hidden) or by name, in any case.
std::optional<television::Service> FindService(const std::vector<television::Service>& services, const QString& wanted);

}  // namespace browser
