// Inputs for benchmarks: values drawn evenly from [-1, 1], the same for the same seed.
#pragma once

#include <cstddef>
#include <random>
#include <vector>

inline std::vector<double> noise(std::size_t n, unsigned seed = 1) {
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  std::vector<double> x(n);
  for (double &sample : x) sample = value(engine);
  return x;
}
