#pragma once

#include <simulator/Reply.h>

#include <VarnelShared/JSON.h>

#include <string>

/// The frame around every reply of the service.
namespace Varnel::Simulator {

JSON successEnvelope(JSON data);

/// A refusal as the service tells it: a code, and hasError false nevertheless.
JSON failureEnvelope(const std::string& code, const std::string& message);

/// A breakdown inside the service: hasError is true and there is no data. An empty message is left out.
JSON faultEnvelope(const std::string& message);

Reply jsonReply(const JSON& body);

} // namespace Varnel::Simulator
