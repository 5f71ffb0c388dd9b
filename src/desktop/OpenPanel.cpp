// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/OpenPanel.h"

#include "desktop/Texts.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProxyStyle>
#include <QPushButton>
#include <QSettings>
#include <QSortFilterProxyModel>
#include <QStandardPaths>
#include <QStyledItemDelegate>
#include <QTreeView>

namespace {

constexpr QSize kPanelSize(860, 520); // Fixed: pixels; names of some fifty letters.

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

/// Names, sizes and dates in their own direction, also in a window from right to left.
class CPanelDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(QVariant const& value, QLocale const& locale) const override {
        return Isolated(QStyledItemDelegate::displayText(value, locale));
    }
};

/// The desktop's own style, but texts are paths, which begin on the left in every language.
class CPathStyle : public QProxyStyle {
public:
    CPathStyle() : QProxyStyle(QApplication::style()->name()) {}

    void drawItemText(QPainter* painter, QRect const& place, int flags, QPalette const& colors,
                      bool isEnabled, QString const& text,
                      QPalette::ColorRole role) const override {
        QProxyStyle::drawItemText(painter, place, flags, colors, isEnabled, LeftToRight(text),
                                  role);
    }
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
    setItemDelegate(new CPanelDelegate(this));
    auto* folder = findChild<QComboBox*>("lookInCombo");
    auto* pathStyle = new CPathStyle;
    pathStyle->setParent(this);
    folder->setStyle(pathStyle);
    folder->setLayoutDirection(Qt::LeftToRight);
    resize(kPanelSize);
    setUpPlaces();
    setUpColumns();
    setUpOwnParts();
}

void COpenPanel::setUpPlaces() {
    QList<QUrl> places = sidebarUrls();
    for (QString const& folder : QStandardPaths::standardLocations(QStandardPaths::MusicLocation)) {
        QUrl const place = QUrl::fromLocalFile(folder);
        if (QFileInfo(folder).isDir() && !places.contains(place)) {
            places << place;
        }
    }
    setSidebarUrls(places);
}

// Names take the room that sizes, kinds and dates leave.
void COpenPanel::setUpColumns() {
    QHeaderView* header = findChild<QTreeView*>("treeView")->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
}

void COpenPanel::setUpOwnParts() {
    auto* buttons = findChild<QDialogButtonBox*>();
    QPushButton* folder = buttons->addButton(tr("Add this folder"), QDialogButtonBox::ActionRole);
    folder->setObjectName("takeFolder");
    folder->setAutoDefault(false);
    folder->setToolTip(tr("Add the folder that is open here, with everything below it"));
    connect(folder, &QPushButton::clicked, this, &COpenPanel::takeThisFolder);
    m_pNotice = new QLabel(this);
    m_pNotice->setObjectName("panelNotice");
    m_pNotice->setTextFormat(Qt::PlainText);
    m_pNotice->setWordWrap(true);
    m_pNotice->hide();
    // Qt's panel shows what its choices are for, but does not say it.
    for (QString const& choice : {QStringLiteral("lookIn"), QStringLiteral("fileType")}) {
        findChild<QLabel*>(choice + "Label")->setBuddy(findChild<QWidget*>(choice + "Combo"));
    }
    auto* grid = qobject_cast<QGridLayout*>(layout());
    grid->addWidget(m_pNotice, grid->rowCount(), 0, 1, grid->columnCount());
}

void COpenPanel::takeThisFolder() {
    m_vChosen = {PathBytes(directory().absolutePath())};
    done(QDialog::Accepted);
}

// Several names stand in quotation marks, as the panel itself writes them.
QStringList COpenPanel::typedNames() const {
    auto const* line = findChild<QLineEdit*>("fileNameEdit");
    QString const text = line->text();
    if (!line->isModified() || text.trimmed().isEmpty()) {
        return {};
    }
    if (!text.contains(QLatin1Char('"'))) {
        return {text};
    }
    QStringList names;
    QStringList const parts = text.split(QLatin1Char('"'));
    for (qsizetype i = 1; i < parts.size(); i += 2) {
        names << parts[i];
    }
    return names;
}

// Returns: false when the panel must stay.
bool COpenPanel::takeTyped(QStringList const& names) {
    for (QString const& name : names) {
        QString const path = name.startsWith(QLatin1String("~/"))
                                 ? QDir::homePath() + name.mid(1)
                                 : QDir::cleanPath(directory().absoluteFilePath(name));
        if (!QFileInfo::exists(path)) {
            tell(tr("There is no “%1” here.").arg(Isolated(name)));
            return false;
        }
        if (names.size() == 1 && QFileInfo(path).isDir()) {
            setDirectory(path);
            findChild<QLineEdit*>("fileNameEdit")->clear();
            return false;
        }
        if (!m_rules.m_canChoose(PathBytes(path))) {
            QString const reason =
                m_rules.m_bEveryKind
                    ? tr("“%1” is neither a folder nor a music file of a kind that is read.")
                    : tr("“%1” can't be chosen here, only wav, mp3 and aiff files and folders. "
                         "Other kinds come in with their folder, or when they are dropped on the "
                         "window.");
            tell(reason.arg(Isolated(name)));
            return false;
        }
        m_vChosen.push_back(PathBytes(path));
    }
    return true;
}

void COpenPanel::tell(QString const& sentence) {
    m_pNotice->setText(sentence);
    m_pNotice->show();
    QAccessibleEvent alert(m_pNotice, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void COpenPanel::accept() {
    m_vChosen.clear();
    m_pNotice->hide();
    QStringList const typed = typedNames();
    if (!typed.isEmpty()) {
        if (takeTyped(typed)) {
            done(QDialog::Accepted);
        } else {
            m_vChosen.clear();
        }
        return;
    }
    for (QUrl const& url : selectedUrls()) {
        std::string path = PathBytes(url.toLocalFile());
        if (QFileInfo::exists(url.toLocalFile()) && m_rules.m_canChoose(path)) {
            m_vChosen.push_back(std::move(path));
        }
    }
    if (!m_vChosen.empty()) {
        done(QDialog::Accepted);
    }
}
