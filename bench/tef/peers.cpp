#include "peers.hpp"

#include <dlfcn.h>
#include <immintrin.h>

#include <cstring>
#include <string_view>

namespace {

using orx::Function;
using orx::Operands;

void* find_symbol(const char* library, const std::string& name) {
  void* const handle = dlopen(library, RTLD_NOW);
  return handle ? dlsym(handle, name.c_str()) : nullptr;
}

// The vectors of an instruction set, and its marks in the names of SLEEF's and of the C library's functions.
template <class R>
struct Traits;
#if defined(__AVX512F__)
#define VECTOR(type) __m512##type
constexpr const char *kSleefSet = "avx512f", *kVectorAbi = "_ZGVe";
#else
#define VECTOR(type) __m256##type
#if defined(__AVX2__)
constexpr const char *kSleefSet = "avx2", *kVectorAbi = "_ZGVd";
#else
constexpr const char *kSleefSet = "avx", *kVectorAbi = "_ZGVc";
#endif
#endif
template <>
struct Traits<float> {
  using Vector = VECTOR();
  using Complex = _Complex float;
  static constexpr const char *c_suffix = "f", *sleef_suffix = "f";
};
template <>
struct Traits<double> {
  using Vector = VECTOR(d);
  using Complex = _Complex double;
  static constexpr const char *c_suffix = "", *sleef_suffix = "d";
};
#undef VECTOR
template <class R>
constexpr int kLanes = sizeof(typename Traits<R>::Vector) / sizeof(R);

template <class R>
typename Traits<R>::Vector load(const R* p) {
  typename Traits<R>::Vector v;
  std::memcpy(&v, p, sizeof v);
  return v;
}
template <class R, class V>
void store(R* p, V v) {
  std::memcpy(p, &v, sizeof v);
}
template <class R>
typename Traits<R>::Vector broadcast(R x) {
  return x - typename Traits<R>::Vector{};
}

// A call of `step`(i) for each element, or for each vector.
template <int stride, class Step>
void for_each(int n, Step step) {
  for (int i = 0; i < n; i += stride) step(i);
}

// The C library's function for every element, by the function's shape. E is its element, a complex one perhaps.
template <class R, class E>
VectorCall<R> c_loop(const Function& f, void* symbol) {
  const std::string_view shape = f.shape->name;
  const auto in = [](const R* p) { return reinterpret_cast<const E*>(p); };
  const auto out = [](R* p) { return reinterpret_cast<E*>(p); };
  if (shape == "unary")
    return [=, call = reinterpret_cast<E (*)(E)>(symbol)](int n, const Operands<R>& o) {
      for_each<1>(n, [&](int i) { out(o.out[0])[i] = call(in(o.in[0])[i]); });
    };
  if (shape == "to_real")
    return [=, call = reinterpret_cast<R (*)(E)>(symbol)](int n, const Operands<R>& o) {
      for_each<1>(n, [&](int i) { o.out[0][i] = call(in(o.in[0])[i]); });
    };
  if (shape == "binary")
    return [=, call = reinterpret_cast<E (*)(E, E)>(symbol)](int n, const Operands<R>& o) {
      for_each<1>(n, [&](int i) { out(o.out[0])[i] = call(in(o.in[0])[i], in(o.in[1])[i]); });
    };
  if (shape == "scalar_second" || shape == "complex_scalar_second")
    return [=, call = reinterpret_cast<E (*)(E, E)>(symbol)](int n, const Operands<R>& o) {
      const E second = *in(o.scalar);
      for_each<1>(n, [&](int i) { out(o.out[0])[i] = call(in(o.in[0])[i], second); });
    };
  if (f.name == "SinCos")
    return [call = reinterpret_cast<void (*)(R, R*, R*)>(symbol)](int n, const Operands<R>& o) {
      for_each<1>(n, [&](int i) { call(o.in[0][i], o.out[0] + i, o.out[1] + i); });
    };
  if (f.name == "Modf")
    return [call = reinterpret_cast<R (*)(R, R*)>(symbol)](int n, const Operands<R>& o) {
      for_each<1>(n, [&](int i) { o.out[1][i] = call(o.in[0][i], o.out[0] + i); });
    };
  return nullptr;
}

// What the C library lacks of the normal distribution and of the inverses of the error function, by GSL's functions.
template <class R>
VectorCall<R> gsl_loop(const Function& f) {
  using Call = double (*)(double);
  const auto symbol = [](const char* name) {
    return reinterpret_cast<Call>(find_symbol("libgsl.so.27", name));
  };
  const Call distribution = symbol("gsl_cdf_ugaussian_P"), lower = symbol("gsl_cdf_ugaussian_Pinv"),
             upper = symbol("gsl_cdf_ugaussian_Qinv");
  if (!distribution || !lower || !upper) return nullptr;
  const auto loop = [](auto function) -> VectorCall<R> {
    return [function](int n, const Operands<R>& o) {
      for_each<1>(n, [&](int i) { o.out[0][i] = static_cast<R>(function(double{o.in[0][i]})); });
    };
  };
  constexpr double root_half = 0.70710678118654752;
  if (f.name == "CdfNorm") return loop(distribution);
  if (f.name == "CdfNormInv") return loop(lower);
  if (f.name == "ErfInv") return loop([=](double x) { return root_half * lower(0.5 * x + 0.5); });
  if (f.name == "ErfcInv") return loop([=](double x) { return root_half * upper(0.5 * x); });
  return nullptr;
}

template <class R>
VectorCall<R> plain_loop(const Function& f) {
  if (const VectorCall<R> loop = compiled_loop<R>(f)) return loop;
  const std::string name = (f.complex() ? "c" : "") + std::string(f.descriptor->c_name) + Traits<R>::c_suffix;
  void* const symbol = find_symbol("libm.so.6", name);
  if (!symbol) return gsl_loop<R>(f);
  return f.complex() ? c_loop<R, typename Traits<R>::Complex>(f, symbol) : c_loop<R, R>(f, symbol);
}

// A vector function by the function's shape.
template <class R>
VectorCall<R> vector_loop(const Function& f, void* symbol) {
  using V = typename Traits<R>::Vector;
  constexpr int lanes = kLanes<R>;
  if (!symbol) return nullptr;
  const std::string_view shape = f.shape->name;
  if (shape == "unary")
    return [call = reinterpret_cast<V (*)(V)>(symbol)](int n, const Operands<R>& o) {
      for_each<lanes>(n, [&](int i) { store(o.out[0] + i, call(load(o.in[0] + i))); });
    };
  if (shape == "binary")
    return [call = reinterpret_cast<V (*)(V, V)>(symbol)](int n, const Operands<R>& o) {
      for_each<lanes>(n, [&](int i) { store(o.out[0] + i, call(load(o.in[0] + i), load(o.in[1] + i))); });
    };
  if (shape == "scalar_second")
    return [call = reinterpret_cast<V (*)(V, V)>(symbol)](int n, const Operands<R>& o) {
      const V second = broadcast(o.scalar[0]);
      for_each<lanes>(n, [&](int i) { store(o.out[0] + i, call(load(o.in[0] + i), second)); });
    };
  if (shape == "two_results") {
    struct Two {
      V first, second;
    };
    return [call = reinterpret_cast<Two (*)(V)>(symbol)](int n, const Operands<R>& o) {
      for_each<lanes>(n, [&](int i) {
        const Two two = call(load(o.in[0] + i));
        store(o.out[0] + i, two.first);
        store(o.out[1] + i, two.second);
      });
    };
  }
  return nullptr;
}

// SLEEF's function, of the first of the endings that it has.
template <class R>
VectorCall<R> sleef(const Function& f, std::initializer_list<const char*> endings) {
  const std::string name =
      std::string("Sleef_") + f.descriptor->c_name + Traits<R>::sleef_suffix + std::to_string(kLanes<R>);
  void* symbol = nullptr;
  for (const char* ending : endings)
    if (!symbol && !f.complex()) symbol = find_symbol("libsleef.so.3", name + "_" + ending + kSleefSet);
  return vector_loop<R>(f, symbol);
}

// The C library's function of the vector calling convention; there is none for 32-bit code.
template <class R>
VectorCall<R> vector_c(const Function& f) {
  if (f.complex() || std::string_view(f.shape->name) != "unary") return nullptr;
  return vector_loop<R>(f, find_symbol("libmvec.so.1", kVectorAbi + ("N" + std::to_string(kLanes<R>)) + "v_" +
                                                           f.descriptor->c_name + Traits<R>::c_suffix));
}

}  // namespace

template <class R>
std::vector<Peer<R>> peers(const Function& f) {
  std::vector<Peer<R>> all;
  const auto add = [&](PeerKind kind, VectorCall<R> run) {
    if (run) all.push_back({kind, std::move(run)});
  };
  if (!f.descriptor || !*f.descriptor->c_name) {
    add(PeerKind::Loop, compiled_loop<R>(f));
    return all;
  }
  add(PeerKind::Loop, plain_loop<R>(f));
  add(PeerKind::SleefBest, sleef<R>(f, {"u10", "u05", "u15", ""}));
  add(PeerKind::SleefFast, sleef<R>(f, {"u35"}));
  add(PeerKind::VectorC, vector_c<R>(f));
  return all;
}
template std::vector<Peer<double>> peers(const Function&);
template std::vector<Peer<float>> peers(const Function&);
