#include "descriptor.hpp"

#include <deque>
#include <sstream>

namespace orx::descriptor {
namespace {

std::deque<Descriptor>& all() {
  static std::deque<Descriptor> list;
  return list;
}

}  // namespace

std::string Number::name() const {
  static constexpr const char* kinds[] = {"", "least", "smallest", "largest", "signalling NaN", "finite"};
  const std::string sign = std::signbit(value_) ? "-" : "";
  if (kind_ != kValue) return sign + kinds[kind_];
  if (std::isinf(value_)) return sign + "∞";
  if (std::isnan(value_)) return "NaN";
  std::ostringstream s;
  s << value_;
  return s.str();
}

Stratum everywhere() { return {Stratum::Kind::Everywhere, {}, 0, 0}; }
Stratum around(std::vector<double> points) { return {Stratum::Kind::Around, std::move(points), 0, 0}; }
Stratum multiples(std::vector<double> steps, double from, double to) {
  return {Stratum::Kind::Multiples, std::move(steps), from, to};
}
Stratum hard(std::vector<double> points) { return {Stratum::Kind::Neighbours, std::move(points), 0, 0}; }
Stratum even(double from, double to) { return {Stratum::Kind::Even, {}, from, to}; }
Stratum logarithmic(double from, double to) { return {Stratum::Kind::Logarithmic, {}, from, to}; }
Stratum boundaries() { return {Stratum::Kind::Boundaries, {}, 0, 0}; }

const Type& Descriptor::type(char letter) const {
  return letter == 's' ? s : letter == 'd' ? d : letter == 'c' ? c : z;
}

Entry::Entry(Descriptor descriptor) { all().push_back(std::move(descriptor)); }

const Descriptor* find(const std::string& name, char type) {
  for (const Descriptor& d : all())
    if (name == d.name && d.type(type).described()) return &d;
  return nullptr;
}

}  // namespace orx::descriptor
