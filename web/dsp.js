// Measurement signals: spectra and windows, filters, sample-rate conversion, statistics, interpolation, calibration.
//
//     import { load } from "dsp";
//     const dsp = await load();
//     const s = dsp.spectrum(dsp.cos(1024, 123.4, 0, { dx: 1e-3 }), "gausstop");
//     dsp.peak(s, "gauss").place;                                       // 123.40 Hz
//
// Samples are signals, arrays, or what dsp.signal makes of arrays; results are signals. The names are those of dsp.h
// without their prefixes: the contract of each stands there. Nothing changes its arguments, but for `out`: the signal
// that takes the result, which may be the argument. A signal's memory goes back by free(), by `using`, or with it.

import * as names from "./names.js";
import { DspError, Library, Signal } from "./signal.js";
import { add_streams } from "./streams.js";

export { DspError, Signal };
export * from "./names.js";

const { Fir, Fir2, Format, Interp, Pad, Peak, Spectrum, Window, Wnd, choose } = names;

/** What the module asks of its surroundings: nothing that a library without files and clocks needs. */
const surroundings = new Proxy({}, { get: () => () => 0 });

/** Loads the library: dsp.wasm beside this file, or its bytes, or a URL. */
export async function load(source = new URL("dsp.wasm", import.meta.url)) {
  const bytes = source instanceof URL || typeof source === "string" ? await fetched(new URL(source, import.meta.url)) : source;
  const module = await WebAssembly.compile(bytes);
  const imports = {};
  for (const { module: from } of WebAssembly.Module.imports(module)) imports[from] = surroundings;
  const { exports } = await WebAssembly.instantiate(module, imports);
  exports._initialize();
  return routines(new Library(exports));
}

async function fetched(url) {
  if (url.protocol === "file:") return (await import("node:fs/promises")).readFile(url);
  const response = await fetch(url);
  if (!response.ok) throw new Error(`${url.pathname}: ${response.statusText}`);
  return response.arrayBuffer();
}

