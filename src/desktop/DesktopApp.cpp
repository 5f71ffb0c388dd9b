// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// However the program ends (window, key, signal, end of the session, loss of the display), the
// controller's termination runs once, and returns only when no tag is being written any more.

#include "desktop/DesktopApp.h"

#include "app/BPMController.h"
#include "desktop/Arguments.h"
#include "desktop/BpmWindow.h"
#include "desktop/DesktopNote.h"
#include "desktop/Outlines.h"
#include "desktop/QtBpmView.h"
#include "desktop/QuitSignals.h"
#include "desktop/Translation.h"

#include <QApplication>
#include <QEvent>
#include <QLocale>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

BPMController* g_pController = nullptr; // Set while `RunDesktop` has one, for `OnExit`.
BpmWindow* g_pWindow = nullptr;         // Likewise.

// Qt calls exit() when the display is gone.
void OnExit() {
    if (g_pController != nullptr) {
        g_pWindow->endCorrections();
        g_pController->applicationWillTerminate();
    }
}

/// The session's end asks every window to close; ours must not refuse then.
class CQuitWatcher : public QObject {
public:
    explicit CQuitWatcher(BpmWindow& window) : m_window(window) {}

    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Quit) {
            m_window.letClose();
        }
        return QObject::eventFilter(object, event);
    }

private:
    BpmWindow& m_window;
};

constexpr int kWrongUsage = 2; // Fixed: exit code, as of the command line.

constexpr char kUsage[] =
    "Usage: tactus-desktop [OPTION...] [--] [PATH...]\n"
    "Opens the window and finds the tempo of the files and folders PATH.\n\n"
    "      --factory  as at the first start: settings are neither read nor kept\n"
    "  -h, --help     this text\n"
    "      --version  the program's version\n\n"
    "Options of Qt programs, such as -style, work as well.\n";

/// Answers what needs no window. Returns: the exit code; -1 when a window is wanted.
int AnswerWithoutWindow(CArguments const& arguments) {
    if (arguments.m_bHelp) {
        return std::fputs(kUsage, stdout) < 0 ? 1 : 0;
    }
    if (arguments.m_bVersion) {
        return std::puts("tactus-desktop " TACTUS_VERSION) < 0 ? 1 : 0;
    }
    return -1;
}

} // namespace

int RunDesktop(int argc, char** argv) {
    if (int const code = AnswerWithoutWindow(ReadArguments(argc, argv)); code >= 0) {
        return code;
    }
    QApplication app(argc, argv);
    CArguments const arguments = ReadArguments(argc, argv); // Without those that Qt has taken.
    if (!arguments.m_sUnknown.empty()) {
        std::fprintf(stderr, "tactus-desktop: unknown option %s\n", arguments.m_sUnknown.c_str());
        return kWrongUsage;
    }
    QApplication::setApplicationName("tactus-desktop");
    QApplication::setApplicationVersion(TACTUS_VERSION);
    QApplication::setDesktopFileName("tactus-desktop");
    InstallTranslations(app, QLocale::system());
    COutlines const outlines;

    QtBpmView view;
    BPMController controller(view);
    controller.awakeFromNib();

    CQuitSignals quitSignals;
    BpmWindow window(controller, arguments.m_bFactory ? CSettings::Factory() : CSettings());
    view.setWindow(&window);
    g_pWindow = &window;
    g_pController = &controller;
    std::atexit(OnExit);
    CQuitWatcher watcher(window);
    app.installEventFilter(&watcher);
    auto const quit = [] { QCoreApplication::exit(0); };
    QObject::connect(&quitSignals, &CQuitSignals::quitRequested, &app, quit);
    QObject::connect(&window, &BpmWindow::quitRequested, &app, quit);

    QObject::connect(
        &window, &BpmWindow::noteWanted, &window,
        [](QString const& title, QString const& text) { ShowDesktopNote(title, text); });

    window.openPaneAtStart();
    window.show();
    if (!arguments.m_vPaths.empty()) {
        window.addPaths(arguments.m_vPaths);
    }
    int const code = QApplication::exec();
    window.hide();
    window.endCorrections();
    controller.applicationWillTerminate();
    view.setWindow(nullptr);
    g_pController = nullptr;
    return code;
}
