// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/signal/CpuFeatures.h"

#include <gtest/gtest.h>

TEST(CpuFeaturesTest, PlainLoopsAreForcedWhileAnyoneAsksForThem) {
    bool const before = UseAvx2();
    {
        CForceScalarKernels const first;
        EXPECT_FALSE(UseAvx2());
        {
            CForceScalarKernels const second;
            EXPECT_FALSE(UseAvx2());
        }
        EXPECT_FALSE(UseAvx2());
    }
    EXPECT_EQ(UseAvx2(), before);
}
