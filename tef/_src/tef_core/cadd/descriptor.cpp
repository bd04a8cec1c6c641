#include "_complex/descriptor.hpp"

static const Entry kEntry{of_sums({
    .name = "Add",
    .computes = "a + b",
    .c_name = "add",
    .specials = {{{2, 3, 5, -1}, {7, 2}},
                 {{kLargest, 0, kLargest, 0}, {kInf, 0}, StatusOverflow, kReporting},
                 {{kLargest, 0, kLargest, 0}, {kInf, 0}, StatusOk, kEP, FE_OVERFLOW},
                 {{1, -kLargest, 2, -kLargest}, {3, -kInf}, StatusOverflow, kReporting},
                 {{kNaN, kLargest, 0, kLargest}, {kNaN, kInf}, StatusOverflow, kReporting},
                 {{kInf, kLargest, 0, kLargest}, {kInf, kInf}, StatusOk, kAllClasses, FE_OVERFLOW},
                 {{kInf, 1, 1, 1}, {kInf, 2}},
                 {{1, 1, 1, -kInf}, {2, -kInf}},
                 {{kInf, 1, -kInf, 1}, {kNaN, 2}, StatusOk, kAllClasses, FE_INVALID},
                 {{kNaN, 1, 1, 1}, {kNaN, 2}},
                 {{-0.0, 0, -0.0, -0.0}, {-0.0, 0}}},
})};
