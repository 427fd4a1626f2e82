#pragma once

namespace kovra {

/// One function for each case of a variant, made of lambdas.
template <typename... Functions>
struct Cases : Functions... {
    using Functions::operator()...;
};

template <typename... Functions>
Cases(Functions...) -> Cases<Functions...>;

} // namespace kovra
