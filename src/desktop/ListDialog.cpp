// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ListDialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr QSize kFirstListSize(560, 480); // Fixed: pixels.

} // namespace

CListDialog::CListDialog(QString const& title, QStringList const& heads,
                         QList<QStringList> const& rows, QWidget* parent)
    : QDialog(parent), m_pButtons(new QDialogButtonBox(QDialogButtonBox::Close, this)) {
    setObjectName("listDialog");
    setWindowTitle(title);
    resize(kFirstListSize);
    auto* list = new QTreeWidget(this);
    list->setAccessibleName(title);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list->setHeaderLabels(heads);
    list->setHeaderHidden(heads.size() == 1);
    for (QStringList const& row : rows) {
        list->addTopLevelItem(new QTreeWidgetItem(row));
    }
    list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list->header()->setStretchLastSection(true);
    m_pButtons->button(QDialogButtonBox::Close)->setText(tr("Close"));
    m_pButtons->button(QDialogButtonBox::Close)->setDefault(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list, 1);
    layout->addWidget(m_pButtons);
    connect(m_pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
}

void CListDialog::addChoice(QString const& text) {
    QPushButton* button = m_pButtons->addButton(text, QDialogButtonBox::AcceptRole);
    button->setObjectName("listChoice");
    button->setAutoDefault(false);
}
