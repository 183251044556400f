// What the programs compute, for the page: peaks and tones as dsp-spectrum and dsp-tone read them, Touchstone files and
// the simulated reflectometer of dsp-oneport. Plain C; a failure is -1, and bench_text() then says why.

#include <algorithm>
#include <cstring>
#include <exception>
#include <iterator>
#include <new>
#include <string>

#include "dsp/dsp.h"
#include "examples/support/peaks.h"
#include "examples/support/simulated_reflectometer.h"
#include "examples/support/tone_figures.h"
#include "examples/support/touchstone.h"

namespace {

using examples::reflection;
using examples::require;

std::string text;  // what the latest call tells

template <class Body>
int32_t told(Body body) {
  try {
    text = body();
    return 0;
  } catch (const std::bad_alloc &) {
    text = "memory ran out";
  } catch (const std::exception &e) {
    text = e.what();
  }
  return -1;
}

void resize(dsp_vec *v, std::size_t samples, uint32_t is_complex) {
  v->length = static_cast<int32_t>(samples);
  v->is_complex = is_complex;
  require(dsp_alloc(v), "get memory for a result");
}

}  // namespace

extern "C" {

const char *bench_text() { return text.c_str(); }

/** The strongest peaks of a spectrum in dB, as complex samples {bin, level}. */
int32_t bench_peaks(const dsp_vec *levels, int32_t window, int32_t block, int32_t most, dsp_vec *peaks) {
  return told([&] {
    examples::signal spectrum;
    require(dsp_copy(&spectrum, levels), "copy the spectrum");
    const examples::window_line line(static_cast<dsp_window_type>(window), block, 2 * (levels->length - 1));
    const double half_rate = levels->dx * (levels->length - 1);
    const auto found = examples::find_peaks(spectrum, line, 0.0, half_rate, most);
    resize(peaks, found.size(), 1);
    for (std::size_t i = 0; i < found.size(); ++i) {
      peaks->data[2 * i] = found[i].bin;
      peaks->data[2 * i + 1] = found[i].level;
    }
    return std::string();
  });
}

/** The figures of a tone: in the text a line each of name, value and unit between tabs. */
int32_t bench_tone(const dsp_vec *record) {
  return told([&] {
    examples::tone_settings settings{};
    settings.to = 0.5 / record->dx;
    std::string lines;
    for (const auto &l : examples::measure_tone(*record, settings).lines())
      lines += l.name + "\t" + l.value + "\t" + l.unit + "\n";
    return lines;
  });
}

/** Reads the text of a Touchstone file. */
int32_t bench_touchstone(const char *name, const char *content, dsp_vec *frequency, dsp_vec *s) {
  return told([&] {
    const reflection r = examples::parse_touchstone(name, content);
    resize(frequency, r.s.size(), 0);
    resize(s, r.s.size(), 1);
    std::copy(r.frequency.begin(), r.frequency.end(), frequency->data);
    std::memcpy(s->data, r.s.data(), r.s.size() * sizeof(dsp_complex));
    return std::string();
  });
}

/** Seven texts, a form feed after each: short, open and load as measured, the same as they are, and the device. */
int32_t bench_simulate(int32_t points) {
  return told([&] {
    reflection truth;
    const examples::calibration_set set = examples::simulate_reflectometer(points, 80.0, 1, &truth);
    std::string texts;
    const auto add = [&](const reflection &r) { texts += touchstone(r, examples::number_format::ri, "") + "\f"; };
    std::for_each(std::begin(set.measured), std::end(set.measured), add);
    std::for_each(std::begin(set.actual), std::end(set.actual), add);
    add(set.device);
    return texts;
  });
}
}
