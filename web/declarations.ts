// What dsp.js offers. The contract of each routine stands in dsp.h, under its name with the prefix.

/** A signal, or its samples. */
export type Samples = Signal | ArrayLike<number>;
/** A constant of dsp.h by value or by name in any case; of several flags, | or a comma between them. */
export type Choice = number | string;
export interface Complex { re: number; im: number }
export interface Out { out?: Signal }
export interface Spacing { dx?: number }

/** A routine refused its arguments, or memory ran out: the message says which. */
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

interface Owner {
  free(): void;
  [Symbol.dispose](): void;
}
interface Filter extends Owner {
  filter(x: Samples, options?: Out): Signal;
  reset(): void;
}

export interface Dsp {
  /** The routines as C has them. */
  readonly lib: Record<string, (...args: number[]) => number>;
  version(): [number, number];
  free_internal(): void;
  /** A signal of samples; `complex` ones are re, im, re, im ... */
  signal(samples: Samples, options?: Spacing & { complex?: boolean }): Signal;
  append(x: Samples, y: Samples): Signal;
  cmp(x: Samples, y: Samples, tolerance?: number): number;

  // The rows of routines.js.

  window(x: Samples, window: Choice, flags?: Choice, options?: Out & { active?: number }): Signal;
  window_cos(x: Samples, coefficients: Samples, options?: Out): Signal;
  window_scale(window: Choice, length: number, kind?: Choice): number;
  window_enbw(window: Choice, length: number): number;
  corr(ref: Samples, x: Samples, options?: { m?: number; halve?: boolean }): Signal;
  peak(x: Samples, how?: Choice, options?: { index?: number }): { value: number; position: number; place: number; clamped: boolean };
  lin_regres(x: Samples): { slope: number; intercept: number };
  lin_regres2(x: Samples): Record<string, number>;
  solve(coefficients: Samples, y?: number | Complex, options?: { all?: boolean }): Signal;

  fir(kind: Choice, length: number, f?: number, p?: number): Signal;
  fir2(kind: Choice): Signal;
  rsmp_cos(length: number, table: Samples): Signal;
  rsmp_pcos(length: number, table: Samples): Signal;
  interp(x: Samples, y: Samples, xq: Samples, mode?: Choice, options?: { d2?: Samples }): Signal;
  cspline(x: Samples, y: Samples, xq: Samples, options?: { d2?: Samples }): Signal;
  cspline_2d(x: Samples, y: Samples, left?: Choice | [Choice, number], right?: Choice | [Choice, number]): Signal;

  find_max(x: Samples, range?: { start?: number; stop?: number; skip?: [number, number] | null }): number;
  find_min(x: Samples, range?: { start?: number; stop?: number; skip?: [number, number] | null }): number;
  expand_linear(n: number, first: number, last: number): Signal;
  expand_log(n: number, first: number, last: number): Signal;
  scale_to_fp(x: Samples, lo: number, hi: number, out_lo: number, out_hi: number): Signal;
  scale_to_int(x: Samples, lo: number, hi: number, out_lo: number, out_hi: number): Int32Array;
  smooth(x: Samples, width: number, options?: { phase?: boolean }): Signal;
  format_buffer(x: Samples, format: Choice): Signal;
  unwrap_phase(x: Samples): Signal;
  get_fpscr(): number;
  set_fpscr(value: number): number;
  set_runfast(on: boolean): number;
  circle_fit(points: Samples): { centre: Complex; radius: number; rms: number };
  arc_interp(x: Samples, trace: Samples, xi: Samples): Signal;
  matrix_mult(a: Samples, b: Samples, m: number): Signal;
  invert(matrix: Samples): Signal;

  FirFilter: new (taps: Samples) => Filter;
  SymmetricFir: new (half: Samples, options?: { odd?: boolean; anti?: boolean }) => Filter;
  HalfBandFilter: new () => Filter;
  Decimator: new (factor: number) => Filter;
  FractionalResampler: new (step: number, table?: number | Samples, options?: { interp?: boolean }) => Owner & {
    convert(x: Samples, options?: Out & { most?: number }): Signal;
    reset(): void;
  };
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
// The constants of dsp.h.
export function choose(group: string, choice: Choice): number;
