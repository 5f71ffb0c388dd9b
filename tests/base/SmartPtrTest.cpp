// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/SmartPtr.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace {

// Counts its objects.
class CCounted : public CSmartPtrTarget {
public:
    CCounted() { ++s_nAlive; }
    CCounted(CCounted const&) = delete;
    CCounted& operator=(CCounted const&) = delete;
    ~CCounted() override { --s_nAlive; }

    int m_nValue = 5;
    static int s_nAlive;
};
int CCounted::s_nAlive = 0;

// Looks at the pointer that held it while it goes.
class CLooksBack : public CSmartPtrTarget {
public:
    CLooksBack() = default;
    CLooksBack(CLooksBack const&) = delete;
    CLooksBack& operator=(CLooksBack const&) = delete;
    ~CLooksBack() override {
        if (m_pHolder != nullptr) {
            *m_pSawNull = m_pHolder->Get() == nullptr;
        }
    }

    CSmartPtr<CLooksBack>* m_pHolder = nullptr;
    bool* m_pSawNull = nullptr;
};

class CThrows : public CSmartPtrTarget {
public:
    CThrows() {
        if (s_bThrow) {
            throw std::runtime_error("not made");
        }
    }
    static bool s_bThrow;
};
bool CThrows::s_bThrow = false;

} // namespace

TEST(SmartPtrTest, TargetStartsWithOneReference) {
    auto* const target = new CCounted;
    EXPECT_EQ(target->AddRef(), 2);
    EXPECT_EQ(target->Release(), 1);
    EXPECT_EQ(CCounted::s_nAlive, 1);
    EXPECT_EQ(target->Release(), 0);
    EXPECT_EQ(CCounted::s_nAlive, 0);
}

TEST(SmartPtrTest, CreateAddsNoReference) {
    CSmartPtr<CCounted> pointer;
    EXPECT_FALSE(pointer);
    pointer.Create();
    ASSERT_TRUE(pointer);
    EXPECT_EQ(pointer->m_nValue, 5);
    EXPECT_EQ(pointer->AddRef(), 2);
    EXPECT_EQ(pointer->Release(), 1);
}

TEST(SmartPtrTest, CreateReleasesTheOldTarget) {
    {
        CSmartPtr<CCounted> pointer;
        pointer.Create();
        pointer->m_nValue = 6;
        pointer.Create();
        EXPECT_EQ(CCounted::s_nAlive, 1);
        EXPECT_EQ(pointer->m_nValue, 5);
    }
    EXPECT_EQ(CCounted::s_nAlive, 0);
}

TEST(SmartPtrTest, CreateIsEmptyBeforeTheOldTargetGoes) {
    bool sawNull = false;
    CSmartPtr<CLooksBack> pointer;
    pointer.Create();
    pointer->m_pHolder = &pointer;
    pointer->m_pSawNull = &sawNull;
    pointer.Create();
    EXPECT_TRUE(sawNull);
}

TEST(SmartPtrTest, FailedCreationLeavesThePointerEmpty) {
    CSmartPtr<CThrows> pointer;
    CThrows::s_bThrow = false;
    pointer.Create();
    CThrows::s_bThrow = true;
    EXPECT_THROW(pointer.Create(), std::runtime_error);
    EXPECT_FALSE(pointer);
}

TEST(SmartPtrTest, EmptyPointerThrowsTheIntZero) {
    CSmartPtr<CCounted> const pointer;
    try {
        (void)pointer->m_nValue;
        ADD_FAILURE() << "nothing thrown";
    } catch (int value) {
        EXPECT_EQ(value, 0);
    }
}

TEST(SmartPtrTest, CopiesShareTheTarget) {
    {
        CSmartPtr<CCounted> first;
        first.Create();
        CSmartPtr<CCounted> const second(first);
        EXPECT_EQ(second.Get(), first.Get());
        first.Clear();
        EXPECT_FALSE(first);
        EXPECT_EQ(CCounted::s_nAlive, 1);
        first = second;
        EXPECT_EQ(first->AddRef(), 3);
        EXPECT_EQ(first->Release(), 2);
    }
    EXPECT_EQ(CCounted::s_nAlive, 0);
}

TEST(SmartPtrTest, AssignmentReleasesWhatWasHeld) {
    CSmartPtr<CCounted> first;
    CSmartPtr<CCounted> second;
    first.Create();
    second.Create();
    EXPECT_EQ(CCounted::s_nAlive, 2);
    first = second;
    EXPECT_EQ(CCounted::s_nAlive, 1);
    CSmartPtr<CCounted>& same = first;
    first = same;
    EXPECT_EQ(first->AddRef(), 3);
    EXPECT_EQ(first->Release(), 2);
    second = {};
    first = {};
    EXPECT_EQ(CCounted::s_nAlive, 0);
}

TEST(SmartPtrTest, MovesTakeTheReferenceAlong) {
    CSmartPtr<CCounted> first;
    first.Create();
    CCounted const* const target = first.Get();
    CSmartPtr<CCounted> second(std::move(first));
    EXPECT_EQ(second.Get(), target);
    EXPECT_EQ(second->AddRef(), 2);
    EXPECT_EQ(second->Release(), 1);
}

TEST(SmartPtrTest, CountHoldsAcrossThreads) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 10'000;
    CSmartPtr<CCounted> pointer;
    pointer.Create();
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([copy = pointer] {
            for (int round = 0; round < kRounds; ++round) {
                CSmartPtr<CCounted> const another(copy);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(pointer->AddRef(), 2);
    EXPECT_EQ(pointer->Release(), 1);
    EXPECT_EQ(CCounted::s_nAlive, 1);
    pointer.Clear();
    EXPECT_EQ(CCounted::s_nAlive, 0);
}
