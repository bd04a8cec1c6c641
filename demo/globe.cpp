// Places on the globe: distances and bearings of earthquakes by arc sines and arc tangents, and the length of the day by
// arc cosines, whose domain errors tell of polar days and nights.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <vector>

#include "chapters.h"
#include "csv.h"
#include "front.h"

namespace {

constexpr double kDegree = 0.017453292519943295;
constexpr double kEarthRadius = 6371.0;  // km, of the sphere with the Earth's volume

// f of every element, in the thread's accuracy class.
#define VECTOR_FUNCTION(name, Fn)                                                           \
  Column name(const Column& x) {                                                            \
    Column y(x.size());                                                                     \
    front::unary("vd" #Fn, orx_tef_kernel_d##Fn##_ttab, int(x.size()), x.data(), y.data()); \
    return y;                                                                               \
  }
VECTOR_FUNCTION(sines, Sin)
VECTOR_FUNCTION(cosines, Cos)
VECTOR_FUNCTION(arc_sines, Asin)
VECTOR_FUNCTION(arc_cosines, Acos)
#undef VECTOR_FUNCTION

Column angles(const Column& y, const Column& x) {
  Column angle(x.size());
  orx_tef_kernel_dAtan2_ttab[1](int(x.size()), y.data(), x.data(), angle.data());
  return angle;
}

template <class F>
Column each(size_t n, F f) {
  Column y(n);
  for (size_t i = 0; i < n; ++i) y[i] = f(i);
  return y;
}

struct Place {
  const char* name;
  double latitude, longitude;
};
constexpr Place kSuva = {"Suva", -18.14, 178.44};

// Great circles from one place to many.
struct Routes {
  Column distance, bearing;  // km; degrees from north to east
  double disagreement;       // the largest, in km, between two formulas for the distance

  Routes(const Place& from, const Column& latitude, const Column& longitude) {
    const size_t n = latitude.size();
    const double sin_from = std::sin(from.latitude * kDegree), cos_from = std::cos(from.latitude * kDegree);
    const Column phi = each(n, [&](size_t i) { return latitude[i] * kDegree; });
    const Column lambda = each(n, [&](size_t i) { return (longitude[i] - from.longitude) * kDegree; });
    const Column sin_phi = sines(phi), cos_phi = cosines(phi), sin_lambda = sines(lambda),
                 cos_lambda = cosines(lambda);

    // Half the chord is the sine of half the angle.
    const Column half_phi = sines(each(n, [&](size_t i) { return (phi[i] - from.latitude * kDegree) / 2; }));
    const Column half_lambda = sines(each(n, [&](size_t i) { return lambda[i] / 2; }));
    const Column half_angle = arc_sines(each(n, [&](size_t i) {
      return std::sqrt(half_phi[i] * half_phi[i] + cos_from * cos_phi[i] * half_lambda[i] * half_lambda[i]);
    }));
    distance = each(n, [&](size_t i) { return 2 * kEarthRadius * half_angle[i]; });

    // The place as seen from here: so much to the east and to the north, and so much straight down.
    const Column east = each(n, [&](size_t i) { return cos_phi[i] * sin_lambda[i]; });
    const Column north =
        each(n, [&](size_t i) { return cos_from * sin_phi[i] - sin_from * cos_phi[i] * cos_lambda[i]; });
    const Column up =
        each(n, [&](size_t i) { return sin_from * sin_phi[i] + cos_from * cos_phi[i] * cos_lambda[i]; });
    bearing = angles(east, north);
    for (double& b : bearing) b = b < 0 ? b / kDegree + 360 : b / kDegree;
    const Column angle = angles(each(n, [&](size_t i) { return std::hypot(east[i], north[i]); }), up);
    disagreement = 0;
    for (size_t i = 0; i < n; ++i)
      disagreement = std::max(disagreement, std::fabs(kEarthRadius * angle[i] - distance[i]));
  }
};

void earthquakes(const std::string& directory) {
  const auto table = read_csv(directory + "/quakes.csv", {"lat", "long", "depth", "mag", "stations"});
  const Column &latitude = table[0], &longitude = table[1], &depth = table[2], &magnitude = table[3];
  const Routes routes(kSuva, latitude, longitude);
  std::vector<size_t> order(latitude.size());
  std::iota(order.begin(), order.end(), size_t{0});
  const auto by_distance = [&](size_t i, size_t j) { return routes.distance[i] < routes.distance[j]; };
  const auto [nearest, farthest] = std::minmax_element(order.begin(), order.end(), by_distance);

  std::printf("\n%zu earthquakes near Fiji, by great circles from %s (%.2f, %.2f)\n", order.size(),
              kSuva.name, kSuva.latitude, kSuva.longitude);
  std::printf("  distances from %.0f to %.0f km; two formulas for them are at most %.1g mm apart\n",
              routes.distance[*nearest], routes.distance[*farthest], 1e6 * routes.disagreement);
  std::printf("  magnitude  latitude  longitude  depth, km  distance, km  bearing\n");
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t i, size_t j) { return magnitude[i] > magnitude[j]; });
  for (size_t i : order)
    if (magnitude[i] >= 6)
      std::printf("  %9.1f  %8.2f  %9.2f  %9.0f  %12.1f  %7.1f\n", magnitude[i], latitude[i], longitude[i],
                  depth[i], routes.distance[i], routes.bearing[i]);
}

