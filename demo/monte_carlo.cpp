// Pi, the price of an option and the wait in a queue by Monte Carlo: work split over streams by leapfrog and by
// sub-generators, broken off half-way and taken up again from saved streams, with the error shrinking as one over the
// root of the work.
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <vector>

#include "chapters.h"
#include "front.h"
#include "orx/kob.h"

namespace {

void check(int status) {
  if (status < 0) throw std::runtime_error("random stream: status " + std::to_string(status));
}

class Stream {
 public:
  // Small numbers are poor seeds: the key is spread over as many words as the largest of these seeds has.
  Stream(uint32_t id, uint32_t key) {
    uint32_t seed[8];
    check(orx_kob_spread_seed(1, &key, 8, seed));
    seed[0] |= 1;  // MCG59 has its whole period from odd numbers
    check(__kobNewStreamEx(&stream_, id, 8, seed));
  }
  explicit Stream(const std::vector<unsigned char>& image) {
    check(__kobLoadStreamM(&stream_, image.data()));
  }
  Stream(Stream&& other) noexcept : stream_(other.stream_) { other.stream_ = nullptr; }
  Stream& operator=(const Stream&) = delete;
  ~Stream() { __kobDeleteStream(&stream_); }

  void leapfrog(int k, int parts) { check(__kobLeapfrogStream(stream_, uint32_t(k), parts)); }
  void uniform(std::vector<double>& r) { check(_kobdRngUniform(0, stream_, int(r.size()), r.data(), 0, 1)); }
  void gaussian(std::vector<double>& r, double mean, double deviation) {
    check(_kobdRngGaussian(2, stream_, int(r.size()), r.data(), mean, deviation));
  }
  void exponential(std::vector<double>& r, double mean) {
    check(_kobdRngExponential(0, stream_, int(r.size()), r.data(), 0, mean));
  }
  void gamma(std::vector<double>& r, double shape, double scale) {
    check(_kobdRngGamma(0, stream_, int(r.size()), r.data(), shape, 0, scale));
  }
  std::vector<unsigned char> image() const {
    std::vector<unsigned char> bytes(size_t(__kobGetStreamSize(stream_)));
    check(__kobSaveStreamM(stream_, bytes.data()));
    return bytes;
  }

 private:
  KobStream* stream_ = nullptr;
};

constexpr int kStreams = 8, kBlock = 100;

// ---- pi ----

// Of n points in the unit square, those in the quarter circle.
int hits(Stream& stream, int n) {
  std::vector<double> xy(2 * kBlock);
  int inside = 0;
  for (int done = 0; done < n; done += kBlock) {
    stream.uniform(xy);
    for (int i = 0; i < kBlock; ++i) inside += xy[2 * i] * xy[2 * i] + xy[2 * i + 1] * xy[2 * i + 1] < 1;
  }
  return inside;
}

void pi() {
  std::printf("\nPi from points in a square: one MCG59 sequence dealt out to %d streams by leapfrog\n",
              kStreams);
  std::printf("      points   estimate     error   one deviation   in deviations\n");
  std::vector<Stream> streams;
  for (int k = 0; k < kStreams; ++k) {
    streams.emplace_back(KOB_BRNG_MCG59, 31415926);
    streams.back().leapfrog(k, kStreams);
  }
  double inside = 0;
  int done = 0;
  for (int points = kStreams * kBlock; points <= 10000 * kStreams * kBlock; points *= 10) {
    for (Stream& stream : streams) inside += hits(stream, (points - done) / kStreams);
    done = points;
    const double estimate = 4 * inside / points, deviation = std::sqrt(M_PI * (4 - M_PI) / points);
    std::printf("  %10d   %.6f  %+.6f        %.6f           %+5.2f\n", points, estimate, estimate - M_PI,
                deviation, (estimate - M_PI) / deviation);
  }
}

// ---- an option ----

// A European call: spot and strike price, interest, volatility, years.
struct Option {
  double spot = 100, strike = 105, rate = 0.05, volatility = 0.2, years = 1;

  double black_scholes() const {
    const double spread = volatility * std::sqrt(years);
    const double d1 = (std::log(spot / strike) + (rate + volatility * volatility / 2) * years) / spread;
    const auto normal = [](double x) { return std::erfc(-x / std::sqrt(2.0)) / 2; };
    return spot * normal(d1) - strike * std::exp(-rate * years) * normal(d1 - spread);
  }
};

struct Sum {
  double n = 0, sum = 0, squares = 0;

