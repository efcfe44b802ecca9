#pragma once

#include <VarnelShared/URLError.h>

#include <QNetworkReply>

namespace Varnel {

enum class NetworkState { available, absent };

/// Whether any network beyond the machine itself is up, as the desktop's network service reports it when the
/// application has loaded that, else as the interfaces say.
NetworkState currentNetworkState();

/// The platform's error for a reply that brought no usable HTTP answer. `text` is the reply's own error text, which
/// alone tells some causes apart.
URLError urlErrorFor(QNetworkReply::NetworkError error, const QString& text, NetworkState state);

} // namespace Varnel
