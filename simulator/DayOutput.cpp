#include <simulator/DayOutput.h>

#include <algorithm>

namespace Varnel::Simulator {

namespace {
constexpr int sampleMinutes = 5;
constexpr int samplesPerDay = 24 * 60 / sampleMinutes;

QTime timeOfSample(int index) {
    return QTime::fromMSecsSinceStartOfDay(index * sampleMinutes * 60000);
}

double wattsAt(const DayRecord& day, QTime time) {
    return rounded(std::max(0.0, day.powerKW(time)) * 1000);
}

JSON samples(const DayRecord& day, UnitStyle units) {
    JSON pacs = JSON::array();
    const QString date = day.date.toString(QStringLiteral("MM/dd/yyyy"));
    for (int i = 0; i < samplesPerDay && timeOfSample(i) <= day.until; ++i) {
        const QTime time = timeOfSample(i);
        // The service puts a stray space between date and time now and then.
        const QString space = i % 50 == 7 ? QStringLiteral("  ") : QStringLiteral(" ");
        pacs.push_back({{"date", (date + space + time.toString(QStringLiteral("HH:mm:ss"))).toStdString()},
                        {"pac", wattsAt(day, time)}});
    }
    JSON data = {{"pacs", std::move(pacs)}};
    setEnergy(data, "eday", day.energyKWh, units);
    return data;
}

JSON curve(const DayRecord& day, const char* key, double share) {
    JSON points = JSON::array();
    for (int i = 0; i < samplesPerDay; ++i) {
        const QTime time = timeOfSample(i);
        const JSON value = time <= day.until ? JSON(rounded(wattsAt(day, time) * share)) : JSON(nullptr);
        points.push_back({{"x", time.toString(QStringLiteral("HH:mm")).toStdString()}, {"y", value}});
    }
    return {{"label", key}, {"key", key}, {"unit", "W"}, {"xy", std::move(points)}};
}

JSON lines(const DayRecord& day) {
    const std::string energy = QString::number(day.energyKWh, 'f', 1).toStdString();
    return {{"lines", {curve(day, "PCurve_Power_PV", 1), curve(day, "PCurve_Power_Load", 0.3)}},
            {"generateData", JSON::array({{{"key", "Generation"}, {"unit", "kWh"}, {"value", energy}}})}};
}

JSON totals(const DayRecord& day) {
    return JSON::array({{{"d", day.date.toString(QStringLiteral("MM/dd/yyyy")).toStdString()},
                         {"p", rounded(day.energyKWh)},
                         {"i", rounded(day.energyKWh * 0.08)}}});
}
} // namespace

JSON dayOutput(const DayRecord& day, const ReplyShape& shape) {
    switch (shape.dayForm) {
    case DayForm::samples:
        return samples(day, shape.units);
    case DayForm::lines:
        return lines(day);
    case DayForm::totals:
        break;
    }
    return totals(day);
}

} // namespace Varnel::Simulator
