// What a vector function is, for the programs that measure, time, test and document it. Beside the kernels of each
// function stands a file descriptor.cpp with an Entry; the meter, the benchmark, the tests and the documents' tables
// take all that they need from there. The library knows nothing of it.
#pragma once
#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

#include "orx/tef_mode.h"

namespace orx::descriptor {

inline constexpr double kInf = std::numeric_limits<double>::infinity();
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A number of a special case. Some depend on the format of the elements.
class Number {
 public:
  enum Kind { kValue, kLeast, kSmallest, kLargest, kSignalling, kFinite };

  constexpr Number(double value) : value_(value) {}  // NOLINT: numbers are written as numbers
  constexpr explicit Number(Kind kind) : kind_(kind) {}
  constexpr Number operator-() const {
    Number n = *this;
    n.value_ = -value_;
    return n;
  }

  bool any_finite() const { return kind_ == kFinite; }
  std::string name() const;  // as documents write it

  template <class T>
  T as() const {
    using Limits = std::numeric_limits<T>;
    switch (kind_) {
      case kLeast:
        return static_cast<T>(value_) * Limits::denorm_min();
      case kSmallest:
        return static_cast<T>(value_) * Limits::min();
      case kLargest:
        return static_cast<T>(value_) * Limits::max();
      case kSignalling:
        return Limits::signaling_NaN();
      default:
        return static_cast<T>(value_);
    }
  }

 private:
  double value_ = 1;
  Kind kind_ = kValue;
};

inline constexpr Number kLeast(Number::kLeast);        // the least denormal
inline constexpr Number kSmallest(Number::kSmallest);  // the smallest normal number
inline constexpr Number kLargest(Number::kLargest);
inline constexpr Number kFinite(Number::kFinite);  // as a result: any finite number

// One number or several: the inputs or the results of an element, a complex one being two, the real part first.
struct Numbers : std::vector<Number> {
  Numbers(double value) : vector{Number(value)} {}  // NOLINT
  Numbers(Number value) : vector{value} {}          // NOLINT
  Numbers(std::initializer_list<Number> values) : vector(values) {}
};

// Which entries of the table: those of the classes.
enum Classes { kNoClass = 0, kLA = 1, kHA = 2, kEP = 4, kAllClasses = 7 };

// An argument, the result that it must have, the status that it must report. The test takes a finite result that is
// not 0 as right within 2^-10: the meter is there for the rest. A NaN stands for any NaN. Of the floating-point
// exceptions the result raises what its status stands for (inexact is free), unless `raises` says something else.
struct Special {
  Numbers in, out;
  int status = StatusOk;
  Classes classes = kAllClasses;
  int raises = -1;
};

// A set of arguments to measure at.
struct Stratum {
  enum class Kind { Everywhere, Around, Multiples, Neighbours, Even, Logarithmic, Boundaries };
  Kind kind;
  std::vector<double> points;
  double from, to;
};
// Every exponent of both signs with random and boundary mantissas, every length of denormal, infinities, NaN.
Stratum everywhere();
// Consecutive values at each point, and both sides from there to the point's own size, geometrically: thresholds,
// zeros of the function, points of cancellation.
Stratum around(std::vector<double> points);
// Random multiples of each step in [from, to], and the middles between: reductions.
Stratum multiples(std::vector<double> steps, double from = -1000, double to = 1000);
// Each point and its two neighbours on both sides: published hard cases.
Stratum hard(std::vector<double> points);
// Spread evenly, and evenly in the logarithm (from and to of one sign).
Stratum even(double from, double to);
Stratum logarithmic(double from, double to);
// Where leading bits of the mantissa, or of the reciprocal's, change: tables.
Stratum boundaries();

// Pairs to measure at: of two arguments, or of the parts of a complex one.
struct Pair {
  double x, y;
};
struct Joint {
  Stratum u, v;
  Pair (*make)(double u, double v) = nullptr;  // null: the pair itself
};

// Largest errors by class, in ulps; 0 where the class's own limit is the bound.
struct Bounds {
  double la = 0, ha = 0, ep = 0;
};
inline constexpr Bounds kExact = {0.5, 0.5, 0.5};

struct Interval {
  double from = 0, to = 0;
};

// What depends on the type of the elements.
struct Type {
  Bounds bounds = {};
  Interval timed = {};         // of arguments in the benchmark; even in the logarithm if positive and wide
  Interval timed_second = {};  // of second arguments, if another
  std::vector<Special> specials = {};
  std::vector<Stratum> strata = {};
  std::vector<Joint> joints = {};
  std::vector<std::vector<double>> cases = {};  // whole elements, all their numbers
  // Kernels that start from the processor's approximate reciprocal or reciprocal root: bits of their results may differ
  // between makes of processors.
  Classes approximate = kNoClass;
  // Results below these are measured in ulps of these: near zeros of the function, where the class promises no
  // relative accuracy.
  Bounds floor = {};
  // Where EP promises something only for arguments whose numbers are 0 or of magnitudes in this interval.
  Interval ep_moderate = {};
  bool ep_divides = false;  // and nothing where the second argument is 0
  // Where not the errors of a complex result's parts are bounded, each in its own ulps, but the distance in the complex
  // plane, in units of 2^-52 of the modulus (2^-23 in single precision).
  Classes norm_wise = kNoClass;

  bool described() const { return timed.from < timed.to; }
};

// An error that is reported, and when.
struct Error {
  int status;
  const char* when;
};

struct Descriptor {
  const char* name;           // "Exp"
  const char* computes = "";  // "e^x"
  const char* method = "";    // and its source, for the header
  // The C library's name for doubles. MPFR, MPC and SLEEF know most functions by the same.
  const char* c_name = "";
  // What the judge knows it by, if by another: a function of MPFR or MPC, or a formula of tools/accuracy/formulas.cpp.
  const char* judge = nullptr;
  // The function in double, good to about 1 ulp, where the C library has none of this name: for the measurement of all
  // singles.
  double (*quick_judge)(double x) = nullptr;
  const char* domain = "all numbers";
  std::vector<Error> errors = {};
  std::vector<Special> specials = {};  // for all types; those of one type stand with it
  std::vector<Stratum> strata = {};
  std::vector<Joint> joints = {};
  // Only the strata given here and with the type. Otherwise they come on top of those that suit every function:
  // everywhere, around 0, 1 and -1, boundaries, the timed interval, numbers of moderate size.
  bool only_these_strata = false;
  // Several rounded operations: the limits of the classes do not bind it.
  bool formula = false;
  // Where the method loses the sign of a zero result.
  Classes zero_signs_free = kNoClass;
  // Kernels that neither look at the rounding and the flush of denormals nor change them.
  Classes keep_control_word = kNoClass;
  // Enough that the judge's own rounding hides no bit that matters.
  int judge_precision = 192;
  Type s = {}, d = {}, c = {}, z = {};

  const Type& type(char letter) const;
  const char* judged_as() const { return judge ? judge : c_name; }
};

// Enters a descriptor into the register.
struct Entry {
  explicit Entry(Descriptor descriptor);
};

// Null if there is none.
const Descriptor* find(const std::string& name, char type);

}  // namespace orx::descriptor
