#pragma once

#include <gtest/gtest.h>

#include <QTimer>

#include "chat/ZR_AiChatService.h"
#include "tests/chat/FakeChat.h"
#include "tests/support/http/FakeHttpServer.h"

/// Blocking calls on the main thread, during which Qt holds back user input.
class WithheldCall : public ChatTest {
protected:
    WithheldCall() { setServiceAddress(m_server.address()); }

    /// Calls the service. Once the request has arrived there, `giveInput` is called; the reply follows when
    /// the call's loop has run again with that input queued.
    template <class GiveInput>
    void callMeanwhile(const GiveInput& giveInput) {
        bool given = false;
        QTimer during;
        QObject::connect(&during, &QTimer::timeout, &during, [&] {
            if (m_server.requestCount() == 0) {
                return;
            }
            if (!given) {
                given = true;
                giveInput();
                return;
            }
            during.stop();
            m_server.sendEmptyReply(0, 404);
        });
        during.start(1);
        EXPECT_TRUE(createSessionOnServer().IsEmpty());
        EXPECT_TRUE(given);
    }

private:
    FakeHttpServer m_server;
};
