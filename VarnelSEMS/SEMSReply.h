#pragma once

#include <VarnelSEMS/HTTPSession.h>
#include <VarnelSEMS/SEMSRequest.h>
#include <VarnelShared/JSON.h>
#include <VarnelShared/Timestamp.h>

namespace Varnel {

/// The parsed body of a reply with a status 200…299 whose envelope reports no failure. Fails with `SEMSAPIError`:
/// `authenticationFailed` for 401 and 403 whatever the body says and for an envelope that says the request's session
/// has expired, `networkStatus` for any other status, `api` for any other envelope, `invalidResponse` for what is no
/// HTTP reply; with `JSONError` for a body that is not JSON. `now` is what a date in Retry-After is compared with where
/// the reply does not tell its own.
Result<JSON> judgedReply(const HTTPResponse& response, const SEMSRequest& request, Timestamp now);

/// Whether a reply's own result fields report success; a reply without such fields does, and so does everything that
/// is not an object. Fails with `SEMSAPIError::api` and the service's message.
Result<void> validateEnvelope(const JSON& reply);

} // namespace Varnel
