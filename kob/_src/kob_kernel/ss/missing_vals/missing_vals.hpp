// Multiple imputation of missing values in a multivariate normal sample (Schafer, Analysis of Incomplete Multivariate
// Data, 1997): EM gives a start, then data augmentation draws the missing values given the parameters (I step) and
// the parameters given all values (P step) by turns.
//
// All is computed in doubles, about the means of the observed values, so that sums of squares lose nothing to
// a large mean.
#pragma once

#include <algorithm>

#include "_robust/checks.hpp"
#include "_robust/rank.hpp"
#include "missing_vals/parameters.hpp"
#include "missing_vals/patterns.hpp"
#include "ss_task.hpp"

namespace orx::ss::missing_vals {

// ---- what is asked for ----

template <class T>
int check(const SSTask* task, unsigned method) {
  if (const int status = check_task<T>(task)) return status;
  if (const int status = check_dimension(task)) return status;
  if (!task->obsStorage || !is_observation_storage(task, task->obsStorage)) return KOB_SS_ERROR_STORAGE;
  if (const int status = check_count(task, task->observationCount, KOB_SS_ERROR_OBSERVATION_COUNT))
    return status;
  if (!task->observations) return KOB_SS_ERROR_OBSERVATIONS;
  if (!task->miParams) return KOB_SS_ERROR_IMPUTATION_PARAMETERS;
  if (!task->miParamCount) return KOB_SS_ERROR_IMPUTATION_PARAMETER_COUNT;
  if (value(task, task->miParamCount) != 5) return KOB_SS_ERROR_IMPUTATION_PARAMETER_COUNT_VALUE;
  if (task->miSimul && !task->miSimulCount) return KOB_SS_ERROR_IMPUTED_VALUE_COUNT;
  if (!task->miSimul && task->miSimulCount) return KOB_SS_ERROR_IMPUTED_VALUES;
  if (!task->miSimul && !task->miEstimates) return KOB_SS_ERROR_IMPUTATION_NO_RESULT;
  return method & KOB_SS_MULTIPLE_IMPUTATION ? KOB_SS_OK : KOB_SS_ERROR_METHOD;
}

struct Settings {
  int em_rounds = 50, rounds = 30;
  double accuracy = 0.001;
  double imputations, missing;  // as the caller tells them

  template <class T>
  explicit Settings(const T* given) : imputations(double(given[3])), missing(double(given[4])) {
    constexpr double most = 1e9;
    if (given[0] >= 1) em_rounds = int(std::min(double(given[0]), most));
    if (given[1] >= 1) rounds = int(std::min(double(given[1]), most));
    if (given[2] > 0) accuracy = double(given[2]);
    imputations = double(int64_t(imputations >= 0 && imputations < most ? imputations : 0));
  }
};

inline double told_count(const SSTask* task, const void* count) {
  return count ? double(value(task, count)) : 0;
}

// The counts of results must be those that data and parameters make.
inline int check_counts(const SSTask* task, const Settings& settings, int p, int64_t missing) {
  if (settings.missing != double(missing)) return KOB_SS_ERROR_MISSING_VALUE_COUNT;
  if (settings.imputations < 1 || missing < 1) return KOB_SS_ERROR_IMPUTATION_COUNTS;
  if (settings.imputations * double(missing) != told_count(task, task->miSimulCount))
    return KOB_SS_ERROR_IMPUTED_VALUE_COUNT_VALUE;
  const double estimates = settings.imputations * settings.rounds * (double(p) * (p + 3) / 2);
  if (task->miEstimates && estimates != told_count(task, task->miEstimateCount))
    return KOB_SS_ERROR_IMPUTATION_ESTIMATE_COUNT_VALUE;
  return KOB_SS_OK;
}

// ---- the computation ----

// The prior of mean and covariance: normal-inverted-Wishart with mean mu, tau observations' worth of it, m degrees of
// freedom and an inverse scale, of which the upper triangle counts.
struct Prior {
  double tau = 0;
  int64_t m = 0;
  Block<double> mean, inverse_scale;

