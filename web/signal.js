// Signals, and the library's memory in which they lie.

const record_bytes = 32; // dsp_vec: dx, then data, capacity, length, is_complex and reserved, 4 bytes each
const at = { data: 8, length: 16, is_complex: 20 };
const dispose = Symbol.dispose ?? Symbol.for("Symbol.dispose");

/** What a routine takes, where its refusal has a usual reason. */
const conditions = {
  dspi_fft: "a length that is a power of two", dspi_bitrev: "a length that is a power of two",
  dspi_rfft: "a real signal whose length is a power of two", dspi_irfft: "half a spectrum, 2^k + 1 complex bins",
  dspi_rdft: "a real signal", dspi_dct: "a real signal", dsps_skew: "a real signal", dsps_excess: "a real signal",
  dspi_unwrap_wnd: "a real signal and a window of 0 or more", dspi_edge: "a real signal",
  dspb_ritoc: "two real signals of equal length", dspb_corr: "1 to as many samples of the reference as both signals have",
  dspb_mul: "signals of equal length", dspb_div: "signals of equal length", dspb_conj_mul: "signals of equal length",
  dspb_max: "signals of equal length", dspb_min: "signals of equal length", dspbs_dot: "signals of equal length",
  dspb_inter: "signals of equal length", dspb_avg_add: "signals of equal length",
  dsph_avg: "spectra of one length", dspc_fir: "a kind of 0 to 10; bandstop and highpass an odd length",
  dsp_interp: "real nodes whose abscissae rise, as many ordinates, and four nodes for a spline",
  dsp_cspline: "four or more real nodes whose abscissae rise, and as many ordinates",
  dsph_rsmp_coef_setup: "a finite ratio", MatrixMult: "matrices whose sizes fit", invert: "a matrix that has an inverse",
};

/** A routine refused its arguments, or memory ran out; `routine` is its name in dsp.h. */
export class DspError extends Error {
  constructor(routine, condition) {
    super(`${routine} ${condition}`);
    this.name = "DspError";
    this.routine = routine;
  }
}

/** A routine that throws where C returns its failure status. */
function checked(name, routine, failure = -1) {
  const takes = conditions[name] ?? "other arguments";
  return (...args) => {
    let status;
    try {
      status = routine(...args);
    } catch (error) {
      if (error instanceof WebAssembly.Exception) throw new DspError(name, "ran out of memory");
      throw error;
    }
    if (status === failure) throw new DspError(name, `takes ${takes}, or memory ran out`);
    return status;
  };
}

const never_fail = /^(malloc|free|vfpd_Find(Max|Min)|.._?fpscr|set_runfast|dsp_version)$/;

/** The routines of a loaded module, and the memory behind their arguments. */
export class Library {
  constructor(exports) {
    this.exports = exports;
    this.c = {};
    for (const [name, routine] of Object.entries(exports))
      if (typeof routine === "function")
        this.c[name] = never_fail.test(name) ? routine : checked(name, routine, name === "invert" ? 0 : -1);
    this.forgotten = new FinalizationRegistry((release) => release());
  }

  /** The memory as a DataView; growing detaches the one before. */
  get view() {
    if (this.seen?.buffer !== this.exports.memory.buffer) this.seen = new DataView(this.exports.memory.buffer);
    return this.seen;
  }

  doubles(address, count) {
    return new Float64Array(this.exports.memory.buffer, address, count);
  }

  allocate(bytes) {
    const address = this.c.malloc(bytes);
    if (address === 0) throw new DspError("malloc", `has no ${bytes} bytes left`);
    return address;
  }

  /** `owner`'s free() and [Symbol.dispose], and what happens when it is forgotten: `release` runs once. */
  own(owner, release) {
    this.forgotten.register(owner, release, owner);
    return () => this.forgotten.unregister(owner) && release();
  }
}

/** Samples `dx` apart, real or complex, in the library's memory. free() gives it back at once, forgetting some time. */
export class Signal {
  #library;
  #release;

  constructor(library, length = 0, dx = 1, is_complex = false) {
    this.#library = library;
    const record = (this.record = library.allocate(record_bytes));
    const { c } = library;
    this.#release = library.own(this, () => (c.dsp_destroy(record), c.free(record)));
    c.dsp_init(record);
    this.dx = dx;
    library.view.setInt32(record + at.length, length, true);
    library.view.setUint32(record + at.is_complex, is_complex, true);
  }

  free() {
    this.#release();
    this.record = 0;
  }
  [dispose]() {
    this.free();
  }

  get dx() {
    return this.#library.view.getFloat64(this.record, true);
  }
  set dx(dx) {
    this.#library.view.setFloat64(this.record, dx, true);
  }
  get length() {
    return Math.max(this.#library.view.getInt32(this.record + at.length, true), 0);
  }
  get is_complex() {
    return this.#library.view.getUint32(this.record + at.is_complex, true) !== 0;
  }
  get address() {
    return this.#library.view.getUint32(this.record + at.data, true);
  }

  /** The samples where they are; re, im, re, im ... of a complex signal. Memory that grows detaches the array: ask again
   * after every call, or keep slice(). */
  get samples() {
    return this.#library.doubles(this.address, this.length * (this.is_complex ? 2 : 1));
  }

  /** Where the samples stand: 0, dx, 2 dx, ...; `centred` for spectra whose frequency 0 is in the middle. */
  axis(centred = false) {
    const { dx, length } = this;
    const first = centred ? Math.floor(length / 2) : 0;
    return Float64Array.from({ length }, (_, i) => (i - first) * dx);
  }
}
