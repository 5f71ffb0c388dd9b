// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "engine/kernels/Kernels.h"

#include "engine/kernels/Targets.h"

#include <hwy/highway.h>

namespace {

constexpr CKernelTarget kPlain = {HWY_SCALAR, "SCALAR"};

std::int64_t g_nForced = 0; // 0: none

void Force(std::int64_t target) {
    g_nForced = target;
    hwy::SetSupportedTargetsForTest(target);
    hwy::GetChosenTarget().DeInit();
}

} // namespace

std::vector<CKernelTarget> GetKernelTargets() {
    CForceKernels const none({0, ""});
    std::vector<CKernelTarget> result;
    for (std::int64_t const target : hwy::SupportedAndGeneratedTargets()) {
        if (target != HWY_SCALAR) {
            result.push_back({target, hwy::TargetName(target)});
        }
    }
    result.push_back(kPlain);
    return result;
}

CForceKernels::CForceKernels() : CForceKernels(kPlain) {
}

CForceKernels::CForceKernels(CKernelTarget const& target) : m_nBefore(g_nForced) {
    Force(target.m_nBit);
}

CForceKernels::~CForceKernels() {
    Force(m_nBefore);
}
