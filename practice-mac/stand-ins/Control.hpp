#pragma once

#include <string>
#include <vector>

namespace practice {

/// What launchd answers: an exit status and the texts for the two standard streams.
struct Reply {
    int status = 0;
    std::string output;
    std::string error;
};

/// Asks launchd and waits for its answer. Throws std::runtime_error when there is no launchd.
Reply ask(const std::vector<std::string>& words);

/// launchd's side: a socket on which requests arrive. Throws std::system_error.
int listenForRequests();

/// The words of the request on an accepted connection.
std::vector<std::string> readRequest(int connection);

/// Answers and closes the connection.
void answer(int connection, const Reply& reply);

} // namespace practice
