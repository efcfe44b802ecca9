#pragma once

#include <Varnel/PlatformServices.h>

#include <QDBusConnection>
#include <QObject>

namespace Varnel {

class OutputAdaptor;

/// The program's face for bars and scripts on the session bus: the object /com/varnel/menubar/Output, interface
/// com.varnel.menubar.Output. Its properties are the latest reading, read-only and announced by the standard signal
/// when they change; its methods are commands of the menu.
class OutputBusObject {
public:
    static constexpr char path[] = "/com/varnel/menubar/Output";
    static constexpr char interface[] = "com.varnel.menubar.Output";

    enum class Command { refresh, showOutput, showSettings };

    /// Exports the object at once, before anything is known: whoever finds the program's name finds it, too.
    explicit OutputBusObject(const QDBusConnection& bus);
    ~OutputBusObject();
    OutputBusObject(const OutputBusObject&) = delete;
    OutputBusObject& operator=(const OutputBusObject&) = delete;

    /// Called from the event loop for each command, after its caller has the reply; what was asked for before is done
    /// then. The same command again within a second does nothing: no caller can keep the program, or its user, busy.
    void setCommandHandler(std::function<void(Command)> handler);

    /// Takes the new values and announces those that are others.
    void publish(const PublishedOutput& output);

private:
    QObject m_object; ///< owns m_adaptor
    OutputAdaptor* m_adaptor;
    QDBusConnection m_bus;
};

} // namespace Varnel
