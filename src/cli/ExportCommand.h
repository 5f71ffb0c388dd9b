// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Command.h"
#include "cli/SongRun.h"
#include "export/SongFilter.h"
#include "export/SongTable.h"

#include <optional>
#include <string>
#include <vector>

/// `tactus export`: writes songs for other programs, a command below it for each kind of file.
class CExportCommand final : public ICommand {
public:
    CLI::App* AddTo(CLI::App& program) override;
    int Run() override;

    /// One kind of file.
    struct CFormat;

private:
    void AddFormat(CLI::App& program, CFormat const& format);
    [[nodiscard]] std::string Refusal() const;
    [[nodiscard]] std::vector<CTakenSong> Chosen(std::vector<CTakenSong> songs) const;
    int WriteApart(std::vector<CTakenSong> const& songs) const;
    [[nodiscard]] bool IsIntoFolder() const;

    CFormat const* m_pFormat = nullptr; // the one that was asked for
    CSongRun m_run;
    std::optional<CSongFilter> m_filter;
    std::optional<CSongOrder> m_order;

    CTableShape m_table;
    bool m_bRelative = false;
    std::string m_sBaseHere; // songs below it
    std::string m_sBaseThere;
    std::optional<double> m_offsetSeconds;

    friend struct CExportFormats;
};
