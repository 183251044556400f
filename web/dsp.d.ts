// What dsp.js offers. The contract of each routine stands in dsp.h, under its name with the prefix.

/** A signal, or its samples. */
export type Samples = Signal | ArrayLike<number>;
/** A constant of dsp.h by value or by name in any case; of several flags, | or a comma between them. */
export type Choice = number | string;
export interface Complex { re: number; im: number }
export interface Out { out?: Signal }
export interface Spacing { dx?: number }

/** A routine refused its arguments, or memory ran out. */
export class DspError extends Error {
  readonly routine: string;
}

/** Samples `dx` apart, real or complex, in the library's memory. */
export class Signal {
  dx: number;
  readonly length: number;
  readonly is_complex: boolean;
  /** The samples where they are; re, im, re, im ... of a complex signal. Memory that grows detaches the array. */
  readonly samples: Float64Array;
  axis(centred?: boolean): Float64Array;
  free(): void;
  [Symbol.dispose](): void;
}

type Unary = "real" | "imag" | "rtoc" | "conj" | "neg" | "recip" | "sqrt" | "square" | "timesi" | "zero" | "phase" | "rtop"
  | "ptor" | "asin" | "acos" | "sinh" | "cosh" | "besy0" | "besy1" | "exp" | "exp10" | "log" | "log10" | "rev" | "sort"
  | "recon" | "differ" | "integ" | "pdiffer" | "rfft" | "irfft" | "rdft" | "hilbert" | "analytic" | "zinter" | "fft" | "ifft"
  | "dft" | "idft" | "mag" | "magsq";
type Binary = "add" | "sub" | "mul" | "conj_mul" | "div" | "pmul" | "ritoc" | "inter" | "maximum" | "minimum";
type Sum = "sum" | "mean" | "gmean" | "hmean" | "median" | "max" | "min";
type Statistic = "magsq_sum" | "rms" | "pop_var" | "samp_var" | "pop_stddev" | "samp_stddev" | "skew" | "excess";

interface Owner {
  free(): void;
  [Symbol.dispose](): void;
}
interface Filter extends Owner {
  filter(x: Samples, options?: Out): Signal;
  reset(): void;
}

