#include <VarnelSettings/LaunchAtLoginError.h>
#include <VarnelSettings/LaunchAtLoginManager.h>

#include <VarnelShared/PrivateFiles.h>

#include <gmock/gmock.h>

namespace Varnel {
namespace {

class FakeLoginItem final : public LoginItem {
public:
    LoginItemStatus status() const override { return current; }
    Result<void> registerItem() override { return called("register"); }
    Result<void> unregisterItem() override { return called("unregister"); }

    LoginItemStatus current = LoginItemStatus::notRegistered;
    std::string calls;
    Result<void> answer;

private:
    Result<void> called(const char* name) {
        calls += name;
        return answer;
    }
};

struct Case {
    LoginItemStatus status;
    bool shownAsOn;
    const char* enabling;
    const char* disabling;
};

TEST(LaunchAtLoginManager, AsksOnlyForWhatIsNotSoAlready) {
    for (const Case& expected : {Case{LoginItemStatus::notRegistered, false, "register", ""},
                                 Case{LoginItemStatus::enabled, true, "", "unregister"},
                                 Case{LoginItemStatus::requiresApproval, true, "", "unregister"},
                                 Case{LoginItemStatus::notFound, false, "register", ""}}) {
        for (const bool enable : {true, false}) {
            FakeLoginItem item;
            item.current = expected.status;
            LaunchAtLoginManager manager(item, QStringLiteral("com.example"));
            EXPECT_EQ(manager.isEnabledForUI(), expected.shownAsOn);
            EXPECT_TRUE(manager.setEnabled(enable));
            EXPECT_EQ(item.calls, enable ? expected.enabling : expected.disabling)
                << "status " << static_cast<int>(expected.status);
        }
    }
}

TEST(LaunchAtLoginManager, FailuresSayWhatTheSystemSaid) {
    FakeLoginItem item;
    item.answer = failure(FileError{QStringLiteral("Disk quota exceeded")});
    LaunchAtLoginManager manager(item, QStringLiteral("com.example"));
    const Result<void> refused = manager.setEnabled(true);
    ASSERT_FALSE(refused);
    EXPECT_EQ(*refused.error().as<LaunchAtLoginError>(),
              LaunchAtLoginError::operationFailed(QStringLiteral("Disk quota exceeded")));
    EXPECT_EQ(refused.error().localizedDescription(),
              QStringLiteral("Launch at login update failed: Disk quota exceeded"));

    FakeLoginItem untouched;
    LaunchAtLoginManager unbundled(untouched, std::nullopt);
    const Result<void> impossible = unbundled.setEnabled(true);
    ASSERT_FALSE(impossible);
    EXPECT_EQ(impossible.error().localizedDescription(),
              QStringLiteral("Launch at login requires running as a bundled app."));
    EXPECT_EQ(untouched.calls, "");
}

} // namespace
} // namespace Varnel
