// Signals, and the library's memory in which they lie.

const record_bytes = 32; // dsp_vec: dx, then data, capacity, length, is_complex and reserved, 4 bytes each
const at = { data: 2, length: 4, is_complex: 5 }; // in words of 4 bytes
export const dispose = Symbol.dispose ?? Symbol.for("Symbol.dispose");

/** A routine refused its arguments, or memory ran out; `routine` is its name in dsp.h. */
export class DspError extends Error {
  constructor(routine, message) {
    super(message);
    this.name = "DspError";
    this.routine = routine;
  }
}

/** The routines of a loaded module, and the memory behind their arguments. */
export class Library {
  #words = new Int32Array();
  #numbers = new Float64Array();

  constructor(exports) {
    this.exports = exports;
    this.forgotten = new FinalizationRegistry((release) => release());
  }

  /** All of the memory. When it grows, arrays on it become empty: these are then made anew. */
  get words() {
    if (this.#words.length === 0) this.#words = new Int32Array(this.exports.memory.buffer);
    return this.#words;
  }
  get numbers() {
    if (this.#numbers.length === 0) this.#numbers = new Float64Array(this.exports.memory.buffer);
    return this.#numbers;
  }

  doubles(address, count) {
    return new Float64Array(this.exports.memory.buffer, address, count);
  }

  allocate(bytes) {
    const address = this.exports.malloc(bytes);
    if (address === 0) throw new DspError("malloc", `memory ran out: no ${bytes} bytes are left`);
    return address;
  }

  /** Calls a routine that can fail for lack of memory only: its other conditions are met. */
  run(routine, ...args) {
    let status = -1;
    try {
      status = this.exports[routine](...args);
    } catch (error) {
      if (!(error instanceof WebAssembly.Exception)) throw error;
    }
    if (status === -1) throw new DspError(routine, `${routine}: memory ran out`);
  }

  /** A function that releases what `owner` holds: once, at the latest when the owner is forgotten. */
  own(owner, release) {
    this.forgotten.register(owner, release, owner);
    return () => this.forgotten.unregister(owner) && release();
  }
}

/** Samples `dx` apart, real or complex, in the library's memory. free() gives it back at once, forgetting some time. */
export class Signal {
  #library;
  #record;
  #release;

  constructor(library, length = 0, dx = 1, is_complex = false) {
    this.#library = library;
    const { exports } = library;
    const record = (this.#record = library.allocate(record_bytes));
    this.#release = library.own(this, () => {
      exports.dsp_destroy(record);
      exports.free(record);
    });
    exports.dsp_init(record);
    this.dx = dx;
    this.length = length;
    library.words[record / 4 + at.is_complex] = is_complex;
  }

  free() {
    this.#release();
    this.#record = 0;
  }
  [dispose]() {
    this.free();
  }

  get library() {
    return this.#library;
  }
  /** The address of the dsp_vec. */
  get record() {
    if (this.#record === 0) throw new TypeError("this signal has been freed");
    return this.#record;
  }
  /** The address of the samples. */
  get address() {
    return this.library.words[this.record / 4 + at.data] >>> 0;
  }

  get dx() {
    return this.library.numbers[this.record / 8];
  }
  set dx(dx) {
    if (typeof dx !== "number") throw new TypeError(`dx is a number, got ${dx}`);
    this.library.numbers[this.record / 8] = dx;
  }
  get length() {
    return Math.max(this.library.words[this.record / 4 + at.length], 0);
  }
  set length(length) {
    this.library.words[this.record / 4 + at.length] = length;
  }
  get is_complex() {
    return this.library.words[this.record / 4 + at.is_complex] !== 0;
  }

  /** The samples where they are; re, im, re, im ... of a complex signal. Memory that grows detaches the array: ask
   * again after every call, or keep slice(). */
  get samples() {
    const { library, address, length, is_complex } = this;
    return library.doubles(address, is_complex ? 2 * length : length);
  }

  /** Where the samples stand: 0, dx, 2 dx, ...; `centred` for spectra whose frequency 0 is in the middle. */
  axis(centred = false) {
    const { dx, length } = this;
    const first = centred ? Math.floor(length / 2) : 0;
    return Float64Array.from({ length }, (_, i) => (i - first) * dx);
  }
}
