// What every platform library contains beside its own answers: the interfaces' destructors and their default bodies.
// The type information of the interfaces comes from here too, so that dynamic_cast works across the libraries.
#include "platform/CAppScreen.h"
#include "platform/CCDebug.h"
#include "platform/CDAEBrowserAPI.h"
#include "platform/CTaskManager.h"
#include "platform/DSMCCProtocol.h"
#include "platform/IBroadcastPlayer.h"
#include "platform/IBroadcastPlayerListener.h"
#include "platform/IJSChannelCache.h"
#include "platform/IJSObjCreation.h"
#include "platform/ISASListener.h"

CAppScreen::~CAppScreen() = default;
CDAEBrowserAPI::~CDAEBrowserAPI() = default;
IBroadcastPlayer::~IBroadcastPlayer() = default;
IBroadcastPlayerListener::~IBroadcastPlayerListener() = default;
IDSMCCProtocol::~IDSMCCProtocol() = default;
IJSChannelCache::~IJSChannelCache() = default;
IJSObjCreation::~IJSObjCreation() = default;

CWrapper::~CWrapper() = default;
CPvrWrapper::~CPvrWrapper() = default;
CWrapperManager::~CWrapperManager() = default;
CTaskManager::~CTaskManager() = default;

ISASListener::~ISASListener() = default;
void ISASListener::OnSASMessageReceived(SASMessage*) {}
void ISASListener::OnSASSession(bool) {}

IDebugIO::~IDebugIO() = default;

CCDebug::CCDebug() = default;
CCDebug::~CCDebug() = default;
void CCDebug::Reset() {}
void CCDebug::t_InitModule() {}
void CCDebug::t_ShowDebugSubMenu() {}
void CCDebug::t_SelectDebugSubMenu(int) {}
void CCDebug::t_SetDebugLevel(unsigned int) {}
void CCDebug::t_SetDebugModule(unsigned long, bool) {}
bool CCDebug::t_IsCommonModule() { return false; }
