#include "peers.hpp"

#include <dlfcn.h>
#include <immintrin.h>

#include <string_view>

namespace {

using orx::Function;
using orx::Operands;

void* find_symbol(const char* library, const std::string& name) {
  void* const handle = dlopen(library, RTLD_NOW);
  return handle ? dlsym(handle, name.c_str()) : nullptr;
}

template <class R>
struct Traits;
template <>
struct Traits<float> {
  using Vector = __m256;
  using Complex = _Complex float;
  static constexpr const char *c_suffix = "f", *sleef_suffix = "f8";
};
template <>
struct Traits<double> {
  using Vector = __m256d;
  using Complex = _Complex double;
  static constexpr const char *c_suffix = "", *sleef_suffix = "d4";
};

__m256d load(const double* p) { return _mm256_loadu_pd(p); }
__m256 load(const float* p) { return _mm256_loadu_ps(p); }
void store(double* p, __m256d x) { _mm256_storeu_pd(p, x); }
void store(float* p, __m256 x) { _mm256_storeu_ps(p, x); }
__m256d broadcast(double x) { return _mm256_set1_pd(x); }
__m256 broadcast(float x) { return _mm256_set1_ps(x); }

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

template <class R>
VectorCall<R> plain_loop(const Function& f) {
  if (const VectorCall<R> loop = compiled_loop<R>(f)) return loop;
  const std::string name = (f.complex() ? "c" : "") + std::string(f.descriptor->c_name) + Traits<R>::c_suffix;
  void* const symbol = find_symbol("libm.so.6", name);
  if (!symbol) return nullptr;
  return f.complex() ? c_loop<R, typename Traits<R>::Complex>(f, symbol) : c_loop<R, R>(f, symbol);
}

// SLEEF's function for vectors of 32 bytes, of the first of the endings that it has.
template <class R>
VectorCall<R> sleef(const Function& f, std::initializer_list<const char*> endings) {
  using V = typename Traits<R>::Vector;
  constexpr int lanes = sizeof(V) / sizeof(R);
  void* symbol = nullptr;
  for (const char* ending : endings)
    if (!symbol && !f.complex())
      symbol = find_symbol("libsleef.so.3", std::string("Sleef_") + f.descriptor->c_name +
                                                Traits<R>::sleef_suffix + "_" + ending + "avx");
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
  return all;
}
template std::vector<Peer<double>> peers(const Function&);
template std::vector<Peer<float>> peers(const Function&);