  double mean() const { return sum / n; }
  double deviation() const { return std::sqrt((squares / n - mean() * mean()) / n); }
};

// Discounted payoffs at the end of n paths.
void simulate(const Option& option, Stream& stream, int n, Sum& payoffs) {
  const double drift = (option.rate - option.volatility * option.volatility / 2) * option.years;
  const double spread = option.volatility * std::sqrt(option.years),
               discount = std::exp(-option.rate * option.years);
  std::vector<double> growth(2 * kBlock);
  for (int done = 0; done < n; done += 2 * kBlock) {
    stream.gaussian(growth, drift, spread);
    for (double factor : front::exp(growth)) {
      const double payoff = discount * std::fmax(option.spot * factor - option.strike, 0);
      payoffs.sum += payoff;
      payoffs.squares += payoff * payoff;
    }
    payoffs.n += 2 * kBlock;
  }
}

std::vector<Stream> sub_generators() {
  std::vector<Stream> streams;
  for (int k = 0; k < kStreams; ++k) streams.emplace_back(KOB_BRNG_MT2203 + k, 27182818 + k);
  return streams;
}

void option_price() {
  const Option option;
  const double exact = option.black_scholes();
  std::printf("\nA call option by %d sub-generators of MT2203; the formula of Black and Scholes gives %.5f\n",
              kStreams, exact);
  std::printf("       paths      price     error   one deviation   in deviations\n");
  std::vector<Stream> streams = sub_generators();
  Sum payoffs;
  int done = 0;
  for (int paths = 2 * kStreams * kBlock; paths <= 2000 * kStreams * kBlock; paths *= 10) {
    for (Stream& stream : streams) simulate(option, stream, (paths - done) / kStreams, payoffs);
    done = paths;
    std::printf("  %10d   %8.5f  %+.5f         %.5f           %+5.2f\n", paths, payoffs.mean(),
                payoffs.mean() - exact, payoffs.deviation(), (payoffs.mean() - exact) / payoffs.deviation());
  }
}

void broken_off() {
  const Option option;
  constexpr int kHalf = 500 * kBlock;
  Sum unbroken, resumed;
  for (Stream& stream : sub_generators()) {
    simulate(option, stream, kHalf, unbroken);
    simulate(option, stream, kHalf, unbroken);
  }
  size_t bytes = 0;
  for (Stream& stream : sub_generators()) {
    simulate(option, stream, kHalf, resumed);
    const std::vector<unsigned char> image = stream.image();
    bytes += image.size();
    Stream loaded(image);
    simulate(option, loaded, kHalf, resumed);
  }
  std::printf("\nThe same, broken off half-way, the %d streams saved in %zu bytes and loaded again\n",
              kStreams, bytes);
  std::printf("  in one go %.15f\n  resumed   %.15f   %s\n", unbroken.mean(), resumed.mean(),
              unbroken.mean() == resumed.mean() ? "the same to the last bit" : "DIFFERENT");
}

// ---- a queue ----

// One server; customers arrive at random, services take gamma times. A customer waits for what the one before found and
// brought, less the time between the two (Lindley). The formula of Pollaczek and Khinchine gives the mean exactly.
void queue() {
  constexpr double between = 1, shape = 2.5, load = 0.7, scale = load * between / shape;
  const double exact = shape * (shape + 1) * scale * scale / (2 * between * (1 - load));
  std::printf(
      "\nWaiting in a queue of load %.1f with gamma services; the formula of Pollaczek and Khinchine gives "
      "%.5f\n",
      load, exact);
  std::printf("   customers       wait     error\n");
  Stream arrivals(KOB_BRNG_MT2203, 1), services(KOB_BRNG_MT2203 + 1, 2);
  std::vector<double> gaps(1000), times(1000);
  double wait = 0, sum = 0;
  int served = 0;
  for (int customers = 10000; customers <= 10000000; customers *= 10) {
    for (; served < customers; served += int(gaps.size())) {
      arrivals.exponential(gaps, between);
      services.gamma(times, shape, scale);
      for (size_t i = 0; i < gaps.size(); ++i) {
        sum += wait;
        wait = std::fmax(wait + times[i] - gaps[i], 0);
      }
    }
    std::printf("  %10d   %8.5f  %+.5f\n", customers, sum / customers, sum / customers - exact);
  }
}

}  // namespace

void monte_carlo(const std::string&) {
  const front::Mode mode(TEF_LA);
  pi();
  option_price();
  broken_off();
  queue();
}
