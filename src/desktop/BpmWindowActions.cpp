// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// What the window can be asked to do, and where: keys, toolbar, menu.

#include "desktop/BpmWindow.h"

#include "app/BPMController.h"
#include "desktop/ChipsLine.h"
#include "desktop/ColumnsMenu.h"
#include "desktop/FileTableView.h"
#include "desktop/Glyphs.h"
#include "desktop/ImageClickView.h"
#include "desktop/Texts.h"

#include <QAction>
#include <QMenu>
#include <QStyleOptionMenuItem>
#include <QToolBar>
#include <QToolButton>
#include <array>

namespace {

constexpr int kToolIconPixels = 20; // Fixed: side of the toolbar's icons.
constexpr QChar kLeftToRightMark(0x200E);

/// Keys run from left to right in mirrored windows too: "Ctrl+," would begin with its comma there.
class CKeysMenu : public QMenu {
public:
    using QMenu::QMenu;

protected:
    void initStyleOption(QStyleOptionMenuItem* option, QAction const* action) const override {
        QMenu::initStyleOption(option, action);
        qsizetype const keys = option->text.indexOf(u'\t') + 1;
        if (keys > 0 && isRightToLeft()) {
            option->text.insert(keys, kLeftToRightMark).append(kLeftToRightMark);
        }
    }
};

} // namespace

QAction* BpmWindow::makeAction(QString const& name, QString const& text, QString const& tip,
                               QList<QKeySequence> const& keys) {
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcuts(keys);
    QString const key = keys.isEmpty() ? QString() : ShortcutText(keys.first());
    action->setToolTip(key.isEmpty() ? tip : QString("%1 (%2)").arg(tip, key));
    addAction(action);
    return action;
}

void BpmWindow::setUpActions() {
    m_pAdd = makeAction("actionAdd", tr("Add"), tr("Add files and folders"), {QKeySequence::Open});
    m_pAnalyze = makeAction("actionAnalyze", tr("Analyze"), tr("Analyze the files without a tempo"),
                            {QKeySequence(Qt::Key_F5)});
    m_pStop =
        makeAction("actionStop", tr("Stop"), tr("Stop analyzing"), {QKeySequence(Qt::Key_Escape)});
    m_pRescan = makeAction("actionRescan", tr("Analyze all again …"), tr("Analyze all files again"),
                           {QKeySequence(Qt::SHIFT | Qt::Key_F5)});
    m_pCopy =
        makeAction("actionCopy", tr("Copy"), tr("Copy the selected rows"), {QKeySequence::Copy});
    m_pSelectAll = makeAction("actionSelectAll", tr("Select all"), tr("Select all rows"),
                              {QKeySequence::SelectAll});
    m_pHelp = makeAction("actionHelp", tr("Guide"), tr("Open the guide"), {});
    m_pKeys =
        makeAction("actionKeys", tr("Keys …"), tr("Show every key"), {QKeySequence(Qt::Key_F1)});
    connect(m_pKeys, &QAction::triggered, this, &BpmWindow::showKeys);
    m_pClose = makeAction("actionClose", tr("Close window"), tr("Close the window"),
                          {QKeySequence(Qt::CTRL | Qt::Key_W)});
    m_pQuit = makeAction("actionQuit", tr("Quit"), tr("Quit Tactus"),
                         {QKeySequence(Qt::CTRL | Qt::Key_Q)});
    connect(m_pAdd, &QAction::triggered, this, &BpmWindow::openFile);
    connect(m_pAnalyze, &QAction::triggered, this, [this] { m_controller.analyze(); });
    connect(m_pStop, &QAction::triggered, this, &BpmWindow::stop);
    connect(m_pRescan, &QAction::triggered, this, &BpmWindow::analyzeAgain);
    connect(m_pCopy, &QAction::triggered, m_pTable, &CFileTableView::copySelection);
    connect(m_pSelectAll, &QAction::triggered, m_pTable, &QAbstractItemView::selectAll);
    connect(m_pHelp, &QAction::triggered, this, [this] { m_controller.onHelp(); });
    connect(m_pClose, &QAction::triggered, this, &QWidget::close);
    connect(m_pQuit, &QAction::triggered, this, &BpmWindow::quitRequested);
    m_pTable->addActions({m_pCopy, m_pSelectAll});
}

