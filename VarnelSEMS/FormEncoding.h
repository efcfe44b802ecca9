#pragma once

#include <VarnelShared/JSON.h>

#include <QByteArray>
#include <QString>

namespace Varnel {

/// One name or value in the form encoding that the portal reads: letters, digits and "-._~" of the UTF-8 text stand
/// for themselves, a space becomes "+", every other byte "%" and two upper-case hexadecimal digits.
QByteArray formURLEncoded(const QString& text);

/// The members of an object as name=value pairs joined with "&", in the object's order; numbers in decimal.
QByteArray formURLEncodedData(const JSON& fields);

} // namespace Varnel
