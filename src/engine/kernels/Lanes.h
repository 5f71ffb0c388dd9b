// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// What kernels share, once for every target: it is included behind "hwy/foreach_target.h", and
// again for each of its rounds.

#if defined(TACTUS_ENGINE_KERNELS_LANES) == defined(HWY_TARGET_TOGGLE)
#ifdef TACTUS_ENGINE_KERNELS_LANES
#undef TACTUS_ENGINE_KERNELS_LANES
#else
#define TACTUS_ENGINE_KERNELS_LANES
#endif

#include <cstddef>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Side by side: eight, or four where registers have no more room. Highway's fused operations are
// not to be used: they round once where the plain loops round twice.
using CLaneTag = hn::CappedTag<float, 8>;
using CLanes = hn::Vec<CLaneTag>;
constexpr std::size_t kLanes = hn::MaxLanes(CLaneTag());

#if HWY_TARGET != HWY_SCALAR

using CHalfTag = hn::Half<CLaneTag>;
constexpr std::size_t kBlock = 4; // Fixed: samples that are turned at a time.

/// Four samples k .. k + 3 of every lane: rows[i] has those of lane i and then of lane i + 4.
HWY_INLINE void LoadRows(float const* const* lanes, std::ptrdiff_t k, CLanes* rows) {
    for (std::size_t i = 0; i < kBlock; ++i) {
        if constexpr (kLanes == kBlock) {
            rows[i] = hn::LoadU(CLaneTag(), lanes[i] + k);
        } else {
            rows[i] = hn::Combine(CLaneTag(), hn::LoadU(CHalfTag(), lanes[i + kBlock] + k),
                                  hn::LoadU(CHalfTag(), lanes[i] + k));
        }
    }
}

/// The way back of `LoadRows`.
HWY_INLINE void StoreRows(CLanes const* rows, float* const* lanes, std::ptrdiff_t k) {
    for (std::size_t i = 0; i < kBlock; ++i) {
        if constexpr (kLanes == kBlock) {
            hn::StoreU(rows[i], CLaneTag(), lanes[i] + k);
        } else {
            hn::StoreU(hn::LowerHalf(rows[i]), CHalfTag(), lanes[i] + k);
            hn::StoreU(hn::UpperHalf(CHalfTag(), rows[i]), CHalfTag(), lanes[i + kBlock] + k);
        }
    }
}

/// Rows into columns, of which columns[i] has sample k + i of every lane, or back: the turn is its
/// own inverse.
HWY_INLINE void TurnRows(CLanes* rows) {
    constexpr CLaneTag kOne;
    constexpr hn::Repartition<double, CLaneTag> kTwo;
    auto const low01 = hn::BitCast(kTwo, hn::InterleaveLower(kOne, rows[0], rows[1]));
    auto const high01 = hn::BitCast(kTwo, hn::InterleaveUpper(kOne, rows[0], rows[1]));
    auto const low23 = hn::BitCast(kTwo, hn::InterleaveLower(kOne, rows[2], rows[3]));
    auto const high23 = hn::BitCast(kTwo, hn::InterleaveUpper(kOne, rows[2], rows[3]));
    rows[0] = hn::BitCast(kOne, hn::InterleaveLower(kTwo, low01, low23));
    rows[1] = hn::BitCast(kOne, hn::InterleaveUpper(kTwo, low01, low23));
    rows[2] = hn::BitCast(kOne, hn::InterleaveLower(kTwo, high01, high23));
    rows[3] = hn::BitCast(kOne, hn::InterleaveUpper(kTwo, high01, high23));
}

/// The larger of each two; `b` where `a` is NaN.
template <class V>
HWY_INLINE V LargerOf(V a, V b) {
#if HWY_ARCH_X86
    return hn::Max(a, b); // gives the second where there is no order
#else
    return hn::IfThenElse(hn::Gt(a, b), a, b);
#endif
}

#endif // HWY_TARGET != HWY_SCALAR

} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif // TACTUS_ENGINE_KERNELS_LANES
