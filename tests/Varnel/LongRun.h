#pragma once

#include "ControllerBench.h"

namespace Varnel::Testing {

/// Days and weeks of the whole controller against the simulator, timer by timer with hand-turned time.
class LongRun {
public:
    /// What came of it. An error line counts once for each poll after which it stands.
    struct Tally {
        int polls = 0; ///< turns of a timer in which something was asked of the service
        int requests = 0;
        int signIns = 0; ///< requests with the password, at the family that is served
        int errorLines = 0;
        int wrongTitles = 0;  ///< readings that are not what the station delivers, to the watt
        QString firstProblem; ///< the first error line or wrong title, with its time
    };

    enum class Start { connected, asItIs };

    /// Of a launched controller, for whose first reading it waits unless it is to be taken as it is.
    explicit LongRun(ControllerBench& bench, Start start = Start::connected);

    /// Turns time to `end`. False when a timer's work does not end.
    bool playUntil(Timestamp end);

    const Tally& tally() const { return m_tally; }

private:
    /// The power in kW that the watched station delivers now, as exactly as the service tells it.
    double deliveredKW();
    void take(const std::vector<Simulator::ServiceRequest>& requests);
    void note(const QString& problem);

    ControllerBench& m_bench;
    Tally m_tally;
};

/// One of the ways in which a session ends, on all paths of a monitor detail or on the only one that is served.
struct ExpiryScenario {
    Simulator::ServedFamilies family;
    Simulator::Expiry expiry;
    bool isServedOnOnePathAlone;

    QString name() const;
};

std::vector<ExpiryScenario> expiryScenarios();

/// Sessions last for forty minutes of the simulator's clock.
void prepare(ControllerBench& bench, const ExpiryScenario& scenario);

/// A station as it may stand on a roof, and how its replies tell it.
struct StationScenario {
    const char* name;
    int inverters;
    double capacityKW;
    bool powerTexts;
    double nightWatts;
};

std::vector<StationScenario> stationScenarios();

void prepare(ControllerBench& bench, const StationScenario& scenario);

} // namespace Varnel::Testing
