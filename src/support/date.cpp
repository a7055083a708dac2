#include "support/date.h"

#include "support/host.h"

namespace grolof {

std::time_t DateStampNow(DateStamp& stamp) {
    const timeval now = CurrentHost().Now();
    std::tm local{};
    localtime_r(&now.tv_sec, &local);
    const auto byte = [](long value) { return static_cast<std::uint8_t>(value); };
    stamp = {byte(local.tm_year - 70),
             byte(local.tm_mon + 1),
             byte(local.tm_wday << 5 | local.tm_mday),
             byte(local.tm_hour),
             byte(local.tm_min),
             byte(local.tm_sec),
             byte(now.tv_usec / 10000),
             0};
    return now.tv_sec;
}

DateParts DatePartsOf(const DateStamp& stamp) {
    return {stamp[2] & 0x1F, stamp[1] & 0x0F, 1970 + stamp[0],
            stamp[3] & 0x1F, stamp[4] & 0x3F, stamp[5] & 0x3F};
}

} // namespace grolof
