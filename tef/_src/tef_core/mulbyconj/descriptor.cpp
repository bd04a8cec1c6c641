#include "_complex/descriptor.hpp"

static const Entry kEntry{of_products({
    .name = "MulByConj",
    .computes = "a times the conjugate of b",
    .method = "as Mul",
    .c_name = "mulbyconj",
    .judge = "mul_by_conj",
    // As Mul, with the sign of b's imaginary part turned.
    .specials = {{{2, 3, 4, 5}, {23, 2}},
                 {{0, 1, 0, 1}, {1, 0}},
                 {{kInf, kNaN, 1, 1}, {kInf, -kInf}, StatusOk, kReporting},
                 {{kNaN, -kInf, 1, 2}, {-kInf, -kInf}, StatusOk, kReporting},
                 {{3, 4, kNaN, kInf}, {kInf, -kInf}, StatusOk, kReporting},
                 {{kInf, kInf, kInf, kInf}, {kInf, kNaN}, StatusOk, kReporting, FE_INVALID},
                 {{kInf, 0, 1, 0}, {kInf, kNaN}, StatusOk, kReporting, FE_INVALID},
                 {{kInf, 0, 0, 0}, {kNaN, kNaN}, StatusOk, kReporting, FE_INVALID},
                 {{kNaN, 1, 1, 1}, {kNaN, kNaN}},
                 {{kLargest, 0, 2, 0}, {kInf, 0}, StatusOverflow, kReporting}},
    .c = {.bounds = {.la = 0.51, .ha = 0.51, .ep = 1.119},
          .specials = {{{kLargest, kLargest, kLargest, kLargest}, {kInf, 0}, StatusOverflow, kReporting}}},
    .z = {.bounds = {.la = 1.119, .ha = 1.119, .ep = 1.119},
          .specials = {{{kLargest, kLargest, kLargest, kLargest},
                        {kInf, 0},
                        StatusOverflow,
                        kReporting,
                        FE_OVERFLOW | FE_INVALID}},
          .floor = {.la = 0x1p-1018, .ha = 0x1p-1018}},
})};
