#pragma once

#include "platform/testing/darwin/Darwin.hpp"
