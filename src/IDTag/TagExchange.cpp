// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/TagExchange.h"

#include "IDTag/TagReplacement.h"

#include <algorithm>
#include <new>
#include <vector>

namespace {

bool BeginsWith(int file, std::span<std::uint8_t const> bytes) {
    std::vector<std::uint8_t> found(bytes.size());
    return ReadAllAt(file, found, 0) && std::ranges::equal(found, bytes);
}

EWriteProblem Exchange(CTagChange change, std::optional<std::int64_t> writtenTime,
                       ITagWitness* witness, CFileIdentity* after) {
    CTagTarget target(change.m_sPath);
    if (!target.MayBeWritten()) {
        return EWriteProblem::NotWritable;
    }
    EWriteProblem problem = target.Open(change.m_before);
    if (problem != EWriteProblem::None) {
        return problem;
    }
    if (!BeginsWith(target.Get(), change.m_oldTag)) {
        return EWriteProblem::Changed;
    }
    if (witness != nullptr) {
        change.m_sPath = target.GetPath();
        witness->OnWriting(change);
    }
    bool rewritten = false;
    problem = ReplaceTag(target, change.m_oldTag, change.m_newTag, writtenTime, &rewritten);
    std::optional<CFileIdentity> const now =
        problem == EWriteProblem::None ? IdentityAt(target.GetPath().ToPath()) : std::nullopt;
    if (witness != nullptr) {
        witness->OnWritten(now);
    }
    *after = now.value_or(CFileIdentity());
    return problem;
}

} // namespace

EWriteProblem ExchangeTag(CTagChange const& change, std::optional<std::int64_t> writtenTime,
                          ITagWitness* witness, CFileIdentity* after) {
    try {
        return Exchange(change, writtenTime, witness, after);
    } catch (std::bad_alloc const&) {
        return EWriteProblem::NoMemory;
    }
}
