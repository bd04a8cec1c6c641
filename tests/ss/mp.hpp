// Numbers of 400 bits by MPFR, the judge of the statistics: sums of powers of doubles of like size are exact
// in them.
#pragma once

#include <mpfr.h>

#include <cmath>
#include <utility>

class Mp {
 public:
  Mp(double x = 0) { mpfr_init2(v_, 400), mpfr_set_d(v_, x, MPFR_RNDN); }
  Mp(const Mp& o) { mpfr_init2(v_, 400), mpfr_set(v_, o.v_, MPFR_RNDN); }
  Mp& operator=(const Mp& o) { return mpfr_set(v_, o.v_, MPFR_RNDN), *this; }
  ~Mp() { mpfr_clear(v_); }
  Mp& operator+=(const Mp& o) { return mpfr_add(v_, v_, o.v_, MPFR_RNDN), *this; }
  Mp& operator-=(const Mp& o) { return mpfr_sub(v_, v_, o.v_, MPFR_RNDN), *this; }
  Mp& operator*=(const Mp& o) { return mpfr_mul(v_, v_, o.v_, MPFR_RNDN), *this; }
  Mp& operator/=(const Mp& o) { return mpfr_div(v_, v_, o.v_, MPFR_RNDN), *this; }
  friend Mp operator+(Mp a, const Mp& b) { return a += b; }
  friend Mp operator-(Mp a, const Mp& b) { return a -= b; }
  friend Mp operator*(Mp a, const Mp& b) { return a *= b; }
  friend Mp operator/(Mp a, const Mp& b) { return a /= b; }
  friend Mp sqrt(Mp a) { return mpfr_sqrt(a.v_, a.v_, MPFR_RNDN), a; }
  friend Mp log(Mp a) { return mpfr_log(a.v_, a.v_, MPFR_RNDN), a; }
  friend Mp abs(Mp a) { return mpfr_abs(a.v_, a.v_, MPFR_RNDN), a; }
  explicit operator double() const { return mpfr_get_d(v_, MPFR_RNDN); }

 private:
  mpfr_t v_;
};

inline Mp power(const Mp& x, int k) {
  Mp r = 1;
  for (; k > 0; --k) r *= x;
  return r;
}
