// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ExportDialog.h"

#include <QAccessible>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFontDatabase>
#include <QFormLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kPreviewRows = 8; // Fixed: enough to see what it looks like.
constexpr QSize kFirstSize(640, 380);   // Fixed: pixels.

QString EndingOf(ERowFormat format) {
    switch (format) {
    case ERowFormat::Commas:
        return QStringLiteral("csv");
    case ERowFormat::Tabs:
        return QStringLiteral("tsv");
    case ERowFormat::Json:
        break;
    }
    return QStringLiteral("jsonl");
}

} // namespace

CExportDialog::CExportDialog(std::vector<CExportRow> all, std::vector<CExportRow> selected,
                             QWidget* parent)
    : QDialog(parent), m_vAll(std::move(all)), m_vSelected(std::move(selected)) {
    setObjectName("exportDialog");
    setWindowTitle(tr("Export"));
    resize(kFirstSize);
    new QVBoxLayout(this);
    setUpChoices();
    setUpPreview();
    setUpButtons();
    showPreview();
}

void CExportDialog::setUpChoices() {
    m_pWhich = new QComboBox(this);
    m_pWhich->setObjectName("exportWhich");
    if (!m_vSelected.empty()) {
        m_pWhich->addItem(tr("%Ln selected row(s)", nullptr, static_cast<int>(m_vSelected.size())),
                          true);
    }
    m_pWhich->addItem(tr("All %Ln row(s)", nullptr, static_cast<int>(m_vAll.size())), false);
    m_pFormat = new QComboBox(this);
    m_pFormat->setObjectName("exportFormat");
    m_pFormat->addItem(tr("Table, commas between (csv)"), static_cast<int>(ERowFormat::Commas));
    m_pFormat->addItem(tr("Table, tabs between (tsv)"), static_cast<int>(ERowFormat::Tabs));
    m_pFormat->addItem(tr("JSON, one object a line (jsonl)"), static_cast<int>(ERowFormat::Json));
    auto* form = new QFormLayout;
    form->addRow(tr("&Rows:"), m_pWhich);
    form->addRow(tr("&Format:"), m_pFormat);
    qobject_cast<QVBoxLayout*>(layout())->addLayout(form);
    for (QComboBox* choice : {m_pWhich, m_pFormat}) {
        connect(choice, &QComboBox::currentIndexChanged, this, &CExportDialog::showPreview);
    }
}

void CExportDialog::setUpPreview() {
    m_pPreview = new QPlainTextEdit(this);
    m_pPreview->setObjectName("exportPreview");
    m_pPreview->setAccessibleName(tr("The first lines"));
    m_pPreview->setReadOnly(true);
    m_pPreview->setTabChangesFocus(true);
    m_pPreview->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_pPreview->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_pProblem = new QLabel(this);
    m_pProblem->setObjectName("exportProblem");
    m_pProblem->setTextFormat(Qt::PlainText);
    m_pProblem->setWordWrap(true);
    m_pProblem->hide();
    layout()->addWidget(m_pPreview);
    layout()->addWidget(m_pProblem);
}

void CExportDialog::setUpButtons() {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
    QPushButton* save = buttons->addButton(tr("Save as …"), QDialogButtonBox::AcceptRole);
    save->setDefault(true);
    layout()->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &CExportDialog::askAndSave);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

std::vector<CExportRow> const& CExportDialog::rows() const {
    return m_pWhich->currentData().toBool() ? m_vSelected : m_vAll;
}

ERowFormat CExportDialog::format() const {
    return static_cast<ERowFormat>(m_pFormat->currentData().toInt());
}

void CExportDialog::showPreview() {
    std::span<CExportRow const> const all = rows();
    std::size_t const shown = std::min(all.size(), kPreviewRows);
    QString text = QString::fromStdString(ExportRows(all.first(shown), format()));
    if (shown < all.size()) {
        text += QStringLiteral("…");
    }
    m_pPreview->setPlainText(text);
}

void CExportDialog::askAndSave() {
    QString const ending = EndingOf(format());
    QString const folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QString const path = QFileDialog::getSaveFileName(
        this, tr("Save as"), QString("%1/%2.%3").arg(folder, tr("tempos"), ending),
        QString("%1 (*.%1)").arg(ending));
    if (!path.isEmpty() && save(path)) {
        accept();
    }
}

bool CExportDialog::save(QString const& path) {
    std::vector<CExportRow> const& wanted = rows();
    std::string const text = ExportRows(wanted, format());
    QSaveFile file(path);
    bool const isSaved = file.open(QIODevice::WriteOnly) &&
                         file.write(text.data(), static_cast<qint64>(text.size())) ==
                             static_cast<qint64>(text.size()) &&
                         file.commit();
    if (isSaved) {
        m_sSummary =
            tr("%Ln row(s) exported to “%1”.", nullptr, static_cast<int>(wanted.size())).arg(path);
        return true;
    }
    m_pProblem->setText(tr("“%1” could not be written: %2").arg(path, file.errorString()));
    m_pProblem->show();
    QAccessibleEvent alert(m_pProblem, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    return false;
}
