// The arguments at which functions are measured.
#pragma once
#include <array>
#include <random>
#include <vector>

#include "judge.hpp"
#include "kernel_list.hpp"

// Columns of inputs, all of one length.
template <class T>
using Columns = std::vector<std::vector<T>>;

// Strata of a function's arguments, shuffled: every exponent of both signs with random and boundary
// mantissas, specials, consecutive values around thresholds and along geometric approaches to them,
// boundaries of tables, published hard cases, and arguments spread evenly over the range where the function
// is used. `effort` 1 makes some 40000 doubles or 20000 singles; the number grows about in proportion.
template <class T>
Columns<T> make_arguments(const FunctionEntry& function, const JudgedFunction& judged, double effort,
                          std::mt19937_64& random);

// Values for the scalar parameters of a call.
template <class T>
std::array<T, 4> make_scalars(std::mt19937_64& random);
