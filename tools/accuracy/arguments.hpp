// The arguments at which functions are measured.
#pragma once
#include <array>
#include <random>
#include <vector>

#include "functions/list.hpp"

namespace orx {

// The numbers of elements, column by column: the parts of the first input, then those of the second, be it a vector or
// a scalar.
template <class R>
using Columns = std::vector<std::vector<R>>;

// The strata that the function's descriptor tells, and those that suit every function. `effort` 1 makes some 40000
// doubles or 20000 singles; the number grows about in proportion.
template <class R>
Columns<R> make_arguments(const Function& function, double effort, std::mt19937_64& random);

// Values for the four scalars of a linear fraction.
template <class R>
std::array<R, 4> make_scalars(std::mt19937_64& random);

}  // namespace orx
