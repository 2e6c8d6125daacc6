#include "chat/ZR_AiChatModuleState.h"

ZR_AiChatCSThread* g_zentriChatThread = nullptr;
ZR_AiChatReadHistoricalChatThread* g_zentriHistoryThread = nullptr;
std::atomic<bool> g_zentriCommunicating{false};
bool g_zentriExchangeUnfinished = false;
