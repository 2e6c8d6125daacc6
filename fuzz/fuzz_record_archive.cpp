#include <cstdint>
#include <vector>

#include "chat/ZR_AiChatSingleChatRecord.h"

/// Loads a record from arbitrary bytes: it loads or throws an MFC exception.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<BYTE> bytes(data, data + size);
    bytes.push_back(0);  // a memory file needs a buffer
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    ZR_AiChatSingleChatRecord record;
    try {
        CArchive archive(&file, CArchive::load);
        record.Serialize(archive);
    } catch (CException* exception) {
        exception->Delete();
    }
    return 0;
}
