// The same distributions by the C++ library, Boost.Random and GSL.
#pragma once

#include <functional>
#include <map>
#include <string>

namespace bench {

using Fill = std::function<void(double* r, int n)>;

struct Peers {
  Fill std, boost, gsl;  // empty where the library has none
};

// By the names in the list of distributions, "Gamma alpha < 0.6", with the arguments of the list. All draw from
// MT19937.
std::map<std::string, Peers> all_peers();

}  // namespace bench
