#include "HelperLog.h"

#include "lease/LidHelperService.h"

#import <os/log.h>

namespace wakeloft {

void logLine(LogPriority priority, const std::string& line) {
    static const os_log_t log = os_log_create(LidHelperService::label, "helper");
    const os_log_type_t type = priority == LogPriority::error ? OS_LOG_TYPE_ERROR : OS_LOG_TYPE_DEFAULT;
    os_log_with_type(log, type, "%{public}s", line.c_str());
}

} // namespace wakeloft
