#include "measure.hpp"

#include <algorithm>

#include "arguments.hpp"
#include "call_arrays.hpp"

void Record::add(const Verdict& v, const Sample& at) {
  ++count;
  correct += v.correct;
  if (v.wrong && wrong++ == 0) wrong_at = at;
  if (!v.wrong && v.error > worst) {
    worst = v.error;
    worst_at = at;
  }
}

void Record::merge(const Record& other) {
  if (wrong == 0) wrong_at = other.wrong_at;
  if (other.worst > worst || (other.worst == worst && other.worst_at.in[0] > worst_at.in[0])) {
    worst = other.worst;
    worst_at = other.worst_at;
  }
  count += other.count;
  correct += other.correct;
  wrong += other.wrong;
}

template <class T>
std::vector<Record> measure_strata(const FunctionEntry& f, const JudgedFunction& judged, double effort) {
  CallArrays<T> arrays(1);
  const Columns<T> x = make_arguments<T>(f, judged, effort, arrays.random());
  Judge exactly(judged);
  std::vector<Record> records(f.kernels.size());
  std::vector<ExactResult> exact(CallArrays<T>::kMost);
  const int inputs = f.shape->inputs, parameters = inputs + f.shape->scalars;

  for (size_t done = 0, n; done < x[0].size(); done += n) {
    n = std::min<size_t>(arrays.shuffle(), x[0].size() - done);
    T element[6];
    const std::array<T, 4> scalar = make_scalars<T>(arrays.random());
    std::copy(scalar.begin(), scalar.end(), element + inputs);
    for (int j = 0; j < inputs; ++j) std::copy_n(x[j].data() + done, n, arrays.at[j]);
    for (size_t i = 0; i < n; ++i) {
      for (int j = 0; j < inputs; ++j) element[j] = arrays.at[j][i];
      exact[i] = exactly(element, parameters);
    }
    for (size_t k = 0; k < records.size(); ++k) {
      arrays.call(f, f.kernels[k], static_cast<int>(n), scalar);
      for (size_t i = 0; i < n; ++i) {
        Sample at{{}, arrays.at[2][i]};
        for (int j = 0; j < inputs; ++j) at.in[j] = arrays.at[j][i];
        records[k].add(compare(exact[i], arrays.at[2][i]), at);
      }
    }
  }
  return records;
}

template std::vector<Record> measure_strata<float>(const FunctionEntry&, const JudgedFunction&, double);
template std::vector<Record> measure_strata<double>(const FunctionEntry&, const JudgedFunction&, double);