export interface Dsp
  extends Record<Unary, (x: Samples, options?: Out & Spacing) => Signal>,
    Record<Binary, (x: Samples, y: Samples, options?: Out) => Signal>,
    Record<Sum, (x: Samples) => number | Complex>,
    Record<Statistic, (x: Samples) => number> {
  /** The routines as C has them. */
  readonly lib: Record<string, (...args: number[]) => number>;
  version(): [number, number];
  free_internal(): void;
  /** A signal of samples; `complex` ones are re, im, re, im ... */
  signal(samples: Samples, options?: Spacing & { complex?: boolean }): Signal;
  append(x: Samples, y: Samples): Signal;
  subvec(x: Samples, start: number, count: number): Signal;

  db(x: Samples, factor?: number, options?: Out): Signal;
  offset(x: Samples, by: number, options?: Out): Signal;
  scale(x: Samples, by: number, options?: Out): Signal;
  cscale(x: Samples, re: number, im: number, options?: Out): Signal;
  limit(x: Samples, lo: number, hi: number, options?: Out): Signal;
  addcos(x: Samples, freq: number, options?: { amp?: number; phase?: number; both?: boolean } & Out & Spacing): Signal;
  avg_add(x: Samples, average: Samples, weight: number, options?: Out): Signal;
  dot(x: Samples, y: Samples): number | Complex;
  shift(x: Samples, k: number): Signal;
  swap_halves(x: Samples, options?: Out & { undo?: boolean }): Signal;
  zpad(x: Samples, length: number, mode?: Choice): Signal;
  unzpad(x: Samples, length: number, mode?: Choice): Signal;
  orecon(x: Samples, odd?: boolean): Signal;
  unwrap(x: Samples, window?: number, options?: Out): Signal;
  edge(x: Samples, level?: number, options?: Spacing & { rising?: boolean; falling?: boolean }): Signal;
  line(length: number, slope?: number, offset?: number, options?: Spacing): Signal;
  cos(length: number, freq: number, phase?: number, options?: Spacing): Signal;
  cexp(length: number, freq: number, phase?: number, options?: Spacing): Signal;

  irdft(x: Samples, odd?: boolean, options?: Out): Signal;
  dct(x: Samples, options?: Out & { normalised?: boolean }): Signal;
  idct(x: Samples, options?: Out & { normalised?: boolean }): Signal;
  bitrev(x: Samples, options?: Out & { scale?: boolean }): Signal;

  window(x: Samples, window: Choice, flags?: Choice, options?: Out & { active?: number }): Signal;
  window_gauss(x: Samples, sigma: number, flags?: Choice, options?: Out): Signal;
  window_kaiser(x: Samples, beta: number, flags?: Choice, options?: Out): Signal;
  window_tukey(x: Samples, alpha: number, flags?: Choice, options?: Out): Signal;
  window_sinc(x: Samples, lobe?: number, peak?: number, flags?: Choice, options?: Out): Signal;
  window_cos(x: Samples, coefficients: Samples, options?: Out): Signal;
  window_fir(taps: Samples, window: Choice, options?: Out): Signal;
  window_scale(window: Choice, length: number, kind?: Choice): number;
  window_enbw(window: Choice, length: number): number;

  spectrum(x: Samples, window?: Choice, options?: Out & { flags?: Choice; n?: number; fraction?: number }): Signal;
  spectrum_dft(x: Samples, window?: Choice, options?: Out & { flags?: Choice }): Signal;
  corr(ref: Samples, x: Samples, options?: { m?: number; halve?: boolean }): Signal;

  hist(x: Samples, start: number, bin_width: number, bins: number): Signal;
  peak(x: Samples, how?: Choice, options?: { index?: number }): { value: number; position: number; place: number };
  peval(coefficients: Samples, x: number): number;
  lin_regres(x: Samples): { slope: number; intercept: number };

  fir(kind: Choice, length: number, f?: number, p?: number): Signal;
  fir2(kind: Choice): Signal;
  rsmp(length: number, kind: number): Signal;
  interp(x: Samples, y: Samples, xq: Samples, mode?: Choice, options?: { d2?: Samples }): Signal;
  cspline(x: Samples, y: Samples, xq: Samples, options?: { d2?: Samples }): Signal;
  format_buffer(x: Signal, format: Choice): Signal;
  unwrap_phase(x: Signal): Signal;

  FirFilter: new (taps: Samples) => Filter;
  SymmetricFir: new (half: Samples, options?: { odd?: boolean; anti?: boolean }) => Filter;
  HalfBandFilter: new () => Filter;
  Decimator: new (factor: number) => Filter;
  Resampler: new (ratio: number, options?: { mode?: boolean }) => Owner & { convert(x: Samples, options?: Out): Signal; reset(): void };
  Average: new (mode?: Choice, options?: { weight?: number; limit?: number; period?: number }) => Owner & {
    add(x: Signal): unknown;
    result(): Signal;
    reset(): void;
    readonly count: number;
  };
  OnePort: new (measured: Samples[], actual: Samples[]) => Owner & {
    readonly directivity: Signal;
    readonly source_match: Signal;
    readonly reflection_tracking: Signal;
    correct(measured: Samples): Signal;
  };
}

/** Loads the library: dsp.wasm beside the module, or its bytes, or a URL. */
export function load(source?: string | URL | BufferSource): Promise<Dsp>;

type Names = Readonly<Record<string, number>>;
export const Window: Names, Wnd: Names, Pad: Names, Spectrum: Names, Avg: Names, Peak: Names, Fir: Names, Fir2: Names,
  Interp: Names, Spline: Names, Format: Names;
export function choose(names: Names, choice: Choice): number;
