// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/kernels/Kernels.h"

#include "engine/signal/IIRLanes.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

TEST(KernelsTest, PlainLoopsComeLastAndHaveOneLane) {
    std::vector<CKernelTarget> const targets = GetKernelTargets();
    ASSERT_FALSE(targets.empty());
    EXPECT_EQ(std::string(targets.back().m_pName), "SCALAR");
    for (CKernelTarget const& target : targets) {
        CForceKernels const forced(target);
        EXPECT_EQ(GetLaneCount() == 1, target.m_nBit == targets.back().m_nBit) << target.m_pName;
    }
}

TEST(KernelsTest, ForcedKernelsNestAndEnd) {
    std::int32_t const before = GetLaneCount();
    {
        CForceKernels const plain;
        EXPECT_EQ(GetLaneCount(), 1);
        {
            CForceKernels const best(GetKernelTargets().front());
            EXPECT_EQ(GetLaneCount(), before);
        }
        EXPECT_EQ(GetLaneCount(), 1);
    }
    EXPECT_EQ(GetLaneCount(), before);
}

TEST(KernelsTest, ForcingHidesNoTarget) {
    std::size_t const before = GetKernelTargets().size();
    CForceKernels const plain;
    EXPECT_EQ(GetKernelTargets().size(), before);
}
