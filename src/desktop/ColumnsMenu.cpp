// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ColumnsMenu.h"

#include "desktop/ColumnLayout.h"
#include "desktop/FileTableView.h"
#include "desktop/MoreColumns.h"

#include <QAction>

CColumnsMenu::CColumnsMenu(CFileTableView& table, QWidget* parent)
    : QMenu(tr("Columns"), parent), m_table(table) {
    setObjectName("columnsMenu");
    for (int number = kOtherColumn; number < kAllColumns; ++number) {
        auto const column = static_cast<EMoreColumn>(number);
        QAction* const action = addAction(ColumnText(column));
        action->setObjectName(QString("column%1").arg(number));
        action->setCheckable(true);
        action->setData(number);
        connect(action, &QAction::triggered, this,
                [this, column](bool isWanted) { m_table.showColumn(column, isWanted); });
    }
    addSeparator();
    QAction* const first = addAction(tr("As at first"));
    first->setObjectName("columnsAsAtFirst");
    connect(first, &QAction::triggered, this,
            [this] { m_table.setColumnLayout(CColumnLayout::Factory()); });
    connect(&table, &CFileTableView::columnsChanged, this, &CColumnsMenu::showTicks);
    showTicks();
}

void CColumnsMenu::showTicks() {
    for (QAction* const action : actions()) {
        if (action->isCheckable()) {
            action->setChecked(m_table.hasColumn(action->data().toInt()));
        }
    }
}
