// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ExportDialog.h"

#include "desktop/SongGatherer.h"
#include "desktop/Texts.h"

#include <QAccessible>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
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

constexpr std::size_t kPreviewRows = 8;     // Fixed: enough to see what it looks like.
constexpr QSize kFirstExportSize(640, 420); // Fixed: pixels.

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

QString EndingOf(std::variant<ERowFormat, ESongFormat> const& format) {
    ERowFormat const* const rows = std::get_if<ERowFormat>(&format);
    return rows != nullptr ? EndingOf(*rows) : QString(EndingOf(std::get<ESongFormat>(format)));
}

QLabel* MakeLine(QWidget* parent, char const* name) {
    auto* line = new QLabel(parent);
    line->setObjectName(name);
    line->setTextFormat(Qt::PlainText);
    line->setWordWrap(true);
    return line;
}

} // namespace

CExportDialog::CExportDialog(std::vector<CExportRow> all, std::vector<CExportRow> selected,
                             CRecordStore& store, QWidget* parent)
    : QDialog(parent),
      m_vAll(std::move(all)),
      m_vSelected(std::move(selected)),
      m_pGatherer(new CSongGatherer(store, this)) {
    setObjectName("exportDialog");
    setWindowTitle(tr("Export"));
    resize(kFirstExportSize);
    new QVBoxLayout(this);
    setUpChoices();
    setUpGathering();
    setUpPreview();
    setUpButtons();
    showChoice();
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
    addFormat(ERowFormat::Commas, tr("Table, commas between (csv)"));
    addFormat(ERowFormat::Tabs, tr("Table, tabs between (tsv)"));
    addFormat(ERowFormat::Json, tr("JSON, one object a line (jsonl)"));
    m_pFormat->insertSeparator(m_pFormat->count());
    m_vFormats.emplace_back(); // the separator's place
    addFormat(ESongFormat::Rekordbox, tr("Beat grids for rekordbox (xml)"));
    addFormat(ESongFormat::Labels, tr("Beats as labels for Audacity (txt)"));
    addFormat(ESongFormat::Midi, tr("Tempo map for sequencers (mid)"));
    addFormat(ESongFormat::Jams, tr("Annotations for music research (jams)"));
    addFormat(ESongFormat::Record, tr("All that is known, as JSON (jsonl)"));
    addFormat(ESongFormat::Playlist, tr("Playlist (m3u8)"));
    addFormat(ESongFormat::Drawing, tr("Drawing of the song (svg)"));
    auto* form = new QFormLayout;
    form->addRow(tr("&Rows:"), m_pWhich);
    form->addRow(tr("&Format:"), m_pFormat);
    qobject_cast<QVBoxLayout*>(layout())->addLayout(form);
    for (QComboBox* choice : {m_pWhich, m_pFormat}) {
        connect(choice, &QComboBox::currentIndexChanged, this, &CExportDialog::showChoice);
    }
}

void CExportDialog::addFormat(Format format, QString const& name) {
    m_vFormats.push_back(format);
    m_pFormat->addItem(name);
}

void CExportDialog::setUpGathering() {
    m_pGathering = new QWidget(this);
    m_pGathered = MakeLine(m_pGathering, "exportGathered");
    m_pGather = new QPushButton(m_pGathering);
    m_pGather->setObjectName("exportGather");
    m_pGather->setAutoDefault(false);
    auto* line = new QHBoxLayout(m_pGathering);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(m_pGathered, 1);
    line->addWidget(m_pGather);
    layout()->addWidget(m_pGathering);
    connect(m_pGatherer, &CSongGatherer::changed, this, &CExportDialog::showGathering);
    connect(m_pGather, &QPushButton::clicked, this, [this] {
        if (m_pGatherer->state().m_step == CGathering::EStep::Hearing) {
            m_pGatherer->stop();
        } else {
            m_pGatherer->hear();
        }
    });
}

