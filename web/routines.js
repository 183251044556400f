// Routines that are alike, a row each: how they are called, their names here, the parameters behind the samples, and
// what differs from the rule that the routine of dsp.h has the name with the kind's prefix and takes these parameters.
// `needs` are conditions: each says what is wrong with the samples, if anything, so that a call that fails after them
// has run out of memory.

export const real = (...signals) => signals.some((s) => s.is_complex) && "takes real samples, got complex ones";
export const one_length = (x, y) =>
  x.length !== y.length && `takes signals of one length, got ${x.length} and ${y.length} samples`;
export const rising = (x) =>
  x.samples.some((v, i, all) => i > 0 && !(v > all[i - 1])) && "takes places that rise from one to the next";
export const finite = (x) => !x.samples.every(Number.isFinite) && "takes finite numbers";

const power_of_two = ({ length: n }) => (n < 1 || n & (n - 1)) && `takes a power of two of samples, got ${n}`;
const power_of_two_or = (any) => (x) => power_of_two(x) && `${power_of_two(x)}; ${any} takes any length`;
const half_spectrum = ({ length: n }) =>
  (n < 1 || (n - 1) & (n - 2)) && `takes 1 bin or a power of two plus 1, got ${n}; irdft takes any number`;
const not_zero = (c) => c.length > 0 && c.samples.every((x) => x === 0) && "takes a coefficient that is not 0";

const [in_place, made, pair, number, number_of_two, generated] =
  ["in_place", "made", "pair", "number", "number_of_two", "generated"]; // prettier-ignore

/** The kinds, with the prefix of their routines. */
export const prefixes = { in_place: "dspi_", made: "dspu_", pair: "dspb_", number: "dsps_", number_of_two: "dspbs_", generated: "dspc_" };

export const rows = [
  [in_place, "real imag rtoc conj neg recip sqrt square timesi zero phase rtop ptor exp exp10 log log10 rev sort recon"],
  [in_place, "differ integ pdiffer hilbert analytic zinter"],
  [in_place, "asin acos sinh cosh besy0 besy1", "", { needs: [real] }],
  [in_place, "db", "factor = 20"],
  [in_place, "offset", "by"],
  [in_place, "scale", "by"],
  [in_place, "cscale", "re, im"],
  [in_place, "limit", "lo, hi", { args: (lo, hi) => [lo, hi, 0] }],
  [in_place, "addcos", "freq, amp = 1, phase = 0, both: boolean = false", { args: (f, amp, phase, both) => [both, f, amp, phase] }],
  [in_place, "shift", "k"],
  [in_place, "swap_halves", "undo: boolean = false", { routine: (undo) => (undo ? "dspi_swap_halves2" : "dspi_swap_halves"), args: () => [] }],
  [in_place, "zpad", "length, mode: Pad = unscaled", { routine: "dspi_zpad2" }],
  [in_place, "unzpad", "length, mode: Pad = unscaled"],
  [in_place, "orecon", "odd: boolean = true"],
  [in_place, "unwrap", "window = 1", { routine: "dspi_unwrap_wnd", needs: [real] }],
  [in_place, "edge", "level = 0, rising: boolean = true, falling: boolean = false",
    { args: (level, rising, falling) => [rising | (falling << 1), level], needs: [real] }],
  [in_place, "fft", "", { args: () => [0], needs: [power_of_two_or("dft")] }],
  [in_place, "ifft", "", { routine: "dspi_fft", args: () => [1], needs: [power_of_two_or("idft")] }],
  [in_place, "rfft", "", { needs: [real, power_of_two_or("rdft")] }],
  [in_place, "irfft", "", { needs: [half_spectrum] }],
  [in_place, "dft", "", { args: () => [0] }],
  [in_place, "idft", "", { routine: "dspi_dft", args: () => [1] }],
  [in_place, "rdft", "", { needs: [real] }],
  [in_place, "irdft", "odd: boolean = false"],
  [in_place, "dct", "normalised: boolean = false", { args: (n) => [n << 1], needs: [real] }],
  [in_place, "idct", "normalised: boolean = false", { routine: "dspi_dct", args: (n) => [1 | (n << 1)], needs: [real] }],
  [in_place, "bitrev", "scale: boolean = false",
    { routine: (scale) => (scale ? "dspi_bitrev_scale" : "dspi_bitrev"), args: () => [], needs: [power_of_two] }],
  [in_place, "window_gauss", "sigma, flags: Wnd = 0"],
  [in_place, "window_kaiser", "beta, flags: Wnd = 0"],
  [in_place, "window_tukey", "alpha, flags: Wnd = 0"],
  [in_place, "window_sinc", "lobe = 3.141592653589793, peak = 1, flags: Wnd = 0"],
  [in_place, "window_fir", "window: Window"],
  [in_place, "roots", "", { routine: "dspi_proots", needs: [finite, not_zero] }],
  [in_place, "poly", "", { routine: "dspi_pztoc", needs: [finite] }],

  [made, "mag magsq"],
  [made, "subvec", "start, count"],
  [made, "hist", "start, bin_width, bins", { routine: "dsps_hist" }],
  [made, "spectrum", "window: Window = hann, flags: Spectrum = 0, n = 0, fraction = 1",
    { routine: "dsph_fft", args: (window, flags, n, fraction) => [n, fraction, window, flags] }],
  [made, "spectrum_dft", "window: Window = hann, flags: Spectrum = 0", { routine: "dsph_dft" }],

  [pair, "add sub pmul"],
  [pair, "mul conj_mul div inter", "", { needs: [one_length] }],
  [pair, "maximum", "", { routine: "dspb_max", needs: [one_length] }],
  [pair, "minimum", "", { routine: "dspb_min", needs: [one_length] }],
  [pair, "avg_add", "weight", { needs: [one_length] }],
  [pair, "ritoc", "", { needs: [real, one_length] }],

  [number, "sum mean gmean hmean median max min magsq_sum rms pop_var samp_var pop_stddev samp_stddev"],
  [number, "skew excess", "", { needs: [real] }],
  [number, "peval", "at", { needs: [real] }],
  [number_of_two, "dot", "", { needs: [one_length] }],

  [generated, "line", "length, slope = 1, offset = 0"],
  [generated, "cos", "length, freq, phase = 0"],
  [generated, "cexp", "length, freq, phase = 0", { is_complex: true }],
  [generated, "rsmp", "length, kind"],
];

/** The parameters that a row tells: {name, type, otherwise}. */
export function parameters(signature = "") {
  return [...signature.matchAll(/(\w+)(?:: (\w+))?(?: = ([\w.]+))?/g)].map(([, name, type = "number", otherwise]) => {
    const plain = { true: 1, false: 0 }[otherwise] ?? otherwise;
    return { name, type, otherwise: Number.isNaN(Number(plain)) ? plain : Number(plain) };
  });
}
