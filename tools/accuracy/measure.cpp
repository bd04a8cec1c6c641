#include "measure.hpp"

#include <algorithm>
#include <cmath>

#include "arguments.hpp"
#include "call_arrays.hpp"

namespace orx {

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

namespace {

template <class R>
class Meter {
 public:
  Meter(const Function& f, double effort)
      : f_(f),
        scalar_second_(f.shape->scalars == f.in_width()),
        arrays_(f, 1),
        columns_(make_arguments<R>(f, effort, arrays_.random())),
        judge_(f),
        records_(f.kernels.size()) {}

  std::vector<Record> run() {
    for (size_t done = 0; done < columns_[0].size();) {
      const int most = arrays_.shuffle();
      const size_t left = columns_[0].size() - done;
      done += scalar_second_ ? call_with_one_second(done, std::min<size_t>(4, left))
                             : call_with(done, std::min<size_t>(static_cast<size_t>(most), left));
    }
    return std::move(records_);
  }

 private:
  size_t call_with(size_t row, size_t count) {
    scalars_ = make_scalars<R>(arrays_.random());
    for (size_t i = 0; i < count; ++i) set(static_cast<int>(i), row + i);
    judge_and_compare(0, static_cast<int>(count), static_cast<int>(count));
    return count;
  }

  // A call has one second argument: that of the first row. The rows lie somewhere in a call of some blocks.
  size_t call_with_one_second(size_t row, size_t count) {
    constexpr int n = 35;
    const int rows = static_cast<int>(count), from = static_cast<int>(arrays_.random()() % (n - count));
    for (int k = 0; k < f_.shape->scalars; ++k) scalars_[k] = columns_[f_.columns_in() + k][row];
    for (int i = 0; i < n; ++i) set(i, row + static_cast<size_t>((i - from + n * rows) % rows));
    judge_and_compare(from, rows, n);
    return count;
  }

  void set(int i, size_t row) {
    for (int k = 0; k < f_.columns_in(); ++k) arrays_.in(k, i) = columns_[k][row];
  }

  // Of a call of n elements those from `from` on.
  void judge_and_compare(int from, int count, int n) {
    const int inputs = f_.columns_in(), outputs = f_.columns_out();
    exact_.resize(static_cast<size_t>(count * outputs));
    for (int i = 0; i < count; ++i) {
      R element[kMostColumns];
      for (int k = 0; k < inputs; ++k) element[k] = arrays_.in(k, from + i);
      std::copy_n(scalars_.begin(), f_.shape->scalars, element + inputs);
      judge_(element, &exact_[i * outputs]);
    }
    for (size_t k = 0; k < records_.size(); ++k) {
      const Measure measure = measure_of(f_, f_.kernels[k]);
      arrays_.call(f_.kernels[k], n, scalars_.data());
      for (int i = 0; i < count; ++i) {
        if (f_.kernels[k].own_class == kIndexEP && !moderate(from + i)) continue;
        R result[4];
        for (int j = 0; j < outputs; ++j) result[j] = arrays_.out(j, from + i);
        records_[k].add(compare(&exact_[i * outputs], result, outputs, measure), sample(from + i, result));
      }
    }
  }

  // Whether EP promises anything of the element.
  bool moderate(int i) {
    const descriptor::Interval range = f_.about().ep_moderate;
    if (range.to == 0) return true;
    bool second_is_zero = true;
    for (int k = 0; k < f_.columns_in(); ++k) {
      const double size = std::fabs(static_cast<double>(arrays_.in(k, i)));
      if (size != 0 && !(size >= range.from && size <= range.to)) return false;
      if (k >= f_.in_width() && size != 0) second_is_zero = false;
    }
    return !(f_.about().ep_divides && second_is_zero);
  }

  Sample sample(int i, const R* result) {
    Sample at;
    for (int k = 0; k < f_.columns_in(); ++k) at.in[k] = static_cast<double>(arrays_.in(k, i));
    for (int k = 0; k < f_.shape->scalars; ++k) at.in[f_.columns_in() + k] = static_cast<double>(scalars_[k]);
    for (int j = 0; j < f_.columns_out(); ++j) at.out[j] = static_cast<double>(result[j]);
    return at;
  }

  const Function& f_;
  const bool scalar_second_;
  CallArrays<R> arrays_;
  const Columns<R> columns_;
  Judge judge_;
  std::vector<Record> records_;
  std::vector<ExactResult> exact_;
  std::array<R, 4> scalars_{};
};

}  // namespace

template <class R>
std::vector<Record> measure_strata(const Function& f, double effort) {
  return Meter<R>(f, effort).run();
}

template std::vector<Record> measure_strata<float>(const Function&, double);
template std::vector<Record> measure_strata<double>(const Function&, double);

}  // namespace orx