// Keys for what the mouse does in the table's head.
void BpmWindow::setUpMoreActions() {
    for (int column = 0; column < kAllColumns; ++column) {
        QString const head =
            column < CFileTableModel::kColumnCount
                ? m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString()
                : ColumnText(static_cast<EMoreColumn>(column));
        int const digit = (column + 1) % kAllColumns; // the tenth is 0
        QAction* sort = makeAction(
            QString("actionSort%1").arg(column + 1), tr("Sort by %1").arg(head),
            tr("Sort by %1").arg(head),
            {QKeySequence(Qt::CTRL | Qt::ALT | static_cast<Qt::Key>(Qt::Key_0 + digit))});
        m_vSorts.push_back(sort);
        connect(sort, &QAction::triggered, m_pTable,
                [this, column] { m_pTable->sortByNext(column); });
    }
    m_pHide = makeAction("actionHide", tr("Hide"), tr("Hide the selected rows and leave them out"),
                         {QKeySequence::Delete});
    m_pBringBack =
        makeAction("actionBringBack", tr("Bring back"), tr("Bring back what was hidden last"), {});
    connect(m_pHide, &QAction::triggered, this, &BpmWindow::hideRows);
    connect(m_pBringBack, &QAction::triggered, this, &BpmWindow::bringBack);
    for (CCorrectionAction const& correction : m_vCorrections) {
        m_pTable->addAction(correction.m_pAction);
    }
    m_pTable->addActions({m_pType, m_pHide});
    m_pExport = makeAction("actionExport", tr("Export …"), tr("Write the rows into a file"),
                           {QKeySequence(Qt::CTRL | Qt::Key_E)});
    connect(m_pExport, &QAction::triggered, this, &BpmWindow::exportRows);
    m_pPreferences = makeAction("actionPreferences", tr("Preferences …"),
                                tr("What is to be otherwise than at first"),
                                {QKeySequence(Qt::CTRL | Qt::Key_Comma)});
    connect(m_pPreferences, &QAction::triggered, this, &BpmWindow::openPreferences);
    QAction* const find = makeAction("actionFind", tr("Filter"), tr("Find rows by words and more"),
                                     {QKeySequence::Find});
    connect(find, &QAction::triggered, m_pChips, &CChipsLine::focusQuery);
    m_pMenu =
        makeAction("actionMenu", tr("Menu"), tr("Everything else"), {QKeySequence(Qt::Key_F10)});
}

void BpmWindow::showSortKeys() {
    for (std::size_t column = 0; column < m_vSorts.size(); ++column) {
        m_vSorts[column]->setEnabled(m_pTable->hasColumn(static_cast<int>(column)));
    }
}

void BpmWindow::setUpToolbar() {
    auto* toolbar = new QToolBar(tr("Toolbar"), this);
    toolbar->setObjectName("toolbar");
    toolbar->setAccessibleName(tr("Toolbar"));
    toolbar->setMovable(false);
    toolbar->setContextMenuPolicy(Qt::PreventContextMenu);
    toolbar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    toolbar->setIconSize({kToolIconPixels, kToolIconPixels});
    std::array<QAction*, 6> const actions{m_pAdd, m_pAnalyze, m_pRescan, m_pStop, m_pHelp, m_pMenu};
    auto const icons = ActionIcons();
    for (std::size_t i = 0; i < actions.size(); ++i) {
        actions[i]->setIcon(icons[i]);
    }
    auto* room = new QWidget(toolbar);
    room->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    toolbar->addActions({m_pAdd, m_pAnalyze, m_pStop});
    toolbar->insertSeparator(m_pAnalyze);
    m_pCorrectionRoom = toolbar->addWidget(makeCorrectionButtons());
    toolbar->addWidget(room);
    toolbar->addAction(m_pMenu);
    setUpMenu(*toolbar);
    for (QAction* action : {m_pAdd, m_pAnalyze, m_pStop, m_pMenu}) {
        QWidget* button = toolbar->widgetForAction(action);
        button->setAccessibleName(action->text());
        button->setFocusPolicy(Qt::TabFocus);
    }
    auto* picture = new QxImageClickView(toolbar);
    picture->setObjectName("imageView");
    picture->setAccessibleName(tr("Tactus home page"));
    picture->setToolTip(tr("Open the home page"));
    connect(picture, &QxImageClickView::clicked, this, [this] { m_controller.onHelp(); });
    toolbar->addWidget(picture);
    addToolBar(toolbar);
    m_nWidthForCorrections = toolbar->sizeHint().width();
}

void BpmWindow::setUpMenu(QToolBar& toolbar) {
    auto* menu = new CKeysMenu(this);
    menu->setObjectName("menu");
    menu->setAccessibleName(tr("Menu"));
    menu->addActions({m_pRescan, m_pExport});
    menu->addSeparator();
    menu->addActions({m_pUndo, m_pRedo});
    menu->addSeparator();
    menu->addMenu(makeCorrectionMenu());
    menu->addActions({m_pCopy, m_pSelectAll, m_pHide, m_pBringBack});
    menu->addSeparator();
    menu->addActions({m_pTogglePane, m_pSwitchPane});
    m_pColumns = new CColumnsMenu(*m_pTable, this);
    m_pTable->setHeaderMenu(*m_pColumns);
    menu->addMenu(m_pColumns);
    menu->addSeparator();
    menu->addAction(m_pPreferences);
    menu->addSeparator();
    menu->addActions({m_pKeys, m_pHelp, m_pClose, m_pQuit});
    auto* button = qobject_cast<QToolButton*>(toolbar.widgetForAction(m_pMenu));
    button->setObjectName("menuButton");
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    connect(m_pMenu, &QAction::triggered, button, &QToolButton::showMenu);
}
