// The routines, a row each: the form of the call, their names here, their parameters, and what differs from the rule
// that the routine of dsp.h has the name with the form's prefix and takes the parameters that are no signals, in order.
//
// call    the routine and these arguments, of the parameters that are no signals, then the signals; of traced rows all
//         arguments, of the output and the parameters
// needs   conditions on the parameters' values: each says what is wrong, if anything, so that a call that fails after
//         them has run out of memory
// gives   what the function returns, of the output, the routine's status and the values; `type` declares it
// size    of a traced row's output: length, dx, is_complex

import { Peak, Window, Wnd, choose } from "./names.js";

export const one_length = (x, y) =>
  x.length !== y.length && `takes signals of one length, got ${x.length} and ${y.length} samples`;
const rising = (x) =>
  x.samples.some((v, i, all) => i > 0 && !(v > all[i - 1])) && "takes places that rise from one to the next";
const finite = (x) => !x.samples.every(Number.isFinite) && "takes finite numbers";

const power_of_two = ({ length: n }) => (n < 1 || (n & (n - 1)) !== 0) && `takes a power of two of samples, got ${n}`;
const power_of_two_or = (any) => (x) => power_of_two(x) && `${power_of_two(x)}; ${any} takes any length`;
const half_spectrum = ({ length: n }) =>
  (n < 1 || (n - 1) & (n - 2)) && `takes 1 bin or a power of two plus 1, got ${n}; irdft takes any number`;
const not_zero = (c) => c.length > 0 && c.samples.every((x) => x === 0) && "takes a coefficient that is not 0";
const too_large = "a zero is too large for a double, or memory ran out";

const one_padding = (x, length, mode) => (mode & 3) === 3 && "takes one of scaled, root_scaled and unscaled";
const one_scale = (...values) =>
  (values.at(-1) & Wnd.SCALE_MASK) === Wnd.SCALE_MASK
    ? "takes one of amplitude, power and raw"
    : values.at(-1) & Wnd.ACTIVE && "takes the number of active samples as `active`, not as a flag";

/** Windows of the catalogue, of which some have no active part and others no symmetric form. */
function exists(window, flags, active) {
  const is_sum = window !== Window.TRIANGULAR && window <= Window.P601;
  if (flags & Wnd.SYMMETRIC && (is_sum || window === Window.TRIANGULAR))
    return "takes symmetric Kaiser, Gauss and sinc lobe windows only; the others have a period";
  if (active === undefined) return one_scale(flags);
  if (!(active > 0)) return `takes more than 0 active samples, got ${active}`;
  return is_sum ? one_scale(flags) : "takes active samples of windows only that are sums of cosines";
}

const even = (length) => length % 2 !== 0 && `makes tables of even length, got ${length}`;
const odd_taps = (kind, length) =>
  (kind === 1 || kind === 2) && length % 2 === 0 && `takes an odd number of taps for this kind, got ${length}`;
const correlates = (ref, x, m = ref.length) => {
  const most = Math.min(ref.length, x.length);
  return !(m >= 1 && m <= most) && `takes 1 to ${most} samples of the reference, got ${m}`;
};
const enough_nodes = (x) => x.length < 4 && `takes 4 nodes or more, got ${x.length}`;
const same_nodes = (x, y, d2) => one_length(x, y) || (d2 && one_length(x, d2));

const is_y = ({ samples, is_complex }, { re, im }) =>
  samples.length > 0
    ? samples.every((v, i) => v === (i === 0 ? re : i === 1 && is_complex ? im : 0))
    : re === 0 && im === 0;
const complex = (y) => (typeof y === "object" ? y : { re: y, im: 0 });

const in_range = ({ length }, start, stop = length) =>
  !(start >= 0 && start <= stop && stop <= length) && `takes a range of ${length} points, got [${start}, ${stop})`;
const leaves_some = ({ length }, start, stop = length, skip) =>
  skip && skip[0] <= start && start < skip[1] && stop <= skip[1] && `finds nothing outside the band [${skip})`;
const found = (name) => ({
  call: (out, x, start, stop = x.length, skip) =>
    skip ? [`vfpd_${name}2`, x, start, stop, ...skip] : [`vfpd_${name}`, x, start, stop],
  needs: [in_range, leaves_some], gives: (out, index) => index, type: "number",
}); // prettier-ignore

