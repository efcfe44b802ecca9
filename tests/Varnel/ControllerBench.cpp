#include "ControllerBench.h"

#include <VarnelSettings/AppSettingsStore.h>

namespace Varnel::Testing {

namespace {
const auto passwordItem =
    KeychainQuery{QStringLiteral("com.varnel.menubar"), QStringLiteral("password.demo@example.com")};
}

ControllerBench::ControllerBench()
    : simulator(time)
    , http(std::make_unique<NetworkHTTPSession>()) {
    if (!simulator.listen(0)) {
        qFatal("The simulator cannot listen");
    }
    simulator.behaviour().families = Simulator::ServedFamilies::token;
    simulator.behaviour().powerScript = {3.42};
}

ControllerBench::~ControllerBench() {
    if (controller) {
        controller->applicationWillTerminate();
    }
    http.reset();
    settle();
}

void ControllerBench::launch() {
    if (controller) {
        controller->applicationWillTerminate();
    }
    SEMSEndpoints endpoints; // a failed sign-in goes on to these: they must not lead away from this machine
    endpoints.defaultBase = simulator.baseURL();
    endpoints.alternateBase = simulator.baseURL();
    auto statusItem = std::make_unique<RecordingStatusItem>();
    item = statusItem.get();
    controller = std::make_shared<AppDelegate>(
        PlatformServices{time, time, *http, endpoints, userDefaults, keychain, loginItem,
                         [this] { return notificationCenter; }, appearance, shell, systemEvents, std::move(statusItem),
                         BundleInfo{QStringLiteral("com.varnel.menubar"), {}, {}}, dataFolder.path()});
    controller->applicationDidFinishLaunching();
}

void ControllerBench::storeAccount() {
    AppSettings settings;
    settings.baseURL = simulator.baseURL().toString();
    settings.account = QStringLiteral("demo@example.com");
    AppSettingsStore(userDefaults).save(settings);
    keychain.add(passwordItem, "sunshine");
}

void ControllerBench::launchConnected() {
    storeAccount();
    launch();
    if (!waitForTitle("3.42 kW")) {
        qFatal("The controller does not connect to the simulator");
    }
}

void ControllerBench::failRequests(Simulator::FaultKind kind, std::optional<int> status, const char* path) {
    Simulator::Fault fault;
    fault.kind = kind;
    fault.status = status;
    fault.path = QLatin1String(path);
    simulator.behaviour().faults = {fault};
}

bool ControllerBench::waitForTitle(const char* title) {
    return waitUntil([&] { return item->title == QLatin1String(title); });
}

bool ControllerBench::waitForError(const char* line) {
    return waitUntil([&] { return controller->values().errorMessage == QString::fromUtf8(line); });
}

bool ControllerBench::waitForRequests(std::size_t count) {
    return waitUntil([&] { return requestCount() >= count; });
}

int ControllerBench::requestsTo(const char* pathPiece) {
    int count = 0;
    for (const auto& request : simulator.log().requests()) {
        count += request.target.contains(pathPiece) ? 1 : 0;
    }
    return count;
}

AppSettings ControllerBench::storedSettings() {
    return AppSettingsStore(userDefaults).load();
}

PreferencesDraft ControllerBench::currentDraft() const {
    const AppSettings& settings = controller->settings();
    PreferencesDraft draft;
    draft.baseURL = simulator.baseURL().toString();
    draft.account = settings.account;
    draft.stationID = settings.stationID;
    draft.pollIntervalSeconds = settings.pollIntervalSeconds;
    return draft;
}

} // namespace Varnel::Testing
