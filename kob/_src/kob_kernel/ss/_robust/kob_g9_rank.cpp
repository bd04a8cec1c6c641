#include "_robust/rank.hpp"

#include "orx/base/api.hpp"

ORX_API int __kobdTestCovRank(int p, double* matrix) { return orx::ss::test_rank(p, matrix); }
