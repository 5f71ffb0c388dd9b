// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// A window that stands for a file manager: whoever drags from it drags the files named as
// arguments.

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

namespace {

class CDragSource : public QWidget {
protected:
    void mouseMoveEvent(QMouseEvent* event) override {
        if (!event->buttons().testFlag(Qt::LeftButton)) {
            return;
        }
        QList<QUrl> urls;
        for (QString const& path : QApplication::arguments().mid(1)) {
            urls << QUrl::fromLocalFile(path);
        }
        auto* files = new QMimeData;
        files->setUrls(urls);
        auto* drag = new QDrag(this);
        drag->setMimeData(files);
        drag->exec(Qt::CopyAction | Qt::MoveAction);
    }
};

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    CDragSource source;
    source.setWindowTitle("Drag source");
    source.resize(120, 120);
    source.show();
    return QApplication::exec();
}
