#include <VarnelStatusMenu/StatusBarController.h>

#include <gmock/gmock.h>

#include <QStringList>

using namespace Varnel;

namespace {

/// What a status item was told, in order.
struct Recording {
    QStringList calls;
    StatusMenu menu;
    std::function<void(StatusMenuCommand)> choose;
};

class RecordingStatusItem : public StatusItem {
public:
    explicit RecordingStatusItem(Recording& recording)
        : m_recording(recording) {}

    void setTitle(const QString& title) override { m_recording.calls << QStringLiteral("title ") + title; }
    void setToolTip(const QString& toolTip) override { m_recording.calls << QStringLiteral("tip ") + toolTip; }
    void setMenu(const StatusMenu& menu) override { m_recording.menu = menu; }
    void setCommandHandler(std::function<void(StatusMenuCommand)> handler) override {
        m_recording.choose = std::move(handler);
    }
    void showWindow() override { m_recording.calls << QStringLiteral("window"); }

private:
    Recording& m_recording;
};

} // namespace

TEST(StatusBarController, ShowsTheInitialPresentationThenEachUpdate) {
    Recording item;
    StatusBarController controller(std::make_unique<RecordingStatusItem>(item));
    EXPECT_EQ(item.calls, QStringList{QStringLiteral("title SEMS --")});
    EXPECT_EQ(item.menu, statusMenu(StatusPresentation::initial()));
    StatusPresentation presentation;
    presentation.title = QStringLiteral("46 W");
    presentation.outputValue = QStringLiteral("0.05 kW");
    presentation.isSignedIn = true;
    item.calls.clear();
    controller.update(presentation);
    EXPECT_EQ(item.calls, (QStringList{QStringLiteral("title 46 W"), QStringLiteral("tip Current Output: 0.05 kW")}));
    EXPECT_EQ(item.menu, statusMenu(presentation));
    EXPECT_EQ(controller.presentation(), presentation);
}

TEST(StatusBarController, CallsTheCallbackOfEachCommandAndNoneThatIsNotSet) {
    Recording item;
    StatusBarController controller(std::make_unique<RecordingStatusItem>(item));
    item.choose(StatusMenuCommand::signOut);
    std::string called;
    controller.onRefresh = [&called] { called += "refresh "; };
    controller.onOpenPreferences = [&called] { called += "preferences "; };
    controller.onSignIn = [&called] { called += "signIn "; };
    controller.onSignOut = [&called] { called += "signOut "; };
    for (const auto command : {StatusMenuCommand::refresh, StatusMenuCommand::preferences, StatusMenuCommand::signIn,
                               StatusMenuCommand::signOut}) {
        item.choose(command);
    }
    EXPECT_EQ(called, "refresh preferences signIn signOut ");
}
