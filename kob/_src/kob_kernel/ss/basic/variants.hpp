// The 64 kernels by name, and the tables in which they are looked up. `Real` is the type of the data.
//
// A name reads: class; variables in rows (R) or columns (C); unweighted (_) or weighted (W); raw orders; central
// orders; cross-products (C) or none (_).
#define ORX_BASIC_1P(DO, S, W)          \
  DO(1p, S, W, R1___, C___, _, 1, 1, 0) \
  DO(1p, S, W, R1___, C___, C, 1, 1, 0) \
  DO(1p, S, W, R1___, C2__, _, 1, 1, 2) \
  DO(1p, S, W, R1___, C2__, C, 1, 1, 2) \
  DO(1p, S, W, R12__, C2__, _, 1, 2, 2) \
  DO(1p, S, W, R12__, C2__, C, 1, 2, 2) \
  DO(1p, S, W, R1234, C234, _, 1, 4, 4) \
  DO(1p, S, W, R1234, C234, C, 1, 4, 4)
#define ORX_BASIC_2P(DO, S, W)         \
  DO(2p, S, W, R____, C2__, , 2, 1, 2) \
  DO(2p, S, W, R____, C23_, , 2, 1, 3) \
  DO(2p, S, W, R____, C234, , 2, 1, 4) \
  DO(2p, S, W, R_234, C234, , 2, 4, 4)
#define ORX_BASIC_FAST(DO, S, W)     \
  DO(Fast, S, W, R1___, , , 1, 1, 0) \
  DO(Fast, S, W, R12__, , , 1, 2, 0) \
  DO(Fast, S, W, R123_, , , 1, 3, 0) \
  DO(Fast, S, W, R1234, , , 1, 4, 0)
#define ORX_BASIC_ALL(CLASS, DO) CLASS(DO, R, _) CLASS(DO, R, W) CLASS(DO, C, _) CLASS(DO, C, W)

#define ORX_BASIC_DEFINE(CLASS, S, W, RAW, CENTRAL, CROSS, raw_from, raw_to, central_to)   \
  static void _vSSBasic##CLASS##S##W##RAW##CENTRAL##CROSS(const KernelArgs<Real>& args) {  \
    kernel_##CLASS<Real, #S[0] == 'R', #W[0] == 'W', Orders<raw_from, raw_to, central_to>, \
                   #CROSS[0] == 'C'>(args);                                                \
  }
#define ORX_BASIC_NAME(CLASS, S, W, RAW, CENTRAL, CROSS, ...) _vSSBasic##CLASS##S##W##RAW##CENTRAL##CROSS,

namespace {
using namespace orx::ss::basic;

extern "C" {
ORX_BASIC_ALL(ORX_BASIC_1P, ORX_BASIC_DEFINE)
ORX_BASIC_ALL(ORX_BASIC_2P, ORX_BASIC_DEFINE)
ORX_BASIC_ALL(ORX_BASIC_FAST, ORX_BASIC_DEFINE)
}

// By storage, weights, class and, in one pass, cross-products.
constexpr KernelTables<Real> kKernelTables = {{ORX_BASIC_ALL(ORX_BASIC_1P, ORX_BASIC_NAME)},
                                              {ORX_BASIC_ALL(ORX_BASIC_2P, ORX_BASIC_NAME)},
                                              {ORX_BASIC_ALL(ORX_BASIC_FAST, ORX_BASIC_NAME)}};
}  // namespace