  bool allocate(int p) { return mean.allocate_zeros(p) && inverse_scale.allocate_zeros(int64_t(p) * p); }
  void copy(const Prior& other, int p) {
    tau = other.tau;
    m = other.m;
    std::memcpy(mean.get(), other.mean.get(), size_t(p) * sizeof(double));
    std::memcpy(inverse_scale.get(), other.inverse_scale.get(), size_t(p) * p * sizeof(double));
  }
};

class Stream {
 public:
  ~Stream() {
    if (stream_) __kobDeleteStream(&stream_);
  }
  // The same numbers each time. (A low word of 0 would begin MCG59 where its period is 128.)
  int open() {
    const uint32_t seed[2] = {1, 0x40000};
    return __kobNewStreamEx(&stream_, KOB_BRNG_MCG59, 2, seed);
  }
  int normal(int n, double* r) const { return _kobdRngGaussian(kMethod, stream_, n, r, 0, 1); }
  // n vectors of the covariance u' u.
  int normal(int n, double* r, int dimension, const double* zero, const double* u) const {
    constexpr int full = 0;
    return _kobdRngGaussianMV(kMethod, stream_, n, r, dimension, full, zero, u);
  }
  // chi-square, as a sum of squares of normal numbers while those are few.
  int chi_square(int64_t degrees, double* result) const {
    constexpr int most = 1024;
    if (degrees > most) return _kobdRngGamma(0, stream_, 1, result, double(degrees) / 2, 0, 2);
    double z[most];
    if (const int status = normal(int(degrees), z); status < 0) return status;
    double sum = 0;
    for (int k = 0; k < degrees; ++k) sum += z[k] * z[k];
    *result = sum;
    return KOB_STATUS_OK;
  }

 private:
  static constexpr int kMethod = 2;
  KobStream* stream_ = nullptr;
};

template <class T>
struct Imputation {
  SSTask* task;
  Observations<T> data;
  Settings settings;
  bool restores_prior;
  Patterns patterns;
  Stream stream;
  Parameters theta, before, swept;
  Parameters complete,
      sums;  // of products of the values, with a 1 before them: of whole observations, and of all
  Prior told_prior, prior;
  Block<double> vectors, matrices, groups;
  Block<int> indices;
  double *centre = nullptr, *zero = nullptr, *z = nullptr;  // p each
  double *residual = nullptr, *bartlett = nullptr;          // p p each
  double* coefficients = nullptr;                           // (p + 1) p
  // Of a group of observations: p + 1, p + 1, p and p for each.
  double *values = nullptr, *given = nullptr, *predicted = nullptr, *noise = nullptr;
  int *observed = nullptr, *missing = nullptr;  // variables of the pattern at hand
  int group_size = 0;

  Imputation(SSTask* t, bool restores)
      : task(t), data(t), settings(static_cast<const T*>(t->miParams)), restores_prior(restores) {}

  int p() const { return data.p; }

