// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Typing a tempo into its cell.

#include "desktop/CellDelegate.h"

#include "desktop/Glyphs.h"
#include "desktop/Numbers.h"
#include "song/TagTempo.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QToolTip>

CTempoDelegate::CTempoDelegate(QObject* parent)
    : CCellDelegate(parent), m_byHand(ByHandIcon()), m_notInFile(NotInFileIcon()) {
}

QWidget* CTempoDelegate::createEditor(QWidget* parent, QStyleOptionViewItem const&,
                                      QModelIndex const&) const {
    auto* editor = new QLineEdit(parent);
    editor->setObjectName("tempoEditor");
    editor->setAccessibleName(tr("Tempo"));
    editor->setFrame(false);
    editor->setAutoFillBackground(true);
    // At the column's end, as in the cell, whichever way the digits that are typed run.
    bool const isMirrored = parent->isRightToLeft();
    int const margin = kCellMargin / 2;
    editor->setAlignment(Qt::AlignAbsolute | (isMirrored ? Qt::AlignLeft : Qt::AlignRight));
    editor->setTextMargins(isMirrored ? margin : 0, 0, isMirrored ? 0 : margin, 0);
    return editor;
}

// The list may tell of its row meanwhile: what is being typed stays.
void CTempoDelegate::setEditorData(QWidget* editor, QModelIndex const& index) const {
    auto* const line = qobject_cast<QLineEdit*>(editor);
    QString const shown = index.data().toString();
    if (!line->isModified() && line->text().isEmpty()) {
        line->setText(TypedTempo(shown) ? shown : QString());
    }
}

// One that was only looked at isn't set by hand.
void CTempoDelegate::setModelData(QWidget* editor, QAbstractItemModel*,
                                  QModelIndex const& index) const {
    auto const* const line = qobject_cast<QLineEdit*>(editor);
    std::optional<double> const bpm = TypedTempo(line->text());
    if (bpm && line->isModified()) {
        emit tempoTyped(index, *bpm);
    }
}

// What is no tempo stays to be mended, unless one goes elsewhere.
bool CTempoDelegate::eventFilter(QObject* editor, QEvent* event) {
    auto* const line = qobject_cast<QLineEdit*>(editor);
    bool const isKey = line != nullptr && event->type() == QEvent::KeyPress;
    int const key = isKey ? static_cast<QKeyEvent*>(event)->key() : 0;
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && line->isModified() &&
        !TypedTempo(line->text())) {
        line->selectAll();
        QToolTip::showText(line->mapToGlobal(line->rect().bottomLeft()),
                           tr("A tempo is a number from %1 to %2.")
                               .arg(LimitText(kSlowestTagBpm), LimitText(kFastestTagBpm)),
                           line);
        return true;
    }
    return CCellDelegate::eventFilter(editor, event);
}
