#pragma once

#include <VarnelStatusMenu/Linux/StatusNotifierItemAdaptor.h>

namespace Varnel {

/// The item for panels that draw a label. A class of its own because a panel takes the mere presence of the label
/// properties, even empty ones, for the wish to show a label and no icon.
class LabelledItemAdaptor final : public StatusNotifierItemAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString XAyatanaLabel READ label NOTIFY XAyatanaNewLabel)
    Q_PROPERTY(QString XAyatanaLabelGuide READ labelGuide CONSTANT)

public:
    using StatusNotifierItemAdaptor::StatusNotifierItemAdaptor;

    void setFace(const ItemFace& face) override;

    QString label() const { return face().label; }
    /// The widest usual text, for panels that keep its room.
    QString labelGuide() const { return QStringLiteral("00.00 kW"); }

Q_SIGNALS:
    void XAyatanaNewLabel(const QString& label, const QString& guide);
};

} // namespace Varnel
