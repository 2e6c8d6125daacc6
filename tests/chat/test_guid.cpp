#include <gtest/gtest.h>

#include "chat/ZR_AiChatGuid.h"

TEST(GuidText, HasTheFieldWidthsAndByteOrder) {
    const GUID guid = {0x0123ABCD, 0x0E, 0xF0, {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0x0F}};
    EXPECT_EQ(zentriGuidText(guid), _T("0123ABCD-000E-00F0-0123-456789ABCD0F"));
}
