// The television's records as scripts get them.
#pragma once

#include <QVariant>

#include "television/Television.h"

namespace browser {

QVariantMap ToScript(const television::Service& service);
QVariantMap ToScript(const television::Programme& programme);

}  // namespace browser