  bool allocate() {
    constexpr int in_cache = 0x8000;
    const int64_t size = p(), square = size * size;
    group_size = std::max(1, std::min(data.n, in_cache / (p() + 1)));
    for (Parameters* a : {&theta, &before, &swept, &complete, &sums})
      if (!a->allocate(p())) return false;
    if (!told_prior.allocate(p()) || !prior.allocate(p()) || !vectors.allocate_zeros(3 * size) ||
        !matrices.allocate(3 * square + size) || !groups.allocate(group_size * (4 * size + 2)) ||
        !indices.allocate(2 * size))
      return false;
    centre = vectors.get();
    zero = centre + size;
    z = zero + size;
    residual = matrices.get();
    bartlett = residual + square;
    coefficients = bartlett + square;
    values = groups.get();
    given = values + group_size * (size + 1);
    predicted = given + group_size * (size + 1);
    noise = predicted + group_size * size;
    observed = indices.get();
    missing = observed + p();
    return true;
  }
};

// The variables of pattern k, observed and missing ones, each in rising order.
template <class T>
void _vSSGetPatternIdx(const Imputation<T>& c, int k) {
  int q = 0, r = 0;
  for (int j = 0; j < c.p(); ++j) (c.patterns.is_observed(k, j) ? c.observed[q++] : c.missing[r++]) = j;
}

// Calls use(first, count) for groups of the observations of a pattern.
template <class T, class Use>
int in_groups(const Imputation<T>& c, const Pattern& pattern, Use use) {
  for (int done = 0, count; done < pattern.count; done += count) {
    count = std::min(c.group_size, pattern.count - done);
    if (const int status = use(pattern.first + done, count)) return status;
  }
  return KOB_SS_OK;
}

// A 1 and the observed values of a group, with room for the missing ones; and the former alone.
template <class T>
void load_group(const Imputation<T>& c, const Pattern& pattern, int first, int count) {
  const int size = c.p() + 1, q = pattern.observed;
  for (int i = 0; i < count; ++i) {
    double* const all = c.values + intptr_t(i) * size;
    double* const some = c.given + intptr_t(i) * (q + 1);
    all[0] = some[0] = 1;
    for (int k = 0; k < q; ++k) {
      const int j = c.observed[k];
      all[j + 1] = some[k + 1] = double(c.data(j, c.patterns.member(first + i))) - c.centre[j];
    }
  }
}

template <class T>
void add_products(const Imputation<T>& c, int count, const Parameters& sums) {
  blas::syrk('N', c.p() + 1, count, c.values, c.p() + 1, sums.data(), c.p() + 1);
}

// The means of the observed values, and the sums of the observations that are whole.
template <class T>
int _vEMPreprocessing(const Imputation<T>& c) {
  for (int j = 0; j < c.p(); ++j) {
    double sum = 0;
    int count = 0;
    for (int i = 0; i < c.data.n; ++i)
      if (!is_missing(c.data(j, i))) {
        sum += double(c.data(j, i));
        ++count;
      }
    c.centre[j] = count ? sum / count : 0;
  }
  if (!all_finite(c.centre, c.p())) return KOB_SS_ERROR_NOT_POSITIVE_DEFINITE;
  for (int k = 0; k < c.patterns.count(); ++k) {
    const Pattern& pattern = c.patterns[k];
    if (pattern.observed < c.p()) continue;
    _vSSGetPatternIdx(c, k);
    in_groups(c, pattern, [&](int first, int count) {
      load_group(c, pattern, first, count);
      add_products(c, count, c.complete);
      return int(KOB_SS_OK);
    });
  }
  return KOB_SS_OK;
}

// ---- a pattern and the parameters ----

// Sweeps on the observed variables of a pattern, and on no others. A variable of which the others tell all has no
// variance left to sweep on.
template <class T>
int sweep_to(const Imputation<T>& c, int k) {
  constexpr double least = 0x1p-48;
  for (int j = 0; j < c.p(); ++j) {
    const bool wanted = c.patterns.is_observed(k, j);
    if (wanted == c.swept.is_swept(j + 1)) continue;
    if (wanted && !(c.swept(j + 1, j + 1) > least * c.theta(j + 1, j + 1)))
      return KOB_SS_ERROR_NOT_POSITIVE_DEFINITE;
    c.swept._vSSSweepOperator(j + 1, wanted ? -1 : 1);
  }
  return KOB_SS_OK;
}

// Coefficients of the regressions of the missing variables on a 1 and the observed ones, a column for each.
template <class T>
void get_coefficients(const Imputation<T>& c, int q, int r) {
  for (int l = 0; l < r; ++l) {
    double* const column = c.coefficients + intptr_t(l) * (q + 1);
    const int to = c.missing[l] + 1;
    column[0] = c.swept(0, to);
    for (int k = 0; k < q; ++k) column[k + 1] = c.swept(c.observed[k] + 1, to);
  }
}

// For each pattern with missing values: prepare(r) once, and for its groups, when what is predicted of the missing
// values is there, fill(first, count, r), which completes the values. Their products are added to the sums.
template <class T, class Prepare, class Fill>
int over_patterns(const Imputation<T>& c, Prepare prepare, Fill fill) {
  c.sums.copy(c.complete);
  c.swept.copy(c.theta);
  for (int k = 0; k < c.patterns.count(); ++k) {
    const Pattern& pattern = c.patterns[k];
    const int q = pattern.observed, r = c.p() - q;
    if (r == 0) continue;
    _vSSGetPatternIdx(c, k);
    if (const int status = sweep_to(c, k)) return status;
    get_coefficients(c, q, r);
    if (const int status = prepare(pattern, r)) return status;
    const int status = in_groups(c, pattern, [&](int first, int count) {
      load_group(c, pattern, first, count);
      blas::gemm('T', 'N', r, count, q + 1, 1.0, c.coefficients, q + 1, c.given, q + 1, 0.0, c.predicted, r);
      if (const int failure = fill(first, count, r)) return failure;
      add_products(c, count, c.sums);
      return int(KOB_SS_OK);
    });
    if (status) return status;
  }
  return KOB_SS_OK;
}

// Mean and covariance that the sums tell.
template <class T>
void estimate(const Imputation<T>& c, const Parameters& theta) {
  const double n = c.data.n;
  theta(0, 0) = -1;
  for (int j = 1; j <= c.p(); ++j) {
    theta.set(0, j, c.sums(0, j) / n);
    for (int i = 1; i <= j; ++i) theta.set(i, j, c.sums(i, j) / n - theta(0, i) * theta(0, j));
  }
}

// ---- expectation and maximisation ----

template <class T>
int _vSSEMMethodEStep(const Imputation<T>& c) {
  const auto add_residuals = [&](const Pattern& pattern, int r) {
    for (int l = 0; l < r; ++l)
      for (int k = 0; k <= l; ++k)
        c.sums(c.missing[k] + 1, c.missing[l] + 1) +=
            pattern.count * c.swept(c.missing[k] + 1, c.missing[l] + 1);
    return int(KOB_SS_OK);
  };
  const auto fill = [&](int, int count, int r) {
    for (int i = 0; i < count; ++i)
      for (int l = 0; l < r; ++l)
        c.values[intptr_t(i) * (c.p() + 1) + c.missing[l] + 1] = c.predicted[intptr_t(i) * r + l];
    return int(KOB_SS_OK);
  };
  return over_patterns(c, add_residuals, fill);
}

// The mean and covariance to begin with: the caller's, or 0 and the unit matrix.
template <class T>
void start(const Imputation<T>& c) {
  const int p = c.p();
  const T* given = given_parameters<T>(c.task, c.task->miInitCount, c.task->miInit, int64_t(p) * (p + 3) / 2);
  c.theta(0, 0) = -1;
  for (int j = 0; j < p; ++j) c.theta.set(0, j + 1, (given ? double(*given++) : 0) - c.centre[j]);
  for (int i = 0; i < p; ++i)
    for (int j = i; j < p; ++j) c.theta.set(i + 1, j + 1, given ? double(*given++) : i == j);
}

template <class T>
int _vSSComputeEMMethod(const Imputation<T>& c) {
  start(c);
  for (int round = 0; round < c.settings.em_rounds; ++round) {
    c.before.copy(c.theta);
    if (const int status = _vSSEMMethodEStep(c)) return status;
    estimate(c, c.theta);
    double change = 0;
    const intptr_t size = intptr_t(c.p() + 1) * (c.p() + 1);
    for (intptr_t k = 1; k < size; ++k)
      change = std::max(change, __builtin_fabs(c.theta.data()[k] - c.before.data()[k]));
    if (!all_finite(c.theta.data(), size)) return KOB_SS_ERROR_NOT_POSITIVE_DEFINITE;
    if (change < c.settings.accuracy) break;
  }
  return KOB_SS_OK;
}

// ---- data augmentation ----

template <class T>
int _vSSDAMethodIStep(const Imputation<T>& c, T* simulated) {
  const auto factor = [&](const Pattern&, int r) {
    for (int l = 0; l < r; ++l)
      for (int k = 0; k < r; ++k)
        c.residual[intptr_t(l) * r + k] = c.swept(c.missing[k] + 1, c.missing[l] + 1);
    return blas::potrf(r, c.residual, r) ? int(KOB_SS_ERROR_I_STEP_FACTOR) : int(KOB_SS_OK);
  };
  const auto fill = [&](int first, int count, int r) {
    if (c.stream.normal(count, c.noise, r, c.zero, c.residual) < 0) return int(KOB_SS_ERROR_I_STEP_GENERATOR);
    for (int i = 0; i < count; ++i) {
      T* const to = simulated + c.patterns.position(c.patterns.member(first + i));
      for (int l = 0; l < r; ++l) {
        const int j = c.missing[l];
        const double x = c.predicted[intptr_t(i) * r + l] + c.noise[intptr_t(i) * r + l];
        c.values[intptr_t(i) * (c.p() + 1) + j + 1] = x;
        to[l] = T(x + c.centre[j]);
      }
    }
    return int(KOB_SS_OK);
  };
  return over_patterns(c, factor, fill);
}

// The prior becomes the posterior, given observations of this mean and covariance.
template <class T>
void update_prior(Imputation<T>& c) {
  const int p = c.p();
  const double n = c.data.n, tau = c.prior.tau, both = n + tau;
  estimate(c, c.theta);
  double *const mean = c.prior.mean.get(), *const inverse_scale = c.prior.inverse_scale.get();
  for (int j = 0; j < p; ++j)
    for (int i = 0; i <= j; ++i)
      inverse_scale[intptr_t(j) * p + i] += n * c.theta(i + 1, j + 1) + n * tau / both *
                                                                            (c.theta(0, i + 1) - mean[i]) *
                                                                            (c.theta(0, j + 1) - mean[j]);
  for (int j = 0; j < p; ++j) mean[j] = (n * c.theta(0, j + 1) + tau * mean[j]) / both;
  c.prior.m += c.data.n;
  c.prior.tau = both;
}

// Bartlett's factor of a Wishart matrix: upper triangular, b' b has m degrees of freedom.
template <class T>
int draw_bartlett_factor(const Imputation<T>& c) {
  const int p = c.p();
  for (int j = 0; j < p; ++j) {
    double* const column = c.bartlett + intptr_t(j) * p;
    double square;
    if (c.stream.chi_square(c.prior.m - j, &square) < 0 || (j > 0 && c.stream.normal(j, column) < 0))
      return KOB_SS_ERROR_P_STEP_GENERATOR;
    column[j] = __builtin_sqrt(square);
    for (int i = j + 1; i < p; ++i) column[i] = 0;
  }
  return KOB_SS_OK;
}

template <class T>
int _vSSDAMethodPStep(Imputation<T>& c) {
  const int p = c.p();
  if (c.restores_prior) c.prior.copy(c.told_prior, p);
  update_prior(c);
  if (const int status = draw_bartlett_factor(c)) return status;
  double* const factor = c.residual;
  std::memcpy(factor, c.prior.inverse_scale.get(), size_t(p) * p * sizeof(double));
  if (blas::potrf(p, factor, p)) return KOB_SS_ERROR_P_STEP_FACTOR;
  if (blas::trtri(p, c.bartlett)) return KOB_SS_ERROR_P_STEP_INVERSE;
  blas::trmm(p, factor, c.bartlett);  // a: a a' is the covariance
  const double* const a = c.bartlett;
  if (c.stream.normal(p, c.z) < 0) return KOB_SS_ERROR_P_STEP_GENERATOR;
  const double scale = 1 / __builtin_sqrt(c.prior.tau);
  for (int i = 0; i < p; ++i) {
    double mean = 0;
    for (int k = 0; k < p; ++k) mean += a[intptr_t(k) * p + i] * c.z[k];
    c.theta.set(0, i + 1, c.prior.mean[i] + scale * mean);
  }
  double* const cov = c.residual;
  for (intptr_t k = 0; k < intptr_t(p) * p; ++k) cov[k] = 0;
  blas::syrk('N', p, p, a, p, cov, p);
  for (int j = 0; j < p; ++j)
    for (int i = 0; i <= j; ++i) c.theta.set(i + 1, j + 1, cov[intptr_t(j) * p + i]);
  return KOB_SS_OK;
}

template <class T>
void read_prior(Imputation<T>& c) {
  const int p = c.p();
  const SSTask* const task = c.task;
  Prior& prior = c.told_prior;
  prior.m = p;
  const int64_t triangle = int64_t(p) * (p + 3) / 2 + 2;
  const bool told = task->miPrior && told_count(task, task->miPriorCount) >= double(triangle);
  const T* given = told ? static_cast<const T*>(task->miPrior) : nullptr;
  for (int j = 0; j < p; ++j) prior.mean[j] = (told ? double(*given++) : 0) - c.centre[j];
  if (told) {
    const double tau = double(*given++), m = double(*given++);
    if (tau > 0) prior.tau = tau;
    if (m > p) prior.m = int64_t(std::min(m, 1e15));
    for (int i = 0; i < p; ++i)
      for (int j = i; j < p; ++j) prior.inverse_scale[intptr_t(j) * p + i] = double(*given++);
  }
  c.prior.copy(prior, p);
}

// Mean and covariance, packed, in the units of the data; the place after them.
template <class T>
T* write_estimates(const Imputation<T>& c, T* to) {
  for (int j = 0; j < c.p(); ++j) *to++ = T(c.theta(0, j + 1) + c.centre[j]);
  for (int i = 0; i < c.p(); ++i)
    for (int j = i; j < c.p(); ++j) *to++ = T(c.theta(i + 1, j + 1));
  return to;
}

template <class T>
int _vSSMIMethod(Imputation<T>& c) {
  if (const int status = c.patterns.find(c.data)) return status;
  const int64_t missing = c.patterns.missing();
  if (const int status = check_counts(c.task, c.settings, c.p(), missing)) return status;
  if (!c.allocate() || c.stream.open() < 0) return KOB_SS_ERROR_MEMORY;
  if (const int status = _vEMPreprocessing(c)) return status;
  if (const int status = _vSSComputeEMMethod(c)) return status;
  read_prior(c);
  T* estimates = reals<T>(c.task->miEstimates);
  for (int m = 0; m < int(c.settings.imputations); ++m)
    for (int round = 0; round < c.settings.rounds; ++round) {
      if (const int status = _vSSDAMethodIStep(c, reals<T>(c.task->miSimul) + m * missing)) return status;
      if (const int status = _vSSDAMethodPStep(c)) return status;
      if (estimates) estimates = write_estimates(c, estimates);
    }
  return KOB_SS_OK;
}

template <class T>
int compute(SSTask* task, unsigned method) {
  if (const int status = check<T>(task, method)) return status;
  Imputation<T> computation(task, method & KOB_SS_RESTORED_PRIOR);
  return _vSSMIMethod(computation);
}

}  // namespace orx::ss::missing_vals
