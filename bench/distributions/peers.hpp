// The same distributions by the C++ library, Boost.Random and GSL.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace bench {

using Fill = std::function<void(double* r, int n)>;

struct Peers {
  Fill std, boost, gsl;  // empty where the library has none
};

// By the names in the list of distributions, "Gamma alpha < 0.6", with the arguments of the list. All draw from
// MT19937.
std::map<std::string, Peers> all_peers();

// Poisson numbers, number i with mean i of `means`: a distribution is made for each.
Peers poisson_peers(const std::vector<double>& means);

}  // namespace bench
