// Streams: objects that are called block by block and carry what the next block needs. A record in blocks of any
// lengths is the record at once. free() gives their memory back at once.

import { filled, is_signal, parameters, record_of, require } from "./calls.js";
import { one_length } from "./routines.js";
import { DspError, dispose, Signal } from "./signal.js";

/** Classes of filters: what they are made of, and their routine with its arguments behind block and output. */
export const filters = [
  /** Filters by taps. */
  ["FirFilter", "taps: Samples", ({ taps, state }) => ["dspd_fir", taps, state]],
  /** FirFilter by the first half of its taps; `odd`: the last is the centre; `anti`: the mirrored are negated. */
  ["SymmetricFir", "half: Samples, odd: boolean = true, anti: boolean = false",
    ({ half, odd, anti, state }) => ["dspd_sfir", half, odd, anti, state]],
  /** The fixed recursive half-band lowpass: flat up to 0.18, closed from 0.3. */
  ["HalfBandFilter", "", ({ state }) => ["dspd_hwfilt", 0, state]],
  /** Keeps every `factor`-th sample of the stream; filter first. */
  ["Decimator", "factor: integer", ({ factor, state }) => ["dspd_deci", factor, state]],
]; // prettier-ignore

const block = parameters("x: Samples");
const points = parameters("z: Points");
const kernel_lengths = [8194, 13314, 2050, 10242, 13314];

/** A kernel table begins with its number of taps. */
const is_table = ({ is_complex, length, samples: [taps] }) =>
  (is_complex || !(taps >= 0.5 && taps < 2 ** 20 && length >= 2 && (length - 2) % Math.round(taps) === 0)) &&
  `takes a table of rsmp, rsmp_cos or rsmp_pcos, got ${length} samples that begin with ${taps}`;

function require_finite_from(least, routine, what, value) {
  if (!(value >= least && value < Infinity))
    throw new DspError(routine, `a resampler takes a finite ${what} of ${least} or more, got ${value}`);
}

