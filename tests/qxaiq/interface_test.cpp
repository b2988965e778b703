// One header gives tools and tests that drive the daemon's parts all the names they need, and each
// has the type that such programs declare.
#include <sys/types.h>

#include <cstdint>
#include <type_traits>

#include "qxaiq/qxaiq_protocol.h"

namespace {

template <typename Function, typename Declared>
constexpr bool is_function = std::is_same_v<Function, Declared>;

static_assert(is_function<decltype(QXAiqProtocol::HandlerTCPMessage), int(int, char*, int)>);
static_assert(is_function<decltype(QXAiqProtocol::MessageForward), int(int, char*, int)>);
static_assert(is_function<decltype(sendData), ssize_t(int, char*)>);
static_assert(is_function<decltype(updatePQ), int(char*, uint32_t)>);
static_assert(is_function<decltype(getPQ), char*(char*, uint32_t)>);
static_assert(is_function<decltype(updateAIPQ), int(char*, uint32_t)>);
static_assert(is_function<decltype(getAIPQ), char*(char*, uint32_t)>);
static_assert(is_function<decltype(get_dump_info), int(char*, int*, int*, int*)>);
static_assert(is_function<decltype(getPqDumpData), char*(char*, unsigned long*)>);
static_assert(sizeof(CommandData_t) == 72);

}  // namespace
