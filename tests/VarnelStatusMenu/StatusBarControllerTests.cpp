#include <VarnelStatusMenu/StatusBarController.h>

#include <gtest/gtest.h>

using namespace Varnel;

namespace {

struct RecordingItem final : StatusItem {
    explicit RecordingItem(std::vector<StatusItemContent>& given)
        : shown(given) {}
    void show(const StatusItemContent& content) override { shown.push_back(content); }
    void setCommandHandler(std::function<void(StatusMenuCommand)> /*handler*/) override {}
    void setOutputSource(std::weak_ptr<OutputSource> /*source*/) override {}
    void showWindow() override {}

    std::vector<StatusItemContent>& shown;
};

} // namespace

TEST(StatusBarController, HandsTheItemEachPresentationInOneRecord) {
    std::vector<StatusItemContent> shown;
    StatusBarController controller(std::make_unique<RecordingItem>(shown));
    StatusPresentation presentation;
    presentation.title = presentation.outputValue = QStringLiteral("2.20 kW");
    controller.update(presentation);
    presentation.outdatedLine = QStringLiteral("Last reading at 16:05");
    controller.update(presentation);
    const StatusMenu menu = statusMenu(presentation);
    const QString tip = QStringLiteral("Current Output: 2.20 kW");
    const std::vector<StatusItemContent> expected{
        {QStringLiteral("SEMS --"), {}, statusMenu(StatusPresentation::initial()), {}},
        {QStringLiteral("2.20 kW"), tip, menu, {}},
        {QStringLiteral("2.20 kW"), tip + QStringLiteral("\nLast reading at 16:05"), menu, presentation.outdatedLine},
    };
    EXPECT_EQ(shown, expected);
}