function routines(library) {
  const { c } = library;
  const sized = (length, dx, is_complex) => new Signal(library, length, dx, is_complex);

  /** A signal of samples: an array, or another signal to copy; `complex` ones are re, im, re, im ... */
  function signal(samples, { dx = samples.dx ?? 1, complex = false } = {}) {
    if (samples instanceof Signal) {
      const copy = sized(0);
      c.dsp_copy(copy.record, samples.record);
      return copy;
    }
    if (samples.length === undefined) throw new TypeError("samples are an array or a signal");
    const made = sized(complex ? samples.length >> 1 : samples.length, dx, complex);
    c.dsp_alloc(made.record);
    const doubles = made.samples;
    doubles.set(samples.length === doubles.length ? samples : samples.slice(0, doubles.length));
    return made;
  }

  /** Calls `body` with the records of samples; what was a signal only for the call is freed. */
  function lent(samples, body) {
    const spacing = samples.find((x) => x instanceof Signal)?.dx;
    const own = [];
    const record = (x) => {
      if (x instanceof Signal) return x.record;
      if (x == null) return 0;
      own.push(signal(x, { dx: x.dx ?? spacing ?? 1 }));
      return own.at(-1).record;
    };
    try {
      return body(...samples.map(record));
    } finally {
      for (const s of own) s.free();
    }
  }

  /** What `body` writes into the record given last; a signal that cannot be made is freed. */
  function made(samples, body, out = sized()) {
    try {
      lent(samples, (...records) => body(...records, out.record));
      return out;
    } catch (error) {
      if (out.length === 0) out.free();
      throw error;
    }
  }

  /** What a routine that works in place makes of a copy of x. */
  function changed(routine, x, { dx, out } = {}, ...args) {
    const work = out ?? sized();
    if (work !== x) lent([x], (record) => c.dsp_copy(work.record, record));
    if (dx !== undefined) work.dx = dx;
    try {
      routine(work.record, ...args);
    } catch (error) {
      if (!out) work.free();
      throw error;
    }
    return work;
  }

  function generated(routine, length, dx, is_complex, ...args) {
    const made = sized(length, dx, is_complex);
    routine(made.record, ...args);
    return made;
  }

  /** A signal of one sample as a number. */
  function number(s) {
    const [re, im] = s.samples;
    const value = s.is_complex ? { re, im } : re;
    s.free();
    return value;
  }

  const result = (routine) => {
    const out = library.allocate(8);
    try {
      routine(out);
      return library.view.getFloat64(out, true);
    } finally {
      c.free(out);
    }
  };

  /** Numbers of a small result by name. */
  function fields(s, ...keys) {
    const samples = s.samples.slice();
    s.free();
    return Object.fromEntries(keys.map((key, i) => [key, samples[i]]));
  }

  const r = { signal, Signal, library, lib: c };

  const in_place = "real imag rtoc conj neg recip sqrt square timesi zero phase rtop ptor asin acos sinh cosh besy0 besy1 " +
    "exp exp10 log log10 rev sort recon differ integ pdiffer rfft irfft rdft hilbert analytic zinter";
  for (const name of in_place.split(" ")) r[name] = (x, options) => changed(c[`dspi_${name}`], x, options);
  for (const name of ["add", "sub", "mul", "conj_mul", "div", "pmul", "ritoc", "inter"])
    r[name] = (x, y, { out } = {}) => made([x, y], c[`dspb_${name}`], out);
  const statistics = "sum mean gmean hmean median max min magsq_sum rms pop_var samp_var pop_stddev samp_stddev skew excess";
  for (const name of statistics.split(" ")) r[name] = (x) => number(made([x], c[`dsps_${name}`]));

  return add_streams(Object.assign(r, {
    version: () => [Math.floor(c.dsp_version() / 100), c.dsp_version() % 100],
    free_internal: () => void c.dsp_free_internal(),
    append: (x, y) => changed(c.dsp_append, x, {}, (y instanceof Signal ? y : signal(y)).record),
    subvec: (x, start, count) => made([x], (a, o) => c.dspu_subvec(a, o, start, count)),

    db: (x, factor = 20, o) => changed(c.dspi_db, x, o, factor),
    offset: (x, by, o) => changed(c.dspi_offset, x, o, by),
    scale: (x, by, o) => changed(c.dspi_scale, x, o, by),
    cscale: (x, re, im, o) => changed(c.dspi_cscale, x, o, re, im),
    limit: (x, lo, hi, o) => changed(c.dspi_limit, x, o, lo, hi, 0),
    addcos: (x, freq, { amp = 1, phase = 0, both = false, ...o } = {}) =>
      changed(c.dspi_addcos, x, o, both, freq, amp, phase),
    mag: (x, { out } = {}) => made([x], c.dspu_mag, out),
    magsq: (x, { out } = {}) => made([x], c.dspu_magsq, out),
    maximum: (x, y, { out } = {}) => made([x, y], c.dspb_max, out),
    minimum: (x, y, { out } = {}) => made([x, y], c.dspb_min, out),
    avg_add: (x, average, weight, { out } = {}) => made([x, average], (a, b, o) => c.dspb_avg_add(a, b, o, weight), out),
    dot: (x, y) => number(made([x, y], c.dspbs_dot)),
    shift: (x, k) => changed(c.dspi_shift, x, {}, k),
    swap_halves: (x, { undo = false, ...o } = {}) => changed(undo ? c.dspi_swap_halves2 : c.dspi_swap_halves, x, o),
    zpad: (x, length, mode = Pad.UNSCALED) => changed(c.dspi_zpad2, x, {}, length, choose(Pad, mode)),
    unzpad: (x, length, mode = Pad.UNSCALED) => changed(c.dspi_unzpad, x, {}, length, choose(Pad, mode)),
    orecon: (x, odd = true) => changed(c.dspi_orecon, x, {}, odd),
    unwrap: (x, window = 1, o) => changed(c.dspi_unwrap_wnd, x, o, window),
    edge: (x, level = 0, { rising = true, falling = false, ...o } = {}) =>
      changed(c.dspi_edge, x, o, rising | (falling << 1), level),
    line: (length, slope = 1, offset = 0, { dx = 1 } = {}) => generated(c.dspc_line, length, dx, false, slope, offset),
    cos: (length, freq, phase = 0, { dx = 1 } = {}) => generated(c.dspc_cos, length, dx, false, freq, phase),
    cexp: (length, freq, phase = 0, { dx = 1 } = {}) => generated(c.dspc_cexp, length, dx, true, freq, phase),

    fft: (x, o) => changed(c.dspi_fft, x, o, 0),
    ifft: (x, o) => changed(c.dspi_fft, x, o, 1),
    dft: (x, o) => changed(c.dspi_dft, x, o, 0),
    idft: (x, o) => changed(c.dspi_dft, x, o, 1),
    irdft: (x, odd = false, o) => changed(c.dspi_irdft, x, o, odd),
    dct: (x, { normalised = false, ...o } = {}) => changed(c.dspi_dct, x, o, normalised << 1),
    idct: (x, { normalised = false, ...o } = {}) => changed(c.dspi_dct, x, o, 1 | (normalised << 1)),
    bitrev: (x, { scale = false, ...o } = {}) => changed(scale ? c.dspi_bitrev_scale : c.dspi_bitrev, x, o),

    window: (x, window, flags = 0, { active, ...o } = {}) =>
      active === undefined
        ? changed(c.dspi_window, x, o, choose(Window, window), choose(Wnd, flags))
        : changed(c.dspi_window2, x, o, choose(Window, window), choose(Wnd, flags) | Wnd.ACTIVE, active),
    window_gauss: (x, sigma, flags = 0, o) => changed(c.dspi_window_gauss, x, o, sigma, choose(Wnd, flags)),
    window_kaiser: (x, beta, flags = 0, o) => changed(c.dspi_window_kaiser, x, o, beta, choose(Wnd, flags)),
    window_tukey: (x, alpha, flags = 0, o) => changed(c.dspi_window_tukey, x, o, alpha, choose(Wnd, flags)),
    window_sinc: (x, lobe = Math.PI, peak = 1, flags = 0, o) =>
      changed(c.dspi_window_sinc, x, o, lobe, peak, choose(Wnd, flags)),
    window_cos: (x, coefficients, o) => lent([coefficients], (record) => changed(c.dspi_window_cos, x, o, record)),
    window_fir: (taps, window, o) => changed(c.dspi_window_fir, taps, o, choose(Window, window)),
    window_scale: (window, length, kind = 0) =>
      result((out) => c.dsp_window_scale(out, choose(Window, window), choose(Wnd, kind), length)),
    window_enbw: (window, length) => result((out) => c.dsp_window_enbw(out, choose(Window, window), length)),

    spectrum: (x, window = "hann", { flags = 0, n = 0, fraction = 1, out } = {}) =>
      made([x], (a, o) => c.dsph_fft(a, o, n, fraction, choose(Window, window), choose(Spectrum, flags)), out),
    spectrum_dft: (x, window = "hann", { flags = 0, out } = {}) =>
      made([x], (a, o) => c.dsph_dft(a, o, choose(Window, window), choose(Spectrum, flags)), out),
    corr: (ref, x, { m = ref.length, halve = false } = {}) =>
      made([ref, x], (a, b, o) => c.dspb_corr(a, b, o, m, halve)),

    hist: (x, start, bin_width, bins) => made([x], (a, o) => c.dsps_hist(a, o, start, bin_width, bins)),
    peak: (x, how = "parabolic", { index } = {}) => {
      const flags = choose(Peak, how) | (index === undefined ? 0 : Peak.AT_INDEX);
      const found = fields(made([x], (a, o) => c.dsps_peak(a, o, flags, index ?? 0)), "value", "position");
      return { ...found, place: found.position * (x.dx ?? 1) };
    },
    peval: (coefficients, x) => number(made([coefficients], (a, o) => c.dsps_peval(a, o, x))),
    lin_regres: (x) => fields(made([x], c.dsps_lin_regres), "slope", "intercept"),

    fir: (kind, length, f = 0, p = 0) => generated(c.dspc_fir, length, 1, false, choose(Fir, kind), f, p),
    fir2: (kind) => generated(c.dspc_fir2, 0, 1, false, choose(Fir2, kind)),
    rsmp: (length, kind) => generated(c.dspc_rsmp, length, 1, false, kind),

    interp: (x, y, xq, mode = "linear", { d2 } = {}) =>
      made([x, y, d2, xq], (a, b, d, q, o) => c.dsp_interp(a, b, d, q, o, choose(Interp, mode))),
    cspline: (x, y, xq, { d2 } = {}) => made([x, y, d2, xq], c.dsp_cspline),

    /** Complex points as "level" or "return_loss" (dB), "magnitude", "phase" (degrees) or "swr". */
    format_buffer: (x, format) => {
      const out = r.real(x);
      c.vfpd_FormatBuffer(choose(Format, format), x.address, out.address, 0, x.length);
      return out;
    },
    unwrap_phase: (x) => {
      const out = r.real(x);
      c.vfpd_UnwrapPhase(x.address, 0, x.length, out.address);
      return out;
    },
  }), { sized, made, changed, lent });
}