// The sun's declination on a day counted from noon of 1 January 2000, to a hundredth of a degree (low-precision formula
// of the Astronomical Almanac).
Column declinations(const Column& day) {
  const size_t n = day.size();
  const Column anomaly =
      each(n, [&](size_t i) { return std::fmod(357.528 + 0.9856003 * day[i], 360) * kDegree; });
  const Column once = sines(anomaly), twice = sines(each(n, [&](size_t i) { return 2 * anomaly[i]; }));
  const Column along = sines(each(n, [&](size_t i) {
    return (280.460 + 0.9856474 * day[i] + 1.915 * once[i] + 0.020 * twice[i]) * kDegree;
  }));
  const double sin_obliquity = std::sin(23.439 * kDegree);
  return arc_sines(each(n, [&](size_t i) { return sin_obliquity * along[i]; }));
}

// The sun does not rise, or does not set: the arc cosine that is meant is 0 or pi.
int errors_of_acos;
int polar_day_or_night(TefErrorContext* error) {
  ++errors_of_acos;
  error->res1 = error->arg1 > 1 ? 0 : 180 * kDegree;
  return 0;
}

void day_length() {
  const std::vector<std::pair<const char*, double>> dates = {{"20 March 2024", 8845},
                                                             {"20 June 2024", 8937},
                                                             {"22 September 2024", 9031},
                                                             {"21 December 2024", 9121}};
  const std::vector<Place> places = {{"Quito", -0.18, 0},        {"Cairo", 30.04, 0},
                                     {"London", 51.51, 0},       {"Reykjavik", 64.15, 0},
                                     {"Longyearbyen", 78.22, 0}, {"Cape Town", -33.92, 0}};
  Column day;
  for (const auto& date : dates) day.push_back(date.second);
  const Column declination = declinations(day);
  const Column sin_delta = sines(declination), cos_delta = cosines(declination);
  const double sin_horizon = std::sin(-0.833 * kDegree);  // the sun's upper edge, lifted by refraction

  Column cos_of_arc;
  for (const Place& p : places)
    for (size_t j = 0; j < day.size(); ++j)
      cos_of_arc.push_back((sin_horizon - std::sin(p.latitude * kDegree) * sin_delta[j]) /
                           (std::cos(p.latitude * kDegree) * cos_delta[j]));
  errors_of_acos = 0;
  const front::Mode mode(TEF_ERRMODE_CALLBACK);
  _tefSetErrorCallBack(polar_day_or_night);
  const Column half_day = arc_cosines(cos_of_arc);
  _tefClearErrorCallBack();
  _tefClearErrStatus();

  std::printf("\nFrom sunrise to sunset, hours and minutes\n  %-14s", "");
  for (const auto& date : dates) std::printf("  %17s", date.first);
  for (size_t i = 0; i < half_day.size(); ++i) {
    if (i % day.size() == 0) std::printf("\n  %-14s", places[i / day.size()].name);
    const long minutes = std::lround(2 * half_day[i] / kDegree / 15 * 60);
    std::printf("  %11ld h %02ld m", minutes / 60, minutes % 60);
  }
  std::printf("\n  %d arc cosines of numbers beyond 1 or -1 were reported, and replaced by a callback\n\n",
              errors_of_acos);
}

}  // namespace

void globe(const std::string& data_directory) {
  earthquakes(data_directory);
  day_length();
}
