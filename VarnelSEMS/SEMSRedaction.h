#pragma once

#include <VarnelSEMS/SEMSRequest.h>
#include <VarnelShared/Result.h>

#include <QString>
#include <QStringList>

namespace Varnel {

/// What of a request must reach neither a log nor a message: its account and password, its tokens and the values of
/// its authentication headers, in every encoding in which they are sent and as a page would show them; and `more`.
QStringList secretsOf(const SEMSRequest& request, const QStringList& more = {});

/// The error with every such text in it, in any case, replaced by "[…]": some servers echo in an error page what they
/// were sent. A secret of fewer than four characters stays, since it would blot out ordinary words. What a server says
/// is cut to 4,000 characters.
Error withoutSecrets(const Error& error, const QStringList& secrets);

} // namespace Varnel
