// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// window_bench [FOLDER]: what the window costs, in milliseconds on standard output.
//   start   from the start of the process to the first painting of the table
//   add     50,000 rows, or those of FOLDER, coming in; the longest stall of the event loop
//   sort    a click on each column's header
//   filter  a query typed letter by letter, until the table is painted: the longest letter
//   notify  one progress notification until its cell is painted
//   stop    from Escape to the end of the batch, in the middle of a long file

#include "app/BPMController.h"
#include "desktop/BpmWindow.h"
#include "desktop/FileTableView.h"
#include "desktop/QtBpmView.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {

constexpr int kRows = 50'000;
constexpr int kTickMilliseconds = 1;
constexpr int kStartTimeField = 22; // Standard: of /proc/self/stat, proc(5).

double Milliseconds(qint64 nanoseconds) {
    return static_cast<double>(nanoseconds) / 1e6;
}

/// Milliseconds since this process was started; the kernel keeps that time in 10 ms steps.
double ProcessAge() {
    std::ifstream file("/proc/self/stat");
    std::string line;
    std::getline(file, line);
    std::istringstream fields(line.substr(line.rfind(')') + 2));
    std::string field;
    for (int i = 3; i <= kStartTimeField; ++i) {
        fields >> field;
    }
    timespec now = {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    double const started = std::stod(field) / static_cast<double>(sysconf(_SC_CLK_TCK));
    return (static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9 - started) *
           1e3;
}

/// Notes when a widget is painted.
class CPaintWatch : public QObject {
public:
    explicit CPaintWatch(QWidget* widget) { widget->installEventFilter(this); }

    bool eventFilter(QObject* object, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(object, event);
    }

    int paints = 0;
};

/// The longest time between two ticks of the event loop.
class CStallWatch {
public:
    CStallWatch() {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            worst = std::max(worst, Milliseconds(m_since.nsecsElapsed()));
            m_since.start();
        });
        m_since.start();
        m_timer.start(kTickMilliseconds);
    }

    double worst = 0.0;

private:
    QTimer m_timer;
    QElapsedTimer m_since;
};

template <typename Condition>
void RunUntil(Condition condition) {
    while (!condition()) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, kTickMilliseconds);
    }
}

void WriteLongFile(std::string const& path) {
    // An hour of zeros at 44100 Hz, mono, 16 bits: no bytes on the disk but the header's 44.
    constexpr std::uint32_t kBytes = 3600U * 88200U;
    auto const field = [](std::uint32_t value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i) {
            text += static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
        }
        return text;
    };
    std::ofstream file(path, std::ios::binary);
    file << "RIFF" << field(kBytes + 36, 4) << "WAVEfmt " << field(16, 4) << field(1, 2)
         << field(1, 2) << field(44100, 4) << field(88200, 4) << field(2, 2) << field(16, 2)
         << "data" << field(kBytes, 4);
    file.close();
    if (truncate(path.c_str(), kBytes + 44) != 0) {
        std::perror("truncate");
    }
}

void BenchAdd(BPMController& controller, CFileTableView& table, char const* folder) {
    CStallWatch stalls;
    QElapsedTimer total;
    total.start();
    if (folder != nullptr) {
        controller.openFile({CString::FromPath(folder)});
    } else {
        std::vector<CString> paths;
        for (int i = 0; i < kRows; ++i) {
            int const shuffled = static_cast<int>(static_cast<long long>(i) * 7919 % kRows);
            paths.push_back(CString::FromPath("/missing/" + std::to_string(shuffled) + ".mp3"));
        }
        total.restart();
        controller.openFile(std::move(paths));
    }
    RunUntil([&] {
        CBatchStatus const status = controller.status();
        return !status.m_bAdding && table.model()->rowCount() == static_cast<int>(status.m_nRows);
    });
    std::printf("add     %8.0f ms for %d rows, longest stall %.1f ms\n",
                Milliseconds(total.nsecsElapsed()), table.model()->rowCount(), stalls.worst);
    controller.stop();
    RunUntil([&] { return !controller.status().m_bRunning; });
}

void BenchSort(CFileTableView& table) {
    for (int column = 0; column < table.model()->columnCount(); ++column) {
        QElapsedTimer time;
        time.start();
        table.sortByColumn(column, Qt::DescendingOrder);
        QApplication::processEvents();
        std::printf("sort    %8.1f ms by column %d\n", Milliseconds(time.nsecsElapsed()), column);
    }
}

void BenchFilter(BpmWindow const& window, CFileTableView& table, CPaintWatch const& watch) {
    auto* field = window.findChild<QLineEdit*>("query");
    for (QString const query : {"499", "missing 7", "120-130", "state:todo", "key:8A"}) {
        double worst = 0.0;
        for (qsizetype length = 1; length <= query.size(); ++length) {
            int const before = watch.paints;
            QElapsedTimer time;
            time.start();
            field->setText(query.left(length));
            table.viewport()->update(); // the same rows may be found
            RunUntil([&] { return watch.paints > before; });
            worst = std::max(worst, Milliseconds(time.nsecsElapsed()));
        }
        std::printf("filter  %8.1f ms for \"%s\", %d rows found\n", worst, qPrintable(query),
                    table.model()->rowCount());
    }
    field->clear();
    QApplication::processEvents();
}

void BenchNotify(BPMController& controller, CFileTableView& table, CPaintWatch& watch) {
    table.sortByColumn(-1, Qt::AscendingOrder);
    QApplication::processEvents();
    CUserInfo const info{{kUserDataKey, static_cast<void*>(controller.fileAtRow(3))},
                         {kPercentKey, std::string("50%")}};
    int const before = watch.paints;
    QElapsedTimer time;
    time.start();
    CNotificationCenter::Default().Post(kFileProgressNotification, &info);
    RunUntil([&] { return watch.paints > before; });
    std::printf("notify  %8.1f ms\n", Milliseconds(time.nsecsElapsed()));
}

void BenchStop() {
    QTemporaryDir folder;
    std::string const file = folder.filePath("long.wav").toStdString();
    WriteLongFile(file);
    QtBpmView view;
    BPMController controller(view);
    controller.awakeFromNib();
    BpmWindow window(controller);
    view.setWindow(&window);
    controller.openFile({CString::FromPath(file)});
    RunUntil([&] { return controller.status().m_nPercent > 10; });
    QElapsedTimer time;
    time.start();
    window.findChild<QAction*>("actionStop")->trigger();
    RunUntil([&] { return !controller.status().m_bRunning; });
    std::printf("stop    %8.1f ms\n", Milliseconds(time.nsecsElapsed()));
    view.setWindow(nullptr);
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QtBpmView view;
    BPMController controller(view);
    controller.awakeFromNib();
    BpmWindow window(controller);
    view.setWindow(&window);
    auto* table = window.findChild<CFileTableView*>("fileTable");
    CPaintWatch watch(table->viewport());
    window.show();
    RunUntil([&] { return watch.paints > 0; });
    std::printf("start   %8.0f ms\n", ProcessAge());
    BenchAdd(controller, *table, argc > 1 ? argv[1] : nullptr);
    BenchSort(*table);
    BenchFilter(window, *table, watch);
    BenchNotify(controller, *table, watch);
    controller.applicationWillTerminate();
    view.setWindow(nullptr);
    BenchStop();
    return 0;
}
