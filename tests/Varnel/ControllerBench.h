#pragma once

#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"
#include "../VarnelNotifications/FakeNotificationCenter.h"
#include "../VarnelSecurity/FakeKeychainServices.h"
#include "PlatformFakes.h"

#include <Varnel/AppDelegate.h>

#include <VarnelSEMS/Linux/NetworkHTTPSession.h>
#include <VarnelSettings/UserDefaults.h>
#include <simulator/SEMSSimulator.h>

#include <QTemporaryDir>

namespace Varnel::Testing {

/// The whole controller with the real client and real HTTP against the simulator on the loopback address; the rest of
/// the desktop is fakes, and time is turned by hand. Nothing is started before `launch`.
class ControllerBench {
public:
    ControllerBench();
    ~ControllerBench();

    /// A controller as after a start of the program; a former one is terminated first.
    void launch();

    /// Settings and password of the simulator's account, its first station and token API alone: what a user has who
    /// connected before.
    void storeAccount();

    /// Launches with a stored account and waits for the first reading.
    void launchConnected();

    /// Every request to the path meets the fault from now on.
    void failRequests(Simulator::FaultKind kind, std::optional<int> status = std::nullopt, const char* path = "*");

    bool waitForTitle(const char* title);
    bool waitForError(const char* line);
    bool waitForRequests(std::size_t count);

    QString title() const { return item->title; }
    std::size_t requestCount() { return simulator.log().requests().size(); }
    int requestsTo(const char* pathPiece);
    AppSettings storedSettings();
    PreferencesDraft currentDraft() const;

    HandTurnedTime time;
    Simulator::SEMSSimulator simulator;
    std::unique_ptr<NetworkHTTPSession> http;
    QTemporaryDir dataFolder;
    UserDefaults userDefaults{dataFolder.filePath(QStringLiteral("defaults.ini"))};
    FakeKeychainServices keychain;
    FakeLoginItem loginItem;
    std::shared_ptr<FakeNotificationCenter> notificationCenter = std::make_shared<FakeNotificationCenter>();
    FakeAppearance appearance;
    FakeApplicationShell shell;
    FakeSystemEvents systemEvents;
    RecordingStatusItem* item = nullptr; ///< owned by the controller
    std::shared_ptr<AppDelegate> controller;
};

} // namespace Varnel::Testing