void CExportDialog::setUpPreview() {
    m_pPreview = new QPlainTextEdit(this);
    m_pPreview->setObjectName("exportPreview");
    m_pPreview->setAccessibleName(tr("The first lines"));
    m_pPreview->setReadOnly(true);
    m_pPreview->setLayoutDirection(Qt::LeftToRight); // What programs read has one direction.
    m_pPreview->setTabChangesFocus(true);
    m_pPreview->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_pPreview->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_pProblem = MakeLine(this, "exportProblem");
    m_pProblem->hide();
    layout()->addWidget(m_pPreview);
    layout()->addWidget(m_pProblem);
}

void CExportDialog::setUpButtons() {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
    m_pSave = buttons->addButton(tr("Save as …"), QDialogButtonBox::AcceptRole);
    m_pSave->setObjectName("exportSave");
    m_pSave->setDefault(true);
    layout()->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &CExportDialog::askAndSave);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

std::vector<CExportRow> const& CExportDialog::rows() const {
    return m_pWhich->currentData().toBool() ? m_vSelected : m_vAll;
}

CExportDialog::Format CExportDialog::format() const {
    return m_vFormats[static_cast<std::size_t>(m_pFormat->currentIndex())];
}

void CExportDialog::showChoice() {
    Format const chosen = format();
    ERowFormat const* const rowFormat = std::get_if<ERowFormat>(&chosen);
    m_pProblem->hide();
    m_pGathering->setVisible(rowFormat == nullptr);
    m_pSave->setEnabled(rowFormat != nullptr);
    m_pSave->setText(isIntoFolder() ? tr("Save in …") : tr("Save as …"));
    if (rowFormat == nullptr) {
        showSongs();
        return;
    }
    m_pGatherer->stop();
    std::span<CExportRow const> const all = rows();
    std::size_t const shown = std::min(all.size(), kPreviewRows);
    QString text = QString::fromStdString(ExportRows(all.first(shown), *rowFormat));
    if (shown < all.size()) {
        text += QStringLiteral("…");
    }
    m_pPreview->setPlainText(text);
}

void CExportDialog::askAndSave() {
    QString const folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QString const path =
        isIntoFolder() ? QFileDialog::getExistingDirectory(this, tr("Folder for the files"), folder)
                       : askForFile(folder);
    if (!path.isEmpty() && save(path)) {
        accept();
    }
}

QString CExportDialog::askForFile(QString const& folder) {
    Format const chosen = format();
    ESongFormat const* const songFormat = std::get_if<ESongFormat>(&chosen);
    bool const isNamedAsSong = songFormat != nullptr && IsOneASong(*songFormat) && !rows().empty();
    QString const name =
        isNamedAsSong ? QFileInfo(QString::fromStdString(rows().front().m_sPath)).completeBaseName()
                      : tr("tempos");
    QString const ending = EndingOf(chosen);
    return QFileDialog::getSaveFileName(this, tr("Save as"),
                                        QString("%1/%2.%3").arg(folder, name, ending),
                                        QString("%1 (*.%1)").arg(ending));
}

bool CExportDialog::save(QString const& path) {
    Format const chosen = format();
    if (ESongFormat const* const songFormat = std::get_if<ESongFormat>(&chosen)) {
        return saveSongs(path, *songFormat);
    }
    std::vector<CExportRow> const& wanted = rows();
    if (!write(path, ExportRows(wanted, std::get<ERowFormat>(chosen)))) {
        return false;
    }
    m_sSummary = tr("%Ln row(s) exported to “%1”.", nullptr, static_cast<int>(wanted.size()))
                     .arg(Isolated(path));
    return true;
}

bool CExportDialog::write(QString const& path, std::string const& text) {
    QSaveFile file(path);
    auto const size = static_cast<qint64>(text.size());
    bool const isWritten =
        file.open(QIODevice::WriteOnly) && file.write(text.data(), size) == size && file.commit();
    if (!isWritten) {
        tellProblem(tr("“%1” could not be written: %2").arg(Isolated(path), file.errorString()));
    }
    return isWritten;
}

void CExportDialog::tellProblem(QString const& text) {
    m_pProblem->setText(text);
    m_pProblem->show();
    QAccessibleEvent alert(m_pProblem, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
