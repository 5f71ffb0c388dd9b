// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/FrameIds.h"

#include "IDTag/TagLayout.h"

#include <cstring>
#include <span>

namespace {

struct CFrameIdPair {
    char m_sOld[4];
    char m_sNew[5];
};

// Standard: ID3v2.2.0, section 4, beside ID3v2.3.0, section 4; with the later ids for compilations
// and sort orders that players write into version 2.2 as well.
constexpr CFrameIdPair kFrameIds[] = {
    {"BUF", "RBUF"}, {"CNT", "PCNT"}, {"COM", "COMM"}, {"CRA", "AENC"}, {"CRM", "ENCR"},
    {"ETC", "ETCO"}, {"EQU", "EQUA"}, {"GEO", "GEOB"}, {"IPL", "IPLS"}, {"LNK", "LINK"},
    {"MCI", "MCDI"}, {"MLL", "MLLT"}, {"PIC", "APIC"}, {"POP", "POPM"}, {"REV", "RVRB"},
    {"RVA", "RVAD"}, {"SLT", "SYLT"}, {"STC", "SYTC"}, {"TAL", "TALB"}, {"TBP", "TBPM"},
    {"TCM", "TCOM"}, {"TCO", "TCON"}, {"TCP", "TCMP"}, {"TCR", "TCOP"}, {"TDA", "TDAT"},
    {"TDY", "TDLY"}, {"TEN", "TENC"}, {"TFT", "TFLT"}, {"TIM", "TIME"}, {"TKE", "TKEY"},
    {"TLA", "TLAN"}, {"TLE", "TLEN"}, {"TMT", "TMED"}, {"TOA", "TOPE"}, {"TOF", "TOFN"},
    {"TOL", "TOLY"}, {"TOR", "TORY"}, {"TOT", "TOAL"}, {"TP1", "TPE1"}, {"TP2", "TPE2"},
    {"TP3", "TPE3"}, {"TP4", "TPE4"}, {"TPA", "TPOS"}, {"TPB", "TPUB"}, {"TRC", "TSRC"},
    {"TRD", "TRDA"}, {"TRK", "TRCK"}, {"TS2", "TSO2"}, {"TSA", "TSOA"}, {"TSC", "TSOC"},
    {"TSI", "TSIZ"}, {"TSP", "TSOP"}, {"TSS", "TSSE"}, {"TST", "TSOT"}, {"TT1", "TIT1"},
    {"TT2", "TIT2"}, {"TT3", "TIT3"}, {"TXT", "TEXT"}, {"TXX", "TXXX"}, {"TYE", "TYER"},
    {"UFI", "UFID"}, {"ULT", "USLT"}, {"WAF", "WOAF"}, {"WAR", "WOAR"}, {"WAS", "WOAS"},
    {"WCM", "WCOM"}, {"WCP", "WCOP"}, {"WPB", "WPUB"}, {"WXX", "WXXX"},
};

// Fixed: podcasts, groupings and classical works, as the players that write them into version 2.2
// name them in versions 2.3 and 2.4.
constexpr CFrameIdPair kWiderFrameIds[] = {
    {"GP1", "GRP1"}, {"MVI", "MVIN"}, {"MVN", "MVNM"}, {"PCS", "PCST"}, {"TCT", "TCAT"},
    {"TDR", "TDRL"}, {"TDS", "TDES"}, {"TID", "TGID"}, {"TKW", "TKWD"}, {"WFD", "WFED"},
};

char const* FindIn(std::span<CFrameIdPair const> table, char const* oldId) {
    for (CFrameIdPair const& pair : table) {
        if (std::strncmp(pair.m_sOld, oldId, kOldFrameIdBytes) == 0) {
            return pair.m_sNew;
        }
    }
    return nullptr;
}

} // namespace

char const* FindV3FrameId(char const* oldId) {
    return FindIn(kFrameIds, oldId);
}

char const* FindWiderV3FrameId(char const* oldId) {
    char const* const id = FindIn(kFrameIds, oldId);
    return id != nullptr ? id : FindIn(kWiderFrameIds, oldId);
}
