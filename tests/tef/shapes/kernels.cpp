// The kernels of the list beside this file: loops over the C library, and two with known faults.
#include <cmath>
#include <complex>

#include "orx/tef.h"

namespace {

template <class T>
const std::complex<T>* complex(const T* a) {
  return reinterpret_cast<const std::complex<T>*>(a);
}
template <class T>
std::complex<T>* complex(T* a) {
  return reinterpret_cast<std::complex<T>*>(a);
}

}  // namespace

#define KERNEL(shape, t, Fn, code) \
  extern "C" void orx_tef_kernel_##t##Fn##_##code ORX_TEF_PARAMETERS_##shape(ORX_TEF_REAL_##t, ORX_TEF_FLAG)
#define FOR_ALL for (int i = 0; i < n; ++i)

KERNEL(unary, s, Exp, G9HAynn) { FOR_ALL r[i] = static_cast<float>(std::exp(static_cast<double>(a[i]))); }
// Three places too large.
KERNEL(unary, s, Exp, G9LAynn) {
  orx_tef_kernel_sExp_G9HAynn(n, a, r);
  FOR_ALL for (int k = 0; k < 3; ++k) r[i] = std::nextafter(r[i], HUGE_VALF);
}
// An underflow has the wrong sign.
KERNEL(unary, s, Exp, G9EPnnn) {
  FOR_ALL {
    orx_tef_kernel_sExp_G9HAynn(1, a + i, r + i);
    if (r[i] == 0) r[i] = -0.0f;
  }
}
KERNEL(unary, z, Exp, G9HAynn) { FOR_ALL complex(r)[i] = std::exp(complex(a)[i]); }
KERNEL(binary, d, Pow, G9HAynn) { FOR_ALL r[i] = std::pow(a[i], b[i]); }
KERNEL(binary, d, Pow, G9EPnnn) {
  FOR_ALL r[i] =
      static_cast<double>(std::pow(static_cast<long double>(a[i]), static_cast<long double>(b[i])));
}
KERNEL(binary, c, Mul, G9HAynn) {
  FOR_ALL complex(r)[i] =
      std::complex<float>(std::complex<double>(complex(a)[i]) * std::complex<double>(complex(b)[i]));
}
KERNEL(two_results, d, SinCos, G9HAynn) {
  FOR_ALL {
    const double x = a[i];  // the first result may lie where the argument is
    r1[i] = std::sin(x);
    r2[i] = std::cos(x);
  }
}
KERNEL(from_real, c, CIS, G9HAynn) { FOR_ALL complex(r)[i] = {std::cos(a[i]), std::sin(a[i])}; }
KERNEL(to_real, z, Abs, G9HAynn) { FOR_ALL r[i] = std::abs(complex(a)[i]); }
KERNEL(scalar_second, d, Powx, G9HAynn) { FOR_ALL r[i] = std::pow(a[i], b); }
KERNEL(complex_scalar_second, z, Powx, G9HAynn) {
  FOR_ALL complex(r)[i] = std::pow(complex(a)[i], std::complex<double>(b_re, b_im));
}
KERNEL(linearfrac, s, LinearFrac, N8HAynn) {
  FOR_ALL r[i] = (a[i] * scalea + shifta) / (b[i] * scaleb + shiftb);
}
KERNEL(pack_strided, d, PackI, PXHAynn) { FOR_ALL y[i] = flag * a[i * stride]; }
KERNEL(pack_selected, s, PackM, PXHAynn) { FOR_ALL if (selection[i])* y++ = static_cast<float>(flag) * a[i]; }
KERNEL(unpack_strided, z, UnpackI, PXHAynn) { FOR_ALL y[2 * i * stride] = flag * a[2 * i]; }
KERNEL(unpack_selected, c, UnpackV, PXHAynn) {
  FOR_ALL y[2 * selection[i]] = static_cast<float>(flag) * a[2 * i];
}
