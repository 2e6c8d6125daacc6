#include "mfc_text.h"

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

// Copies on different threads share one buffer.

TEST(CStringThreads, CopyingOnManyThreadsKeepsTheStringIntact) {
    const CString source(_T("一条共享的文字 shared text"));
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&source, &wrong] {
            for (int i = 0; i < 20000; ++i) {
                CString copy(source);  // NOLINT(performance-unnecessary-copy-initialization): what is tested
                CString other;
                other = copy;
                wrong += other == source ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(utf8(source), "一条共享的文字 shared text");
}

TEST(CStringThreads, ModifyingACopyOnAnotherThreadKeepsTheOriginal) {
    const CString source(_T("base"));
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&source, &wrong] {
            for (int i = 0; i < 5000; ++i) {
                CString copy(source);
                copy.AppendChar(_T('!'));
                wrong += copy == _T("base!") && source == _T("base") ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

TEST(CStringThreads, TheLastCopyFreesTheBufferOnAnyThread) {
    for (int i = 0; i < 2000; ++i) {
        auto text = std::make_unique<CString>(_T("handed over"));
        const CString copy(*text);
        std::thread other([moved = std::move(text)]() mutable { moved.reset(); });
        EXPECT_EQ(utf8(copy), "handed over");
        other.join();
    }
}
