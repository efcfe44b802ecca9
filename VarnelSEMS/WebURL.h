#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace Varnel {

/// The address as one text, percent-encoded where the address is.
QString absoluteString(const QUrl& url);

/// The address as it may be shown and logged: without a user name and password written into it.
QString shownAddress(const QUrl& url);

/// Whether it is an http or https address with a host.
bool isWebURL(const QUrl& url);

/// The port of such an address, the scheme's own where it names none.
int portOf(const QUrl& url);

/// The http or https address that the text spells exactly, host included; none for any other text. Nothing is
/// repaired: a space or another character that an address cannot hold makes it none.
std::optional<QUrl> webURL(const QString& text);

} // namespace Varnel