/** The classes, by name, for the routines `r`. */
export function streams(calls, r) {
  const { library } = calls;

  /** What has signals, which free() frees, made of arguments as a signature tells them. */
  class Owner {
    constructor(name, signature, given) {
      const expected = parameters(signature);
      calls.taking(name, expected, given, [], (values) => {
        expected.forEach((p, i) => (this[p.name] = is_signal(p.type) ? calls.signal(values[i]) : values[i]));
      });
    }
    free() {
      for (const part of Object.values(this)) if (part instanceof Signal) part.free();
    }
    [dispose]() {
      this.free();
    }
  }

  class Stream extends Owner {
    constructor(...args) {
      super(...args);
      this.reset();
    }
    /** Silence before the next block. */
    reset() {
      this.state?.free();
      this.state = calls.sized();
    }
    /** A block through a routine, whose arguments behind the block and the output `call` tells. */
    process(given, call, expected = block) {
      return calls.taking("a stream", expected, given, ["out"], ([x, ...more], { out }, lent) => {
        if (x === out) lent.push((x = calls.signal(out)));
        return filled(out ?? calls.sized(), !out, (result) => {
          const [routine, ...args] = call(x, result, ...more);
          library.run(routine, ...[x, result, ...args].map(record_of));
        });
      });
    }
  }

  const filter = ([name, signature, call]) =>
    class extends Stream {
      constructor(...given) {
        super(name, signature, given);
      }
      filter(...given) {
        return this.process(given, () => call(this));
      }
    };

  /** One output every `step` samples, 0 or more, through a kernel: one of the built-in kinds 0 to 4, or a table of
   * rsmp, rsmp_cos or rsmp_pcos. Nothing is filtered: frequencies above the output's Nyquist frequency alias. */
  class FractionalResampler extends Stream {
    constructor(step, table = 4, ...options) {
      require_finite_from(0, "dspd_rsmp", "step", step);
      const kernel = typeof table === "number" ? r.rsmp(kernel_lengths[table] ?? 0, table) : table;
      super("FractionalResampler", "step, table: Samples, interp: boolean = true", [step, kernel, ...options]);
      require("FractionalResampler", "dspd_rsmp", [is_table], [this.table]);
    }
    /** At most `most` outputs, of which a step of 0 takes a number; the others come first in the next block. */
    convert(...given) {
      const { step, interp, table, state } = this;
      const call = (x, out, most = step > 0 ? (x.length + table.samples[0]) / step + 2 : 0) => {
        out.length = Math.min(most, 2 ** 30);
        return ["dspd_rsmp", interp, table, step, state];
      };
      return this.process(given, call, parameters("x: Samples, most: count = none"));
    }
  }

  /** Converts to a lower sample rate, by any ratio of input to output rate from 1 up, with the lowpasses it takes. */
  class Resampler extends Stream {
    #release;
    constructor(...given) {
      super("Resampler", "ratio, mode: boolean = false", given);
      require_finite_from(1, "dsph_rsmp_coef_setup", "ratio", this.ratio);
      const { exports } = library;
      const [coef, conversion] = [library.allocate(256), library.allocate(256)];
      exports.dsph_rsmp_coef_init(coef);
      exports.dsph_rsmp_state_init(conversion);
      this.#release = library.own(this, () => {
        exports.dsph_rsmp_state_destroy(conversion);
        exports.dsph_rsmp_coef_destroy(coef);
        exports.free(conversion);
        exports.free(coef);
      });
      Object.assign(this, { coef, conversion });
      library.run("dsph_rsmp_coef_alloc", coef, 0);
      library.run("dsph_rsmp_coef_setup", coef, 0, this.ratio, this.mode, 0);
    }
    free() {
      super.free();
      this.#release();
    }
    /** Begins a stream, which is real or complex by its first block. */
    reset() {
      super.reset();
      this.is_complex = undefined;
    }
    convert(...given) {
      const { coef, conversion, state: scratch } = this;
      return this.process(given, (x) => {
        const begins = this.is_complex === undefined;
        if (!begins && x.is_complex && !this.is_complex)
          throw new DspError("dsph_rsmp", "a real stream takes real blocks, got a complex one; reset() begins another");
        if (begins) library.run("dsph_rsmp_state_alloc", coef, conversion, x.is_complex);
        if (begins) library.run("dsph_rsmp_state_reset", coef, conversion);
        this.is_complex ??= x.is_complex;
        return ["dsph_rsmp", scratch, coef, conversion];
      }, this.is_complex ? points : block); // prettier-ignore
    }
  }

  /** A running average of spectra, or of any signals of one length. `mode` is one of the names of Avg, with "power" for
   * squared magnitudes, as is meant without it, and "limit" for exponential averaging from count `limit` on. */
  class Average extends Owner {
    constructor(...given) {
      super("Average", "mode: Avg = 33, weight = -1, limit = 0, period: integer = 0", given);
      Object.assign(this, { count: 0, average: calls.sized(), work: calls.sized() });
    }
    reset() {
      this.count = 0;
    }
    add(...given) {
      return calls.taking("Average", block, given, [], ([x]) => {
        const { average, work, mode, count, period, weight, limit } = this;
        if (count > 0) require("Average", "dsph_avg", [one_length], [x, average]);
        library.run("dsph_avg", x.record, average.record, work.record, mode, count + 1, period, weight, limit);
        this.count += 1;
        return this;
      });
    }
    /** The average so far, a copy. */
    result() {
      return calls.signal(this.average);
    }
  }

  /** The error terms of a reflectometer, from three standards: how they were measured and what they are, each a complex
   * signal over frequency. */
  class OnePort extends Owner {
    constructor(measured, actual) {
      if (measured?.length !== 3 || actual?.length !== 3)
        throw new TypeError("a calibration takes three standards, measured and actual");
      const names = ["directivity", "source_match", "reflection_tracking"];
      super("OnePort", names.map((name) => `${name}: Points`).join(", "), measured);
      calls.taking("OnePort", parameters("a: Points, b: Points, c: Points"), [...actual], [], (known) => {
        const all = [...names.map((name) => this[name]), ...known];
        for (const x of all) require("OnePort", "Compute1PortTerms", [one_length], [x, all[0]]);
        library.run("Compute1PortTerms", ...all.map((x) => x.address), 0, all[0].length);
      });
    }
    /** Reflection coefficients as they are, from those that were measured. */
    correct(...given) {
      return calls.taking("correct", points, given, [], ([z]) => {
        require("correct", "Compute1PortTerms", [one_length], [z, this.directivity]);
        const through = r.sub(z, this.directivity);
        const divisor = r.mul(this.source_match, through);
        r.add(this.reflection_tracking, divisor, { out: divisor });
        r.div(through, divisor, { out: through });
        divisor.free();
        return through;
      });
    }
    /** The reverse: what the reflectometer measures of reflection coefficients. */
    distort(...given) {
      return calls.taking("distort", points, given, [], ([z]) => {
        const through = r.mul(this.reflection_tracking, z);
        const divisor = r.mul(this.source_match, z);
        r.offset(r.neg(divisor, { out: divisor }), 1, { out: divisor });
        r.div(through, divisor, { out: through });
        divisor.free();
        return r.add(this.directivity, through, { out: through });
      });
    }
  }

  const made = Object.fromEntries(filters.map((row) => [row[0], filter(row)]));
  return { ...made, FractionalResampler, Resampler, Average, OnePort };
}
