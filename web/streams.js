// Streams: objects that are called block by block and carry what the next block needs. A record in blocks of any lengths
// is the record at once. free() gives their memory back at once.

import { choose } from "./names.js";
import { one_length, real } from "./routines.js";
import { DspError } from "./signal.js";

const dispose = Symbol.dispose ?? Symbol.for("Symbol.dispose");

const kernel_lengths = [8194, 13314, 2050, 10242, 13314];

/** A kernel table begins with its number of taps. */
function is_table({ length, samples: [taps] }) {
  const fits = taps >= 0.5 && taps < 2 ** 20 && length >= 2 && (length - 2) % Math.round(taps) === 0;
  return !fits && `takes a table of rsmp, rsmp_cos or rsmp_pcos, got ${length} samples that begin with ${taps}`;
}

/** Adds the classes of streams to the routines `r`. */
export function add_streams(r, { sized, made, require }) {
  const { library } = r;
  const { c } = library;

  class Owner {
    free() {
      for (const part of Object.values(this)) if (part instanceof r.Signal) part.free();
    }
    [dispose]() {
      this.free();
    }
  }

  class Stream extends Owner {
    constructor(parts) {
      super();
      Object.assign(this, parts);
      this.reset();
    }
    /** Silence before the next block. */
    reset() {
      this.state?.free();
      this.state = sized();
    }
  }

  /** A class of filters: what its constructor keeps of its arguments, and how a block goes through. */
  const filter = (keep, run) =>
    class extends Stream {
      constructor(...args) {
        super(keep(...args));
      }
      filter(x, { out } = {}) {
        return made([x], (block, result) => run(this, block, result, this.state.record), { out });
      }
    };

  /** Filters by taps: len(x) samples each block. */
  const FirFilter = filter(
    (taps) => ({ taps: r.signal(taps) }),
    ({ taps }, x, out, state) => c.dspd_fir(x, out, taps.record, state),
  );

  /** FirFilter by the first half of its taps; `odd`: the last of them is the centre; `anti`: the mirrored are negated. */
  const SymmetricFir = filter(
    (half, { odd = true, anti = false } = {}) => ({ half: r.signal(half), odd, anti }),
    ({ half, odd, anti }, x, out, state) => c.dspd_sfir(x, out, half.record, odd, anti, state),
  );

  /** The fixed recursive half-band lowpass: flat up to 0.18, closed from 0.3. */
  const HalfBandFilter = filter(() => ({}), (_, x, out, state) => c.dspd_hwfilt(x, out, 0, state));

  /** Keeps every `factor`-th sample of the stream; filter first. */
  const Decimator = filter((factor) => ({ factor }), ({ factor }, x, out, state) => c.dspd_deci(x, out, factor, state));

  /** One output every `step` samples, 0 or more, through a kernel: one of the built-in kinds 0 to 4, or a table of rsmp,
   * rsmp_cos or rsmp_pcos. Nothing is filtered: frequencies above the output's Nyquist frequency alias. */
  class FractionalResampler extends Stream {
    constructor(step, table = 4, { interp = true } = {}) {
      if (!(step >= 0 && step < Infinity))
        throw new DspError("dspd_rsmp", `a resampler takes a finite step of 0 or more, got ${step}`);
      super({ step, interp, table: typeof table === "number" ? r.rsmp(kernel_lengths[table] ?? 0, table) : r.signal(table) });
      require("FractionalResampler", [real, is_table], [this.table]);
    }
    /** At most `most` outputs, of which a step of 0 takes a number; the others come first in the next block. */
    convert(x, { out = sized(), most = this.step > 0 ? (x.length + this.table.samples[0]) / this.step + 2 : 0 } = {}) {
      library.set_length(out.record, Math.min(most, 2 ** 30));
      const { step, interp, table, state } = this;
      return made([x], (block, result) => c.dspd_rsmp(block, result, interp, table.record, step, state.record), { out });
    }
  }

  /** Converts to a lower sample rate, by any ratio of input to output rate from 1 up, with the lowpasses it takes. */
  class Resampler extends Owner {
    constructor(ratio, { mode = false } = {}) {
      if (!(ratio >= 1 && ratio < Infinity))
        throw new DspError("dsph_rsmp_coef_setup", `a resampler takes a finite ratio of 1 or more, got ${ratio}`);
      super();
      const [coef, state] = [library.allocate(256), library.allocate(256)];
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
      return made([x], (a, o) => c.dsph_rsmp(a, o, this.scratch.record, this.coef, this.state), { out });
    }
  }

  /** A running average of spectra, or of any signals of one length. `mode` is one of the names of Avg, with "power" for
   * squared magnitudes and "limit" for exponential averaging from count `limit` on. */
  class Average extends Owner {
    constructor(mode = "mean, power", { weight = -1, limit = 0, period = 0 } = {}) {
      super();
      Object.assign(this, { mode: choose("Avg", mode), weight, limit, period, count: 0, average: sized(), work: sized() });
    }
    reset() {
      this.count = 0;
    }
    add(x) {
      if (this.count > 0) require("Average", [one_length], [x, this.average]);
      const { average, work, mode, count, period, weight, limit } = this;
      c.dsph_avg(x.record, average.record, work.record, mode, count + 1, period, weight, limit);
      this.count += 1;
      return this;
    }
    /** The average so far, a copy. */
    result() {
      return r.signal(this.average);
    }
  }

  /** The error terms of a reflectometer, from three standards: how they were measured and what they are, each a complex
   * signal over frequency. */
  class OnePort extends Owner {
    constructor(measured, actual) {
      super();
      const terms = measured.map((g) => r.rtoc(g));
      const known = actual.map((a) => r.rtoc(a));
      const { length } = terms[0];
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
  }

  const classes = { FirFilter, SymmetricFir, HalfBandFilter, Decimator, FractionalResampler, Resampler, Average, OnePort };
  return Object.assign(r, classes);
}
