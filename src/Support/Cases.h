#pragma once

namespace tarn {

// The branches of a std::visit, written as lambdas.
template <typename... Functions> struct Cases : Functions... {
    using Functions::operator()...;
};
template <typename... Functions> Cases(Functions...) -> Cases<Functions...>;

}
