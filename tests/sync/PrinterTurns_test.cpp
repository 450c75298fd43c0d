#include "sync/PrinterTurns.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace TkPPDUpdating {
namespace {

TEST(PrinterTurns, NoMoreThanTheNumberHaveOneAtOnceAndAllGetOne) {
    constexpr int kThreads = 12;
    constexpr int kMost = 3;
    PrinterTurns turns(kMost);
    std::atomic<int> now{0};
    std::atomic<int> most{0};
    std::atomic<int> all{0};
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            const PrinterTurn turn(turns, nullptr);
            const int count = ++now;
            for (int before = most; before < count && !most.compare_exchange_weak(before, count);) {
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            --now;
            all += turn.isTaken() ? 1 : 0;
        });
    }
    threads.clear();
    EXPECT_EQ(all, kThreads);
    EXPECT_LE(most, kMost);
}

TEST(PrinterTurns, AsManyAsThereAreNeedNotWaitForEachOther) {
    PrinterTurns turns(2);
    const PrinterTurn first(turns, nullptr);
    const PrinterTurn second(turns, nullptr);
    EXPECT_TRUE(first.isTaken());
    EXPECT_TRUE(second.isTaken());
}

TEST(PrinterTurns, ATurnIsGivenBack) {
    PrinterTurns turns(1);
    for (int i = 0; i < 3; ++i) {
        const PrinterTurn turn(turns, nullptr);
        EXPECT_TRUE(turn.isTaken());
    }
}

TEST(PrinterTurns, WaitingForOneEndsWhenItIsCancelledAndTakesNone) {
    PrinterTurns turns(1);
    std::atomic<bool> isCancelled{false};
    {
        const PrinterTurn only(turns, nullptr);
        std::jthread other([&] {
            const PrinterTurn turn(turns, &isCancelled);
            EXPECT_FALSE(turn.isTaken());
        });
        isCancelled = true;
    }
    const PrinterTurn next(turns, nullptr);
    EXPECT_TRUE(next.isTaken());
}

}  // namespace
}  // namespace TkPPDUpdating
