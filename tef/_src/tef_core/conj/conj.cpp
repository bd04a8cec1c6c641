// The conjugate: the sign of the imaginary part, by its bit. It does not depend on the control word.
#include "frame/kernel.hpp"

ORX_ISA_BEGIN(orx::tef)
namespace {

// The signs of imaginary parts where both parts stand side by side.
template <class T>
constexpr Row<T> imaginary_signs() {
  Row<T> signs = T(0);
  for (size_t i = 1; i < sizeof signs / sizeof(T); i += 2) signs.lane[i] = T(-0.0);
  return signs;
}

template <class T>
struct Conjugate : Kernel<Pair<T>(Pair<T>)> {
  static constexpr Control kControl = Control::kUntouched;
  template <class X>
  static X eval(X x) {
    return bit_xor(x, kSigns);
  }

 private:
  static constexpr Row<T> kSigns = imaginary_signs<T>();
};

}  // namespace
ORX_ISA_END

using namespace orx::tef;
ORX_KERNEL(c, Conj, G9HAynn, Conjugate<float>)
ORX_KERNEL(z, Conj, G9HAynn, Conjugate<double>)
