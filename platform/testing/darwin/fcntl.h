#pragma once

// Wrapping a header of the system takes an extension of the compilers.
#pragma GCC system_header

#include "platform/testing/darwin/Darwin.hpp"

#include_next <fcntl.h>

#define fcntl darwinFcntl
