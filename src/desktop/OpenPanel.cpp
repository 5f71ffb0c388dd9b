// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/OpenPanel.h"

#include <QFileInfo>
#include <QFileSystemModel>
#include <QSettings>
#include <QSortFilterProxyModel>

namespace {

std::string PathBytes(QString const& path) {
    return QFile::encodeName(path).toStdString();
}

/// Leaves out what isn't shown and greys what can't be chosen.
class CPanelFilter : public QSortFilterProxyModel {
public:
    CPanelFilter(COpenPanelRules const& rules, QObject* parent)
        : QSortFilterProxyModel(parent), m_rules(rules) {}

    Qt::ItemFlags flags(QModelIndex const& index) const override {
        Qt::ItemFlags const flags = QSortFilterProxyModel::flags(index);
        std::string const path = PathBytes(index.data(QFileSystemModel::FilePathRole).toString());
        return m_rules.m_canChoose(path) ? flags
                                         : flags & ~(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    }

protected:
    bool filterAcceptsRow(int row, QModelIndex const& parent) const override {
        QModelIndex const index = sourceModel()->index(row, 0, parent);
        return m_rules.m_shouldShow(
            PathBytes(index.data(QFileSystemModel::FilePathRole).toString()));
    }

private:
    COpenPanelRules const& m_rules;
};

/// Qt's panel reads its folder and its widths from a file of settings, and writes them there when
/// it goes. Below a path that can't be a folder it finds and leaves nothing.
QWidget* WithoutSettings(QWidget* parent) {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, "/dev/null");
    return parent;
}

} // namespace

COpenPanel::COpenPanel(COpenPanelRules rules, QWidget* parent)
    : QFileDialog(WithoutSettings(parent)), m_rules(std::move(rules)) {
    setObjectName("openPanel");
    setWindowTitle(tr("Add files and folders"));
    // The desktop's own panels choose either files or folders, never both.
    setOption(QFileDialog::DontUseNativeDialog);
    // Its menu could otherwise delete and rename files.
    setOption(QFileDialog::ReadOnly);
    setFileMode(QFileDialog::ExistingFiles);
    setNameFilter(tr("Music files and folders") + " (*)");
    setProxyModel(new CPanelFilter(m_rules, this));
}

void COpenPanel::accept() {
    m_vChosen.clear();
    for (QUrl const& url : selectedUrls()) {
        std::string path = PathBytes(url.toLocalFile());
        if (QFileInfo::exists(url.toLocalFile()) && m_rules.m_canChoose(path)) {
            m_vChosen.push_back(std::move(path));
        }
    }
    if (m_vChosen.empty()) {
        QFileDialog::accept();
        return;
    }
    done(QDialog::Accepted);
}
