// The log of start-up, shutdown and the document creators.
#ifndef DAEMON_LOG_H_
#define DAEMON_LOG_H_

#include "common/log.h"

inline constexpr pq::Log kDaemonLog("qxaiq_tool_server");

#endif  // DAEMON_LOG_H_
