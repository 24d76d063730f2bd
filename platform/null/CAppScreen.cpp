// No picture settings.
#include "platform/CAppScreen.h"

CAppScreen* g_pAppScreen = nullptr;
