#pragma once

#include <simulator/Behaviour.h>
#include <simulator/Reply.h>
#include <simulator/ServiceRequest.h>
#include <simulator/Sessions.h>

#include <VarnelShared/Clock.h>

namespace Varnel::Simulator {

/// The simulated service itself, without a network: checks what was sent and answers it.
class SEMSService {
public:
    /// `clock` must outlive this object.
    explicit SEMSService(const Clock& clock);

    Behaviour& behaviour() { return m_behaviour; }
    const Behaviour& behaviour() const { return m_behaviour; }
    Sessions& sessions() { return m_sessions; }
    SignInHistory& signIns() { return m_signIns; }
    const SignInHistory& signIns() const { return m_signIns; }

    /// The service's own time in the system's zone.
    QDateTime now() const;

    /// The reply to a request, disturbed by the fault that meets it.
    Reply answer(const ServiceRequest& request);

private:
    Reply rightReply(const ServiceRequest& request);
    Reply dispatch(const Route& route, const ServiceRequest& request, const Parameters& parameters);
    bool serves(Operation operation) const;
    bool servesPath(const ServiceRequest& request) const;
    bool isSignedIn(const Route& route, const ServiceRequest& request);
    bool knowsAccount(const Parameters& parameters) const;
    Reply refusedSession() const;
    Reply refusedPassword() const;
    static Reply acceptedPassword(const char* file, const JSON& values);
    void noteSignIn(const ServiceRequest& request, const Reply& reply);

    Reply signInToken(const Parameters& parameters);
    Reply signInPortal(const Route& route, const ServiceRequest& request, const Parameters& parameters);
    Reply stations(const Route& route, const Parameters& parameters) const;
    Reply detail(const Route& route, const Parameters& parameters);
    Reply day(const Parameters& parameters) const;

    const SimulatedStation* station(const QString& id) const;
    double powerKW(const SimulatedStation& station, QTime time) const;
    double toResolution(double kilowatts) const;
    StationReading reading(const SimulatedStation& station) const;

    const Clock& m_clock;
    Behaviour m_behaviour;
    Sessions m_sessions;
    SignInHistory m_signIns;
};

} // namespace Varnel::Simulator