const window_figure = {
  size: () => [1],
  needs: [(window, length, kind = 0, active) => exists(window, kind, active)],
  gives: ({ samples: [figure] }) => figure,
  type: "number",
};

const clipped = (x, lo, hi) => x.samples.some((v) => v < Math.min(lo, hi) || v > Math.max(lo, hi));

/** Numbers of a small result by name. */
const fields = (...keys) => ({
  gives: ({ samples }) => Object.fromEntries(keys.map((key, i) => [key, samples[i]])),
  type: `{ ${keys.map((key) => `${key}: number`).join("; ")} }`,
});
const regression = "slope intercept residual_var slope_var intercept_var cov corr x_slope x_intercept x_residual_var " +
  "x_slope_var x_intercept_var x_cov x_corr mean_x mean_y var_x var_y cov_xy r"; // prettier-ignore

const real = { type: "number" };
const status_word = { gives: (out, word) => word >>> 0, ...real };

/** The 32-bit integers that a routine has written in place of doubles, as many as there are samples. */
const integers = ({ samples }) => new Int32Array(samples.buffer, samples.byteOffset, samples.length).slice();

export const rows = [
  ["changed", "real imag rtoc conj neg recip sqrt square timesi zero phase rtop ptor exp exp10 log log10 rev sort"],
  ["changed", "differ integ pdiffer hilbert analytic zinter recon"],
  ["changed", "asin acos sinh cosh besy0 besy1", "x: Real"],
  ["changed", "db", "x: Samples, factor = 20"],
  ["changed", "offset scale", "x: Samples, by"],
  ["changed", "cscale", "x: Samples, re, im"],
  ["changed", "limit", "x: Samples, lo, hi",
    { call: (lo, hi) => ["dspi_limit", lo, hi, 0], before: clipped, gives: (signal, clipped) => ({ signal, clipped }),
      type: "{ signal: Signal; clipped: boolean }" }],
  ["changed", "addcos", "x: Samples, freq, amp = 1, phase = 0, both: boolean = false",
    { call: (freq, amp, phase, both) => ["dspi_addcos", both, freq, amp, phase] }],
  ["changed", "append", "x: Samples, y: Samples", { call: () => ["dsp_append"], records: (out, [, y]) => [out, y] }],
  ["changed", "shift", "x: Samples, k: integer"],
  ["changed", "swap_halves", "x: Samples, undo: boolean = false",
    { call: (undo) => [undo ? "dspi_swap_halves2" : "dspi_swap_halves"] }],
  ["changed", "zpad", "x: Samples, length: count, mode: Pad = unscaled",
    { call: (length, mode) => ["dspi_zpad2", length, mode], needs: [one_padding] }],
  ["changed", "unzpad", "x: Samples, length: count, mode: Pad = unscaled", { needs: [one_padding] }],
  ["changed", "orecon", "x: Samples, odd: boolean = true"],
  ["changed", "unwrap", "x: Real, window: count = 1", { call: (window) => ["dspi_unwrap_wnd", window] }],
  ["changed", "edge", "x: Real, level = 0, rising: boolean = true, falling: boolean = false",
    { call: (level, rising, falling) => ["dspi_edge", rising | (falling << 1), level] }],
  ["changed", "fft", "x: Samples", { call: () => ["dspi_fft", 0], needs: [power_of_two_or("dft")] }],
  ["changed", "ifft", "x: Samples", { call: () => ["dspi_fft", 1], needs: [power_of_two_or("idft")] }],
  ["changed", "rfft", "x: Real", { needs: [power_of_two_or("rdft")] }],
  ["changed", "irfft", "x: Samples", { needs: [half_spectrum] }],
  ["changed", "dft", "x: Samples", { call: () => ["dspi_dft", 0] }],
  ["changed", "idft", "x: Samples", { call: () => ["dspi_dft", 1] }],
  ["changed", "rdft", "x: Real"],
  ["changed", "irdft", "x: Samples, odd: boolean = false"],
  ["changed", "dct", "x: Real, normalised: boolean = false", { call: (normalised) => ["dspi_dct", normalised << 1] }],
  ["changed", "idct", "x: Real, normalised: boolean = false",
    { call: (normalised) => ["dspi_dct", 1 | (normalised << 1)] }],
  ["changed", "bitrev", "x: Samples, scale: boolean = false",
    { call: (scale) => [scale ? "dspi_bitrev_scale" : "dspi_bitrev"], needs: [power_of_two] }],
  ["changed", "roots", "c: Samples", { call: () => ["dspi_proots"], needs: [finite, not_zero], failure: too_large }],
  ["changed", "poly", "z: Samples", { call: () => ["dspi_pztoc"], needs: [finite] }],

  ["changed", "window", "x: Samples, window: Window, flags: Wnd = 0, active = none",
    { call: (window, flags, active) => active === undefined ? ["dspi_window", window, flags]
        : ["dspi_window2", window, flags | Wnd.ACTIVE, active],
      needs: [(x, ...window) => exists(...window)] }],
  ["changed", "window_gauss", "x: Samples, sigma, flags: Wnd = 0", { needs: [one_scale] }],
  ["changed", "window_kaiser", "x: Samples, beta, flags: Wnd = 0", { needs: [one_scale] }],
  ["changed", "window_tukey", "x: Samples, alpha, flags: Wnd = 0", { needs: [one_scale] }],
  ["changed", "window_sinc", "x: Samples, lobe = 3.141592653589793, peak = 1, flags: Wnd = 0", { needs: [one_scale] }],
  ["changed", "window_cos", "x: Samples, coefficients: Real"],
  ["changed", "window_fir", "x: Samples, window: Window"],
  ["traced", "window_scale", "window: Window, length: integer, kind: Wnd = 0, active = none",
    { ...window_figure, call: (out, window, length, kind, active) => active === undefined
        ? ["dsp_window_scale", out, window, kind, length]
        : ["dsp_window2_scale", out, window, kind | Wnd.ACTIVE, length, active] }],
  ["traced", "window_enbw", "window: Window, length: integer, active = none",
    { ...window_figure, needs: [(window, length, active) => exists(window, 0, active)],
      call: (out, window, length, active) => active === undefined
        ? ["dsp_window_enbw", out, window, length] : ["dsp_window2_enbw", out, window, length, active] }],

  ["made", "mag magsq"],
  ["made", "subvec", "x: Samples, start: integer, count: integer"],
  ["made", "hist", "x: Samples, start, bin_width, bins: count", { prefix: "dsps_" }],
  ["made", "spectrum", "x: Samples, window: Window = hann, flags: Spectrum = 0, n: integer = 0, fraction = 1",
    { call: (window, flags, n, fraction) => ["dsph_fft", n, fraction, window, flags] }],
  ["made", "spectrum_dft", "x: Samples, window: Window = hann, flags: Spectrum = 0",
    { call: (window, flags) => ["dsph_dft", window, flags] }],
  ["made", "solve", "c: Samples, y: Value = 0, all: boolean = false",
    { call: (y, all) => all ? ["dsps_pcsolve", complex(y).re, complex(y).im] : ["dsps_psolve", complex(y).re],
      needs: [
        (c, y, all) =>
          !all && (c.is_complex || complex(y).im !== 0) && "takes real numbers unless all solutions are asked for",
        (c, y) => finite(c) || (![complex(y).re, complex(y).im].every(Number.isFinite) && "takes a finite value"),
        (c, y) => is_y(c, complex(y)) && "takes an equation that not every number solves",
      ], failure: too_large }],

  ["paired", "add sub pmul", "x: Samples, y: Samples"],
  ["paired", "mul conj_mul div inter", "x: Samples, y: Samples", { needs: [one_length] }],
  ["paired", "maximum", "x: Samples, y: Samples", { call: () => ["dspb_max"], needs: [one_length] }],
  ["paired", "minimum", "x: Samples, y: Samples", { call: () => ["dspb_min"], needs: [one_length] }],
  ["paired", "avg_add", "x: Samples, average: Samples, weight", { needs: [one_length] }],
  ["paired", "ritoc", "re: Real, im: Real", { needs: [one_length] }],
  ["paired", "corr", "ref: Samples, x: Samples, m: integer = none, halve: boolean = false",
    { call: (m, halve, ref) => ["dspb_corr", m ?? ref.length, halve], needs: [correlates] }],
  ["paired", "interp", "x: Real, y: Real, xq: Real, mode: Interp = linear, d2: Real = none",
    { call: (mode) => ["dsp_interp", mode], records: (out, [x, y, xq, d2 = 0]) => [x, y, d2, xq, out],
      needs: [(x, y, xq, mode, d2) => same_nodes(x, y, d2) || ((mode & 7) === 5 && !d2 && enough_nodes(x)), rising] }],
  ["paired", "cspline", "x: Real, y: Real, xq: Real, d2: Real = none",
    { call: () => ["dsp_cspline"], records: (out, [x, y, xq, d2 = 0]) => [x, y, d2, xq, out],
      needs: [(x, y, xq, d2) => same_nodes(x, y, d2) || (!d2 && enough_nodes(x)), rising] }],
  /** Ends are "not_a_knot", "natural", ["clamped", slope] or ["second_derivative", value]. */
  ["paired", "cspline_2d", "x: Real, y: Real, left: End = not_a_knot, right: End = not_a_knot",
    { call: (...ends) => {
        const [[left, l = 0], [right, r = 0]] = ends.slice(0, 2).map((end) => [end].flat());
        return ["dspb_cspline_2d", l, r, choose("Spline", left), choose("Spline", right)];
      },
      needs: [one_length, enough_nodes, rising] }],

  ["reduced", "sum mean gmean hmean median max min"],
  ["reduced", "magsq_sum rms pop_var samp_var pop_stddev samp_stddev", "x: Samples", real],
  ["reduced", "skew excess", "x: Real", real],
  ["reduced", "peval", "c: Real, at", real],
  ["reduced", "dot", "x: Samples, y: Samples", { prefix: "dspbs_", needs: [one_length] }],
  ["reduced", "lin_regres", "x: Samples", fields("slope", "intercept")],
  ["reduced", "lin_regres2", "x: Samples", fields(...regression.split(" "))],
  ["reduced", "peak", "x: Samples, how: Peak = parabolic, index: integer = none",
    { call: (how, index) => ["dsps_peak", index === undefined ? how : how | Peak.AT_INDEX, index ?? 0],
      needs: [(x, how) =>
          (how & Peak.INTERP_MASK) > Peak.GAUSS_CORR && "takes one of no_interp, parabolic, gauss and gauss_corr"],
      fails: (status, out) => status === -1 && out.length < 2,
      gives: ({ samples: [value, position] }, status, { dx }) =>
        ({ value, position, place: position * dx, clamped: status === -1 }),
      type: "{ value: number; position: number; place: number; clamped: boolean }" }],

  ["generated", "line", "length: count, slope = 1, offset = 0"],
  ["generated", "cos", "length: count, freq, phase = 0"],
  ["generated", "cexp", "length: count, freq, phase = 0", { is_complex: true }],
  ["generated", "fir", "kind: Fir, length: count, f = 0, p = 0", { needs: [odd_taps] }],
  ["generated", "fir2", "kind: Fir2"],
  ["generated", "rsmp", "length: count, kind: integer",
    { needs: [even, (length, kind) => !(kind >= 0 && kind <= 4) && `takes a kernel from 0 to 4, got ${kind}`] }],
  ["generated", "rsmp_cos rsmp_pcos", "length: count, coefficients: Real", { needs: [even] }],

  ["traced", "cmp", "x: Samples, y: Samples, tolerance = 0",
    { size: () => [1], call: (out, x, y, tolerance) => ["dsp_cmp", x.record, y.record, tolerance, out],
      needs: [one_length], gives: (out) => integers(out)[0], ...real }],
  ["traced", "find_max", "x: Real, start: count = 0, stop: count = none, skip: Band = none", found("FindMax")],
  /** With `skip` null the first point is never looked at. */
  ["traced", "find_min", "x: Real, start: count = 0, stop: count = none, skip: Band = nothing", found("FindMin")],
  ["traced", "expand_linear", "n: count, first, last",
    { size: (n) => [n], call: (out, n, first, last) => ["vfpd_ExpandLinear", out, n, first, last] }],
  ["traced", "expand_log", "n: count, first, last",
    { size: (n) => [n], call: (out, n, first, last) => ["vfpd_ExpandLog", out, n, first, last],
      needs: [(n, first, last) => !(first > 0 && last > 0) && `takes an axis above 0, got ${first} to ${last}`] }],
  ["traced", "scale_to_fp", "x: Real, lo, hi, out_lo, out_hi",
    { size: (x) => [x.length, x.dx],
      call: (out, x, lo, hi, ...to) => ["vfpdb_ScaleToFP", x, x.length, lo, hi, out, ...to] }],
  ["traced", "scale_to_int", "x: Real, lo, hi, out_lo: integer, out_hi: integer",
    { size: (x) => [x.length],
      call: (out, x, lo, hi, ...to) => ["vfpdb_ScaleToInt", x, x.length, lo, hi, out, ...to],
      gives: integers, type: "Int32Array" }],
  /** A centred moving average; `phase`: the points are phases, unwrapped within each window. */
  ["traced", "smooth", "x: Samples, width: count, phase: boolean = false",
    { size: (x) => [x.length, x.dx, x.is_complex],
      call: (out, x, width, phase) => x.is_complex ? ["vfpd_SmoothCpx", x, out, x.length, 0, x.length, width]
        : ["vfpd_Smooth", x, out, x.length, 0, x.length, width, phase],
      needs: [(x, width, phase) => phase && x.is_complex && "takes real phases, got complex points",
        (x, width) => !(width >= 3 && width % 2 === 1) && `takes an odd width of 3 or more, got ${width}`] }],
  /** Complex points as "level" or "return_loss" (dB), "magnitude", "phase" (degrees) or "swr". */
  ["traced", "format_buffer", "z: Points, format: Format",
    { size: (z) => [z.length, z.dx], call: (out, z, format) => ["vfpd_FormatBuffer", format, z, out, 0, z.length] }],
  ["traced", "unwrap_phase", "z: Points",
    { size: (z) => [z.length, z.dx], call: (out, z) => ["vfpd_UnwrapPhase", z, 0, z.length, out] }],
  ["traced", "circle_fit", "z: Points",
    { size: () => [4], call: (out, z) => ["vfpd_CircleFit", z, 0, z.length, out, out.address + 16, out.address + 24],
      gives: ({ samples: [re, im, radius, rms] }) => ({ centre: { re, im }, radius, rms }),
      type: "{ centre: Complex; radius: number; rms: number }", failure: "no circle is near these points" }],
  /** A complex trace z, given at the places x, at the places xi along arcs. */
  ["traced", "arc_interp", "x: Real, z: Points, xi: Real",
    { size: (x, z, xi) => [xi.length, xi.dx, true],
      call: (out, x, z, xi) => ["CircularInterpolation", x, z, x.length, xi, out, xi.length],
      needs: [one_length, (x) => !(x.samples[0] <= Infinity) && "takes one place or more, and no NaN", rising] }],
  /** The product of complex matrices, whose samples lie row by row: of a, which has m rows, and b. */
  ["traced", "matrix_mult", "a: Points, b: Points, m: count",
    { size: (a, b, m) => [(b.length * m * m) / a.length, 1, true],
      call: (out, a, b, m) => ["MatrixMult", a, b, out, m, a.length / m, (b.length * m) / a.length],
      needs: [(a, b, m) => !(a.length % m === 0 && (b.length * m) % a.length === 0) &&
          `finds no product of ${a.length} elements in ${m} rows and ${b.length}`,
        (a, b, m) => a.length > m * m && `takes no more columns than rows on the left, got ${m} x ${a.length / m}`] }],
  /** The inverse of a square complex matrix, whose samples lie row by row. */
  ["traced", "invert", "matrix: Points",
    { size: (x) => [x.length, 1, true],
      call: (out, x) => (out.samples.set(x.samples), ["invert", out, Math.sqrt(x.length)]),
      needs: [(x) => !Number.isInteger(Math.sqrt(x.length)) && "takes a square matrix"],
      fails: (status) => status === 0, failure: "no square matrix that has an inverse: a pivot is below 2.2e-12" }],
  ["traced", "get_fpscr", "", { call: () => ["get_fpscr"], ...status_word }],
  ["traced", "set_fpscr", "value: number", { call: (out, value) => ["set_fpscr", value], ...status_word }],
  ["traced", "set_runfast", "on: boolean", { call: (out, on) => ["set_runfast", on], ...status_word }],
]; // prettier-ignore
