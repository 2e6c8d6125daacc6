#include "chat/ZR_AiChatModuleState.h"

#include <mutex>

ZR_AiChatCSThread* g_zentriChatThread = nullptr;
ZR_AiChatReadHistoricalChatThread* g_zentriHistoryThread = nullptr;
std::atomic<bool> g_zentriCommunicating{false};
bool g_zentriExchangeUnfinished = false;

namespace {
std::mutex g_sourceMutex;
const ZR_AiChatExchangeSource* g_source = nullptr;
}  // namespace

void setZentriExchangeSource(const ZR_AiChatExchangeSource* source) {
    const std::lock_guard<std::mutex> lock(g_sourceMutex);
    g_source = source;
}

ZR_AiChatExchange zentriCurrentExchange() {
    const std::lock_guard<std::mutex> lock(g_sourceMutex);
    return g_source != nullptr ? g_source->currentExchange() : ZR_AiChatExchange();
}
