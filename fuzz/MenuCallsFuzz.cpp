#include "Fuzz.h"

#include <VarnelStatusMenu/Linux/DBusMenuExporter.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <QGuiApplication>

using namespace Varnel;
using Fuzz::require;

// What a panel may ask of the exported menu, with any ids, names and depths, between any updates: every row that it is
// told of has properties, and only what can be chosen is chosen.

namespace {
QString text(FuzzedDataProvider& input) {
    return QString::fromStdString(input.ConsumeRandomLengthString(12));
}

StatusPresentation presentation(FuzzedDataProvider& input) {
    StatusPresentation shown;
    shown.outputValue = text(input);
    shown.isSignedIn = input.ConsumeBool();
    shown.canRefresh = input.ConsumeBool();
    shown.showOutputChart = input.ConsumeBool();
    if (input.ConsumeBool()) {
        shown.errorLine = text(input);
    }
    return shown;
}

QList<int> ids(FuzzedDataProvider& input) {
    QList<int> list;
    for (int count = input.ConsumeIntegralInRange(0, 6); count > 0; --count) {
        list << (input.ConsumeBool() ? input.ConsumeIntegralInRange(-1, 20) : input.ConsumeIntegral<int>());
    }
    return list;
}

QStringList names(FuzzedDataProvider& input) {
    const QStringList known{QStringLiteral("label"), QStringLiteral("enabled"), QStringLiteral("type")};
    return input.ConsumeBool() ? known : QStringList{text(input), text(input)};
}

const char* eventName(FuzzedDataProvider& input) {
    return input.PickValueInArray({"clicked", "hovered", "opened", "closed", ""});
}

void ask(DBusMenuExporter& menu, FuzzedDataProvider& input) {
    const QDBusMessage message;
    const QList<int> wanted = ids(input);
    const int id = wanted.value(0);
    DBusMenuLayoutItem layout;
    QList<int> unknown;
    switch (input.ConsumeIntegralInRange(0, 6)) {
    case 0:
        menu.GetLayout(id, input.ConsumeIntegral<int>(), names(input), message, layout);
        break;
    case 1:
        require(menu.GetGroupProperties(wanted, names(input)).size() <= 20);
        break;
    case 2:
        menu.GetProperty(id, text(input), message);
        break;
    case 3:
        menu.Event(id, QString::fromLatin1(eventName(input)), {}, 0, message);
        break;
    case 4: {
        const DBusMenuEvent event{id, QString::fromLatin1(eventName(input)), QDBusVariant(text(input)), 1};
        require(menu.EventGroup({event, event}).size() <= 2);
        break;
    }
    case 5:
        menu.AboutToShowGroup(wanted, unknown);
        require(unknown.size() <= wanted.size());
        break;
    default:
        menu.setMenu(exportedMenu(statusMenu(presentation(input))));
        break;
    }
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    new QGuiApplication(*argc, *argv); // lives as long as the process
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    QObject item;
    int choices = 0;
    const StatusItemHandlers handlers{.openMenu = [&choices](auto) { ++choices; },
                                      .choose = [&choices](auto) { ++choices; },
                                      .showWindow = [&choices] { ++choices; }};
    auto* menu = new DBusMenuExporter(&item, QDBusConnection(QStringLiteral("none")), handlers);
    int calls = 0;
    for (; input.remaining_bytes() > 0 && calls < 50; ++calls) {
        ask(*menu, input);
    }
    QCoreApplication::sendPostedEvents();
    require(choices <= 2 * calls);
    return 0;
}
