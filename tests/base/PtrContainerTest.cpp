// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/PtrContainer.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

namespace {

class CBase {
public:
    explicit CBase(std::string& log) : m_sLog(log) {}
    CBase(CBase const&) = delete;
    CBase& operator=(CBase const&) = delete;
    virtual ~CBase() { m_sLog += "."; }

protected:
    std::string& m_sLog;
};

// Writes its letter when it is deleted as what it is.
class CLetter : public CBase {
public:
    CLetter(std::string& log, char letter) : CBase(log), m_nLetter(letter) {}
    ~CLetter() override { m_sLog += m_nLetter; }

private:
    char m_nLetter;
};

} // namespace

TEST(PtrContainerTest, EnumeratesUntilTheCount) {
    std::string log;
    CPtrContainer<CBase> container;
    auto first = std::make_unique<CLetter>(log, 'a');
    CBase* const expected = first.get();
    container.Add(std::move(first));
    container.Add(nullptr);
    CBase* item = nullptr;
    EXPECT_TRUE(container.EnumItems(0, &item));
    EXPECT_EQ(item, expected);
    EXPECT_TRUE(container.EnumItems(1, &item));
    EXPECT_EQ(item, nullptr);
    EXPECT_EQ(container.GetCount(), 2U);
}

TEST(PtrContainerTest, EnumeratingPastTheEndLeavesTheOutputAlone) {
    std::string log;
    CPtrContainer<CBase> container;
    container.Add(std::make_unique<CLetter>(log, 'a'));
    CLetter other(log, 'x');
    CBase* item = &other;
    EXPECT_FALSE(container.EnumItems(1, &item));
    EXPECT_FALSE(container.EnumItems(0xFFFFFFFFU, &item));
    EXPECT_EQ(item, &other);
}

TEST(PtrContainerTest, DeletesAllInOrderAndSkipsNull) {
    std::string log;
    CPtrContainer<CBase> container;
    container.Add(std::make_unique<CLetter>(log, 'a'));
    container.Add(nullptr);
    container.Add(std::make_unique<CLetter>(log, 'b'));
    container.DeleteAll();
    EXPECT_EQ(log, "a.b.");
    EXPECT_EQ(container.GetCount(), 0U);
    container.DeleteAll();
    EXPECT_EQ(log, "a.b.");
}

TEST(PtrContainerTest, DeletesWhatItOwnsAtTheEnd) {
    std::string log;
    {
        CPtrContainer<CBase> container;
        container.Add(std::make_unique<CLetter>(log, 'a'));
        container.Add(std::make_unique<CLetter>(log, 'b'));
    }
    EXPECT_EQ(log, "a.b.");
}
