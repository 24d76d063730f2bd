// No DSM-CC service: no stream events.
#include "platform/DSMCCProtocol.h"

IDSMCCProtocol* DSMCCProtocol_GetInstance() { return nullptr; }
