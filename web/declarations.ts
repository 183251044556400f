// What dsp.js offers. The contract of each routine stands in dsp.h, under its name with the prefix.
/// <reference lib="esnext.disposable" />

/** A signal, or its samples. */
export type Samples = Signal | ArrayLike<number>;
/** A constant of dsp.h by value or by name in any case; of several flags, | or a comma between them. */
export type Choice = number | string;
export interface Complex {
  re: number;
  im: number;
}
export type Value = number | Complex;
/** The end of a spline, with the value of its derivative where it takes one. */
export type End = Choice | [Choice, number];
/** Points from the first up to the last, which is no part of them; null: none. */
export type Band = [number, number] | null;
export interface Out {
  /** Takes the result, and may be an argument. */
  out?: Signal;
}
export interface Spacing {
  dx?: number;
}

/** A routine refused its arguments, or memory ran out: the message says which. */
export class DspError extends Error {
  /** Its name in dsp.h. */
  readonly routine: string;
}

/** Samples `dx` apart, real or complex, in the library's memory. */
export class Signal {
  private constructor();
  dx: number;
  readonly length: number;
  readonly is_complex: boolean;
  /** The samples where they are; re, im, re, im ... of a complex signal. Memory that grows detaches the array. */
  readonly samples: Float64Array;
  /** Where the samples stand: 0, dx, 2 dx, ...; `centred` for spectra whose frequency 0 is in the middle. */
  axis(centred?: boolean): Float64Array;
  free(): void;
  [Symbol.dispose](): void;
}

interface Owner {
  free(): void;
  [Symbol.dispose](): void;
}
interface Stream extends Owner {
  /** Silence before the next block. */
  reset(): void;
}
interface Filter extends Stream {
  filter(x: Samples, options?: Out): Signal;
}

export interface Dsp {
  /** The routines as C has them. */
  readonly lib: Record<string, (...args: number[]) => number>;
  version(): [number, number];
  free_internal(): void;
  /** A signal of samples; `complex` ones are re, im, re, im ... */
  signal(samples: Samples, options?: Spacing & { complex?: boolean }): Signal;

  // The rows of routines.js.

  // The filters of streams.js.
  FractionalResampler: new (step: number, table?: number | Samples, options?: { interp?: boolean }) => Stream & {
    convert(x: Samples, options?: Out & { most?: number }): Signal;
  };
  Resampler: new (ratio: number, options?: { mode?: boolean }) => Stream & {
    convert(x: Samples, options?: Out): Signal;
  };
  Average: new (mode?: Choice, options?: { weight?: number; limit?: number; period?: number }) => Stream & {
    add(x: Samples): unknown;
    result(): Signal;
    readonly count: number;
  };
  OnePort: new (measured: Samples[], actual: Samples[]) => Owner & {
    readonly directivity: Signal;
    readonly source_match: Signal;
    readonly reflection_tracking: Signal;
    correct(measured: Samples): Signal;
    distort(actual: Samples): Signal;
  };
}

/** Loads the library: dsp.wasm beside the module, or its bytes, or a URL. */
export function load(source?: string | { readonly href: string } | ArrayBuffer | ArrayBufferView): Promise<Dsp>;

type Names = Readonly<Record<string, number>>;
// The constants of dsp.h.
export function choose(group: string, choice: Choice): number;
