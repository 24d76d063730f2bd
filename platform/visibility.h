// What the platform library exports.
#pragma once

#define TVPLATFORM_API __attribute__((visibility("default")))
