#pragma once

#include <deque>
#include <string>
#include <vector>

// The functions of dispatch queues in use. A queue keeps its work until a test runs it.

struct dispatch_queue_s {
    std::string description; ///< its kind, priority and label
    std::deque<void (*)(void*)> functions{};
    std::deque<void*> contexts{};

    /// Runs the first piece of work.
    void runNext() {
        const auto function = functions.front();
        void* context = contexts.front();
        functions.pop_front();
        contexts.pop_front();
        function(context);
    }
};

struct dispatch_queue_attr_s {
    std::string description;
};

using dispatch_queue_t = dispatch_queue_s*;
using dispatch_queue_attr_t = dispatch_queue_attr_s*;

// NOLINTBEGIN(readability-identifier-naming) the system's names
inline constexpr unsigned QOS_CLASS_UTILITY = 0x11;
inline const dispatch_queue_attr_t DISPATCH_QUEUE_SERIAL = nullptr;
inline dispatch_queue_attr_s dispatchConcurrent{"concurrent"};
inline const dispatch_queue_attr_t DISPATCH_QUEUE_CONCURRENT = &dispatchConcurrent;

inline dispatch_queue_t dispatch_get_main_queue() {
    // Never destroyed, as no queue is: what it still holds at the end is no leak.
    static auto* const only = new dispatch_queue_s{"main"};
    return only;
}

inline dispatch_queue_t dispatch_get_global_queue(long identifier, unsigned long) {
    static auto* const utility = new dispatch_queue_s{"global utility"};
    static auto* const other = new dispatch_queue_s{"global of another kind"};
    return identifier == QOS_CLASS_UTILITY ? utility : other;
}

inline dispatch_queue_attr_t
dispatch_queue_attr_make_with_qos_class(dispatch_queue_attr_t attributes, unsigned qos, int) {
    const std::string kind = attributes == nullptr ? "serial" : attributes->description;
    static auto* const made = new std::deque<dispatch_queue_attr_s>;
    return &made->emplace_back(
        dispatch_queue_attr_s{kind + (qos == QOS_CLASS_UTILITY ? " utility" : " of another kind")});
}

/// In their order; they live for ever.
inline auto& dispatchCreated = *new std::vector<dispatch_queue_t>;

inline dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attributes) {
    const std::string kind = attributes == nullptr ? "serial" : attributes->description;
    dispatchCreated.push_back(new dispatch_queue_s{kind + " " + label});
    return dispatchCreated.back();
}

inline void dispatch_async_f(dispatch_queue_t queue, void* context, void (*work)(void*)) {
    queue->functions.push_back(work);
    queue->contexts.push_back(context);
}

// NOLINTEND(readability-identifier-naming)
