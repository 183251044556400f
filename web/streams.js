// Streams: objects that are called block by block and carry what the next block needs. A record in blocks of any lengths
// is the record at once. free() gives their memory back at once.

import { Avg, choose } from "./names.js";

const dispose = Symbol.dispose ?? Symbol.for("Symbol.dispose");

/** Adds the classes of streams to the routines `r`. */
export function add_streams(r, { sized, made, changed }) {
  const { library } = r;
  const { c } = library;

  class Stream {
    constructor() {
      this.reset();
    }
    /** Silence before the next block. */
    reset() {
      this.state?.free();
      this.state = sized();
    }
    free() {
      for (const part of Object.values(this)) if (part instanceof r.Signal) part.free();
    }
    [dispose]() {
      this.free();
    }
    block(x, body, out) {
      return made([x], (a, o) => body(a, o, this.state.record), out);
    }
  }

  /** Filters by taps: len(x) samples each block. */
  class FirFilter extends Stream {
    constructor(taps) {
      super();
      this.taps = r.signal(taps);
    }
    filter(x, { out } = {}) {
      return this.block(x, (a, o, state) => c.dspd_fir(a, o, this.taps.record, state), out);
    }
  }

  /** FirFilter by the first half of its taps; `odd`: the last of them is the centre; `anti`: the mirrored are negated. */
  class SymmetricFir extends Stream {
    constructor(half, { odd = true, anti = false } = {}) {
      super();
      Object.assign(this, { half: r.signal(half), odd, anti });
    }
    filter(x, { out } = {}) {
      return this.block(x, (a, o, state) => c.dspd_sfir(a, o, this.half.record, this.odd, this.anti, state), out);
    }
  }

  /** The fixed recursive half-band lowpass: flat up to 0.18, closed from 0.3. */
  class HalfBandFilter extends Stream {
    filter(x, { out } = {}) {
      return this.block(x, (a, o, state) => c.dspd_hwfilt(a, o, 0, state), out);
    }
  }

  /** Keeps every `factor`-th sample of the stream; filter first. */
  class Decimator extends Stream {
    constructor(factor) {
      super();
      this.factor = factor;
    }
    filter(x, { out } = {}) {
      return this.block(x, (a, o, state) => c.dspd_deci(a, o, this.factor, state), out);
    }
  }

  /** Converts to a lower sample rate, by any ratio of input to output rate from 1 up, with the lowpasses it takes. */
  class Resampler {
    constructor(ratio, { mode = false } = {}) {
      const coef = library.allocate(256);
      const state = library.allocate(256);
      const scratch = (this.scratch = sized());
      Object.assign(this, { coef, state });
      c.dsph_rsmp_coef_init(coef);
      c.dsph_rsmp_state_init(state);
      const release = library.own(this, () => {
        c.dsph_rsmp_state_destroy(state);
        c.dsph_rsmp_coef_destroy(coef);
        c.free(state);
        c.free(coef);
      });
      this.free = () => (release(), scratch.free());
      c.dsph_rsmp_coef_alloc(coef, 0);
      c.dsph_rsmp_coef_setup(coef, 0, ratio, mode, 0);
      this.reset();
    }
    [dispose]() {
      this.free();
    }
    /** Begins a stream, which is real or complex by its first block. */
    reset() {
      this.is_complex = undefined;
    }
    convert(x, { out } = {}) {
      if (this.is_complex === undefined) {
        this.is_complex = x.is_complex ?? false;
        c.dsph_rsmp_state_alloc(this.coef, this.state, this.is_complex);
        c.dsph_rsmp_state_reset(this.coef, this.state);
      }
      if ((x.is_complex ?? false) !== this.is_complex) throw new TypeError("real and complex blocks in one stream");
      return made([x], (a, o) => c.dsph_rsmp(a, o, this.scratch.record, this.coef, this.state), out);
    }
  }

  /** A running average of spectra, or of any signals of one length. `mode` is one of the names of Avg, with "power" for
   * squared magnitudes and "limit" for exponential averaging from count `limit` on. */
  class Average {
    constructor(mode = "mean, power", { weight = -1, limit = 0, period = 0 } = {}) {
      Object.assign(this, { mode: choose(Avg, mode), weight, limit, period, count: 0, average: sized(), work: sized() });
    }
    reset() {
      this.count = 0;
    }
    add(x) {
      c.dsph_avg(x.record, this.average.record, this.work.record, this.mode, this.count + 1, this.period, this.weight,
        this.limit); // prettier-ignore
      this.count += 1;
      return this;
    }
    /** The average so far, a copy. */
    result() {
      return r.signal(this.average);
    }
    free() {
      this.average.free();
      this.work.free();
    }
    [dispose]() {
      this.free();
    }
  }

  /** The error terms of a reflectometer, from three standards: how they were measured and what they are, each a complex
   * signal over frequency. */
  class OnePort {
    constructor(measured, actual) {
      const terms = measured.map((g) => r.rtoc(g));
      const known = actual.map((a) => r.rtoc(a));
      const length = terms[0].length;
      if (terms.length !== 3 || known.length !== 3 || [...terms, ...known].some((s) => s.length !== length))
        throw new TypeError("a calibration takes three standards of equal length, measured and actual");
      c.Compute1PortTerms(...terms.map((s) => s.address), ...known.map((s) => s.address), 0, length);
      for (const s of known) s.free();
      [this.directivity, this.source_match, this.reflection_tracking] = terms;
    }
    /** Reflection coefficients as they are, from those that were measured. */
    correct(measured) {
      const through = r.sub(r.rtoc(measured), this.directivity);
      const divisor = r.mul(this.source_match, through);
      return r.div(through, r.add(this.reflection_tracking, divisor, { out: divisor }), { out: through });
    }
    free() {
      for (const term of [this.directivity, this.source_match, this.reflection_tracking]) term.free();
    }
    [dispose]() {
      this.free();
    }
  }

  return Object.assign(r, { FirFilter, SymmetricFir, HalfBandFilter, Decimator, Resampler, Average, OnePort });
}
