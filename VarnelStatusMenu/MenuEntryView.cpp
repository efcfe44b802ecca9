#include <VarnelStatusMenu/MenuEntryView.h>

#include <VarnelStatusMenu/MenuRowView.h>
#include <VarnelStatusMenu/OutputChartMenuView.h>

namespace Varnel {

namespace {

constexpr int spacerHeight = 4;

struct ViewFactory {
    using View = std::unique_ptr<MenuView>;

    View operator()(const StatusMenuChart& chart) const { return std::make_unique<OutputChartMenuView>(chart); }
    View operator()(const StatusMenuRow& row) const {
        return std::make_unique<MenuRowView>(row.label, row.value, row.label + QStringLiteral(": ") + row.value);
    }
    View operator()(const StatusMenuError& error) const {
        return std::make_unique<MenuRowView>(error.text, QString(), error.wholeText);
    }
    View operator()(const StatusMenuSpacer&) const { return std::make_unique<MenuView>(spacerHeight); }
    View operator()(const StatusMenuSeparator&) const { return nullptr; }
    View operator()(const StatusMenuAction&) const { return nullptr; }
};

} // namespace

std::unique_ptr<MenuView> menuEntryView(const StatusMenuEntry& entry) {
    return std::visit(ViewFactory{}, entry);
}

std::optional<StatusMenuCommand> commandForKey(const StatusMenu& menu, QKeyCombination key) {
    for (const StatusMenuEntry& entry : menu) {
        const auto* action = std::get_if<StatusMenuAction>(&entry);
        if (action != nullptr && action->isEnabled && action->key == QKeySequence(key)) {
            return action->command;
        }
    }
    return std::nullopt;
}

} // namespace Varnel
