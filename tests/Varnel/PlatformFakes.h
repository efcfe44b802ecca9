#pragma once

#include <Varnel/PlatformServices.h>

#include <VarnelSettings/LaunchAtLoginManager.h>
#include <VarnelShared/URLError.h>
#include <VarnelStatusMenu/StatusItem.h>

/// The desktop as the controller sees it, recorded and turned by hand.
namespace Varnel::Testing {

class FakeLoginItem final : public LoginItem {
public:
    LoginItemStatus status() const override {
        return isRegistered ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
    }
    Result<void> registerItem() override {
        if (isBroken) {
            return failure(URLError{URLError::Code::unknown, QStringLiteral("Read-only file system")});
        }
        isRegistered = true;
        return {};
    }
    Result<void> unregisterItem() override {
        isRegistered = false;
        return {};
    }

    bool isRegistered = false;
    bool isBroken = false;
};

class FakeAppearance final : public Appearance {
public:
    bool isDark() const override { return false; }
    std::unique_ptr<Observation> observe(std::function<void()> /*onChange*/) override {
        return std::make_unique<Observation>();
    }
};

class FakeApplicationShell final : public ApplicationShell {
public:
    ActivationPolicy activationPolicy() const override { return policy; }
    bool setActivationPolicy(ActivationPolicy wanted) override {
        policy = isRefusing ? policy : wanted;
        return !isRefusing;
    }
    void setReopenHandler(std::function<void()> /*handler*/) override {}
    void setApplicationIcon(const QString& /*imagePath*/) override {}
    void hide() override {}
    void terminate() override { ++terminations; }

    ActivationPolicy policy = ActivationPolicy::accessory;
    bool isRefusing = false;
    int terminations = 0;
};

class FakeSystemEvents final : public SystemEvents {
public:
    bool isNetworkReachable() const override { return isReachable; }
    void setNetworkReachableHandler(std::function<void()> handler) override { networkReachable = std::move(handler); }
    void setResumeHandler(std::function<void()> handler) override { resume = std::move(handler); }

    bool isReachable = true;
    std::function<void()> networkReachable;
    std::function<void()> resume;
};

class RecordingStatusItem final : public StatusItem {
public:
    void show(const StatusItemContent& content) override {
        title = content.title;
        toolTip = content.toolTip;
        menu = content.menu;
        if (shownBy) {
            shownBy->show(content);
        }
    }
    void setCommandHandler(std::function<void(StatusMenuCommand)> handler) override { choose = std::move(handler); }
    void setOutputSource(std::weak_ptr<OutputSource> source) override { outputSource = std::move(source); }
    void showWindow() override { ++windows; }

    std::unique_ptr<StatusItem> shownBy; ///< a real item that is told the same, where one is wished for
    QString title;
    QString toolTip;
    StatusMenu menu;
    std::function<void(StatusMenuCommand)> choose;
    std::weak_ptr<OutputSource> outputSource;
    int windows = 0; ///< how often one was asked for
};

} // namespace Varnel::Testing
