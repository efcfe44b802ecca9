#include <simulator/CommandLine.h>

#include <simulator/Settings.h>
#include <simulator/SimulatorError.h>

#include <QCommandLineParser>

namespace Varnel::Simulator {

namespace {
/// "todayOutputKWh" is the option --today-output-kwh.
QString optionName(const QString& settingName) {
    QString name;
    bool wasLower = false;
    for (const QChar c : settingName) {
        if (c.isUpper() && wasLower) {
            name += u'-';
        }
        wasLower = c.isLower();
        name += c.toLower();
    }
    return name;
}

/// A text unless it can only be meant as JSON: whether "12" is a password or a number is the setting's to say.
JSON settingValue(const QString& name, const QString& argument) {
    JSON asText = argument.toStdString();
    if (changed(standardBehaviour(), {{name.toStdString(), asText}}, QDateTime::currentDateTime())) {
        return asText;
    }
    const Result<JSON> asJSON = parseJSON(argument.toUtf8());
    return asJSON ? *asJSON : asText;
}

void addOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(QStringLiteral(
        "A simulated SEMS service on the loopback address. Prints its base URL once it listens.\n"
        "While it runs, POST a JSON object of the same settings to /_control to change them (the members are the\n"
        "options in camel case, such as {\"powerKW\": 3.2}); GET /_control and /_control/log tell how it stands."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption({QStringLiteral("port"), QStringLiteral("The port; 0, the default, chooses a free one."),
                      QStringLiteral("number"), QStringLiteral("0")});
    parser.addOption({QStringLiteral("log"), QStringLiteral("Append every request to this file, one JSON line each."),
                      QStringLiteral("file")});
    for (const SettingDescription& setting : settingDescriptions()) {
        parser.addOption({optionName(setting.name), setting.help, QStringLiteral("value")});
    }
}
} // namespace

Result<CommandLine> CommandLine::parse(const QStringList& arguments) {
    QCommandLineParser parser;
    addOptions(parser);
    parser.process(arguments);
    if (!parser.positionalArguments().isEmpty()) {
        return failure(SimulatorError{QStringLiteral("%1 is no option.").arg(parser.positionalArguments().first())});
    }
    CommandLine result;
    bool isPort = false;
    result.port = parser.value(QStringLiteral("port")).toUShort(&isPort);
    if (!isPort) {
        return failure(SimulatorError{QStringLiteral("The port is a number from 0 to 65535.")});
    }
    result.logPath = parser.value(QStringLiteral("log"));
    for (const SettingDescription& setting : settingDescriptions()) {
        const QString option = optionName(setting.name);
        if (parser.isSet(option)) {
            result.settings[setting.name.toStdString()] = settingValue(setting.name, parser.value(option));
        }
    }
    return result;
}

} // namespace Varnel::Simulator
