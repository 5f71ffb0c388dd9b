// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/BPMController.h"

#include <utility>

BPMController::BPMController(IBpmView& view)
    : m_view(view), m_batch(m_list, view), m_adder(m_list, m_batch, view) {
}

BPMController::~BPMController() {
    applicationWillTerminate();
}

void BPMController::awakeFromNib() {
    m_batch.Subscribe();
}

void BPMController::openFile(std::vector<CString> paths) {
    m_adder.AddInBackground(std::move(paths));
}

bool BPMController::panelShouldShowFilename(CString const& path) const {
    return m_adder.ShouldShow(path);
}

bool BPMController::panelCanChooseFilename(CString const& path) const {
    return m_adder.CanChoose(path);
}

void BPMController::add(CString const& path) {
    m_adder.Add(path);
}

void BPMController::BuildFileListFromPath(std::vector<CString>& list, CString const& directory) {
    m_adder.ListFiles(list, directory);
}

void BPMController::addFile(CString const& path) {
    m_adder.AddFile(path);
}

void BPMController::analyze() {
    m_batch.Start();
}

void BPMController::reScan() {
    m_batch.StartOver();
}

std::size_t BPMController::countForeignTempos() {
    return m_batch.CountForeign();
}

void BPMController::setWishes(CWishes const& wishes) {
    auto const guard = m_list.Lock();
    m_list.Wishes() = wishes;
}

std::vector<CString> BPMController::takeLeftOut() {
    return m_adder.TakeLeftOut();
}

std::vector<CString> BPMController::unreadFolders() const {
    return m_adder.UnreadFolders();
}

void BPMController::setHidden(std::vector<std::size_t> const& rows, bool isHidden) {
    m_batch.SetHidden(rows, isHidden);
}

void BPMController::stop() {
    m_adder.Stop();
    m_batch.Stop();
}

void BPMController::onProfilerFileProgress(CUserInfo const* userInfo) {
    m_batch.OnProgress(userInfo);
}

void BPMController::onFileComplete(CUserInfo const* userInfo) {
    m_batch.OnFileComplete(userInfo);
}

void BPMController::onAnalysisComplete(CUserInfo const* userInfo) {
    m_batch.OnAnalysisComplete(userInfo);
}

std::size_t BPMController::numberOfRowsInTableView() const {
    return m_list.Count();
}

std::u16string BPMController::objectValueForTableColumn(std::int32_t column,
                                                        std::size_t row) const {
    return m_list.Text(column, row);
}

CRowState BPMController::rowState(std::size_t row) const {
    return m_list.State(row);
}

std::vector<CTempoCandidate> BPMController::rowCandidates(std::size_t row) const {
    return m_list.Candidates(row);
}

CBatchStatus BPMController::status() const {
    auto const guard = m_list.Lock();
    CBatchStatus status = m_list.Counts();
    status.m_nRows = m_list.Size();
    status.m_bAdding = m_adder.IsBusy();
    m_batch.Tell(status);
    return status;
}

CDropAnswer BPMController::validateDrop(bool offersFileNames, std::int64_t proposedRow) const {
    if (!offersFileNames) {
        return {};
    }
    return {EDropOperation::Copy, proposedRow};
}

bool BPMController::acceptDrop(std::vector<CString> paths) {
    m_adder.AddInBackground(std::move(paths));
    return true;
}

void BPMController::onHelp() {
    m_view.openHomePage();
}

CBPMFile* BPMController::fileAtRow(std::size_t row) const {
    return m_list.FileAt(row);
}

void BPMController::applicationWillTerminate() {
    m_adder.End();
    m_batch.End();
    auto const guard = m_list.Lock();
    m_list.Clear();
}
