// The log of the protocol handler and the picture-quality service.
#ifndef QXAIQ_LOG_SOURCE_H_
#define QXAIQ_LOG_SOURCE_H_

#include "common/log.h"

namespace pq {

inline constexpr Log kProtocolLog("qxaiq/qxaiq_protocol");

}  // namespace pq

#endif  // QXAIQ_LOG_SOURCE_H_
