// Measures the errors of the library against references in wider numbers, and prints a page of them.
#include <cstdio>
#include <cstring>

#include "bench/accuracy/report.h"
#include "dsp/simd/isa.h"

namespace accuracy {

void heading(const std::string &title, const std::string &text) {
  std::printf("\n## %s\n\n%s\n", title.c_str(), text.c_str());
}

void row(const cells &line) {
  for (const std::string &cell : line) std::printf("| %s ", cell.c_str());
  std::printf("|\n");
  std::fflush(stdout);
}

void table(const cells &head) {
  std::printf("\n");
  row(head);
  cells rule(head.size(), "---:");
  rule[0] = "---";
  row(rule);
}

void held_by(const std::string &test_names) { std::printf("\nHeld by %s.\n", test_names.c_str()); }

std::string figure(double value) {
  if (std::isnan(value)) return "-";
  if (value == 0) return "0";
  char text[32];
  const bool plain = value > 0.0095 && value < 1e5;
  const int decimals = plain ? std::max(0, 1 - static_cast<int>(std::floor(std::log10(value)))) : 0;
  std::snprintf(text, sizeof text, plain ? "%.*f" : "%.*e", plain ? decimals : 1, value);
  return text;
}

}  // namespace accuracy

namespace {

const struct {
  const char *name;
  void (*measure)();
} parts[] = {
    {"transforms", accuracy::transforms}, {"roots", accuracy::roots},     {"functions", accuracy::functions},
    {"generators", accuracy::generators}, {"windows", accuracy::windows}, {"statistics", accuracy::statistics},
    {"zeros", accuracy::zeros},           {"filters", accuracy::filters}, {"conversion", accuracy::conversion}};

}  // namespace

// accuracy [PART...]: all without one.
int main(int argc, char **argv) {
  if (argc == 1)
    std::printf(R"(# Accuracy

The errors of the routines, measured by a program of this tree against references with 64 bits or more;
`scripts/bench --accuracy` writes this page anew. A double has 53 bits: eps is 2^-52, the step from 1 to the next double.
An ulp is the same step at the value in question: a correctly rounded result is off by at most 0.5 ulp. Beside our
figures are those of another library, or of the C library's function, on the same data. Arithmetic, statistics,
interpolation, calibration and traces give the same bits on every processor. Below each table are the tests that fail if
its figures grow. Ripple and rejection of filters and sample-rate conversion are in [filters.md](filters.md).
)");
  for (const auto &part : parts) {
    bool wanted = argc == 1;
    for (int i = 1; i < argc; ++i) wanted |= std::strcmp(argv[i], part.name) == 0;
    if (wanted) part.measure();
  }
  return 0;
}
