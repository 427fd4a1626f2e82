#include "platform/services/BackgroundQueue.hpp"

#include "platform/services/DispatchExecutor.macos.hpp"

#include <dispatch/dispatch.h>

namespace platform {

Executor& utilityQueue() {
    static Executor& only = *new DispatchExecutor(dispatch_get_global_queue(QOS_CLASS_UTILITY, 0));
    return only;
}

Executor& makeSerialQueue(const std::string& label) {
    dispatch_queue_attr_t attributes =
        dispatch_queue_attr_make_with_qos_class(DISPATCH_QUEUE_SERIAL, QOS_CLASS_UTILITY, 0);
    return *new DispatchExecutor(dispatch_queue_create(label.c_str(), attributes));
}

} // namespace platform
