#include "practice-mac/stand-ins/Applets.hpp"

namespace practice {

/// There is nothing to open it with; that it was asked for stands in the transcript.
int runXdgOpen(Invocation& call) {
    return call.arguments.size() == 1 ? 0 : unknownRequest(call, "the arguments");
}

} // namespace practice
