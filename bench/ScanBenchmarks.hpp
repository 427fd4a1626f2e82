#pragma once

namespace bench {

/// The product's accounts in keychain dumps of 1, 10 and 100 MB: our parser, and the check that the
/// dump is text, beside grep and awk on the same file.
void registerKeychainBenchmarks();

/// A scan that finds nothing, from the start of the process to its end, beside a program with the
/// same libraries that does nothing.
void registerStartBenchmarks();

} // namespace bench
