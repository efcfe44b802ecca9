#pragma once

#include <VarnelShared/Result.h>

#include <QString>

namespace Varnel {

/// Where an error happened; the same fault gives other advice while signing in than while polling.
enum class AppErrorContext { signIn, polling };

/// Turns any error into the one line that the status menu shows. Shows the body of a reply only with a status below
/// 400.
namespace AppErrorMapper {
QString userFacingMessage(const Error& error, AppErrorContext context);

/// What each address has answered to a sign-in that failed, a line each; empty for any other error.
QString answers(const Error& error);
} // namespace AppErrorMapper

} // namespace Varnel
