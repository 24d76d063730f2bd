// A platform library that needs nothing around it: the null platform, and a television's own where it starts by itself.
#include "tests/platform/Host.h"

void contract::StartPlatform() {}
void contract::EndPlatform() {}
