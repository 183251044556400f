// Signals, and the library's memory in which they lie.

const record_bytes = 32; // dsp_vec: dx, then data, capacity, length, is_complex and reserved, 4 bytes each
const at = { data: 8, length: 16, is_complex: 20 };
const dispose = Symbol.dispose ?? Symbol.for("Symbol.dispose");

/** A routine refused its arguments, or memory ran out; `routine` is its name in dsp.h. */
export class DspError extends Error {
  constructor(routine, message) {
    super(message);
    this.name = "DspError";
    this.routine = routine;
  }
}

/** A routine whose conditions are met, so that it fails for lack of memory only. */
function checked(name, routine) {
  return (...args) => {
    let status = -1;
    try {
      status = routine(...args);
    } catch (error) {
      if (!(error instanceof WebAssembly.Exception)) throw error;
    }
    if (status === -1) throw new DspError(name, `${name}: memory ran out`);
    return status;
  };
}

const never_fail = /^(malloc|free|vfpd_Find(Max|Min)2?|.._?fpscr|set_runfast|dsp_version)$/;

/** The routines of a loaded module, and the memory behind their arguments. */
export class Library {
  constructor(exports) {
    this.exports = exports;
    this.c = {};
    for (const [name, routine] of Object.entries(exports))
      if (typeof routine === "function")
        this.c[name] = never_fail.test(name) ? routine : checked(name, routine);
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

  set_length(record, length) {
    this.view.setInt32(record + at.length, length, true);
  }

  allocate(bytes) {
    const address = this.c.malloc(bytes);
    if (address === 0) throw new DspError("malloc", `memory ran out: no ${bytes} bytes are left`);
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
    library.set_length(record, length);
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
