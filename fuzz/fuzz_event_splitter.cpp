#include <cstdint>
#include <cstdlib>

#include "chat/ZR_AiChatEventSplitter.h"
#include "tests/chat/PlainEventSplitter.h"

/// Feeds a stream in chunks whose sizes the first bytes give, and compares the result with the plain rule.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr int kSizesLength = 8;
    if (size < kSizesLength) {
        return 0;
    }
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const QByteArray stream = input.mid(kSizesLength);

    ZR_AiChatEventSplitter splitter;
    PlainEventSplitter plain;
    for (int at = 0, turn = 0; at < stream.size(); ++turn) {
        const int chunkSize = 1 + static_cast<unsigned char>(input.at(turn % kSizesLength));
        const QByteArray chunk = stream.mid(at, chunkSize);
        at += chunkSize;
        splitter.append(chunk);
        QStringList texts;
        QString text;
        while (splitter.takeEvent(text)) {
            texts.append(text);
        }
        if (texts != plain.takeChunk(chunk) || splitter.pendingSize() != plain.pendingSize()) {
            std::abort();
        }
    }
    return 0;
}
