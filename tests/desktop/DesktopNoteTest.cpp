// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/DesktopNote.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTest>
#include <gtest/gtest.h>

namespace {

/// A bus of its own, with nobody on it.
class CPrivateBus {
public:
    CPrivateBus() {
        m_daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        EXPECT_TRUE(m_daemon.waitForReadyRead());
        m_sAddress = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }
    ~CPrivateBus() {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    CPrivateBus(CPrivateBus const&) = delete;
    CPrivateBus& operator=(CPrivateBus const&) = delete;

    [[nodiscard]] QDBusConnection Connect(char const* name) const {
        return QDBusConnection::connectToBus(m_sAddress, name);
    }

private:
    QProcess m_daemon;
    QString m_sAddress;
};

/// A desktop that keeps the last note that it was asked to show.
class CDesktop : public QDBusVirtualObject {
public:
    QString introspect(QString const&) const override { return {}; }
    bool handleMessage(QDBusMessage const& message, QDBusConnection const&) override {
        m_note = message;
        ++m_nNotes;
        return true;
    }

    QDBusMessage m_note;
    int m_nNotes = 0;
};

} // namespace

TEST(DesktopNoteTest, TheDesktopIsAskedToShowIt) {
    CPrivateBus const bus;
    QDBusConnection desktops = bus.Connect("desktop");
    ASSERT_TRUE(desktops.isConnected());
    CDesktop desktop;
    ASSERT_TRUE(desktops.registerVirtualObject("/org/freedesktop/Notifications", &desktop));
    ASSERT_TRUE(desktops.registerService("org.freedesktop.Notifications"));
    ShowDesktopNote("Tactus is done", "3 < 4 & more", bus.Connect("program"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return desktop.m_nNotes == 1; }));
    EXPECT_EQ(desktop.m_note.member(), "Notify");
    EXPECT_EQ(desktop.m_note.interface(), "org.freedesktop.Notifications");
    EXPECT_EQ(desktop.m_note.signature(), "susssasa{sv}i");
    EXPECT_EQ(desktop.m_note.arguments().value(3).toString(), "Tactus is done");
    EXPECT_EQ(desktop.m_note.arguments().value(4).toString(), "3 &lt; 4 &amp; more");
    QDBusConnection::disconnectFromBus("desktop");
    QDBusConnection::disconnectFromBus("program");
}

TEST(DesktopNoteTest, ABusThatIsNotThereDoesNoHarm) {
    QDBusConnection const none = QDBusConnection::connectToBus("unix:path=/nowhere", "none");
    ASSERT_FALSE(none.isConnected());
    ShowDesktopNote("a", "b", none);
    QDBusConnection::disconnectFromBus("none");
}
