// What the programs compute, in bench.wasm: peaks of dsp-spectrum, tones of dsp-tone, sweeps of dsp-oneport.

import { choose } from "../names.js";

const decoder = new TextDecoder();

export class Programs {
  constructor(dsp) {
    Object.assign(this, { dsp, memory: dsp.library.exports.memory });
  }

  /** Calls a routine; the text that it leaves says why it failed, or what it found. */
  call(routine, ...args) {
    const { exports } = this.dsp.library;
    const status = exports[routine](...args);
    const bytes = new Uint8Array(this.memory.buffer, exports.bench_text());
    const text = decoder.decode(bytes.slice(0, bytes.indexOf(0)));
    if (status !== 0) throw new Error(text);
    return text;
  }

  /** Calls `body` with the addresses of texts. */
  with_texts(texts, body) {
    const addresses = texts.map((text) => {
      const bytes = new TextEncoder().encode(`${text}\0`);
      const address = this.dsp.library.allocate(bytes.length);
      new Uint8Array(this.memory.buffer).set(bytes, address);
      return address;
    });
    try {
      return body(...addresses);
    } finally {
      for (const address of addresses) this.dsp.library.exports.free(address);
    }
  }

  /** At most `most` peaks {bin, level} of a spectrum in dB, strongest first. */
  peaks(levels, window, block, most) {
    const found = this.dsp.signal([]);
    this.call("bench_peaks", levels.record, choose("Window", window), block, most, found.record);
    const peaks = Array.from({ length: found.length }, (_, i) => ({ bin: found.samples[2 * i], level: found.samples[2 * i + 1] }));
    found.free();
    return peaks;
  }

  /** Rows of name, value and unit. */
  tone(record) {
    const lines = this.call("bench_tone", record.record).split("\n").slice(0, -1);
    return lines.map((line) => line.split("\t"));
  }

  /** A Touchstone file as {name, frequency, s}. */
  touchstone({ name, text }) {
    const [frequency, s] = [this.dsp.signal([]), this.dsp.signal([])];
    this.with_texts([name, text.replaceAll("\0", "?")], (...texts) => this.call("bench_touchstone", ...texts, frequency.record, s.record));
    return { name, frequency: frequency.samples.slice(), s };
  }

  /** The files of a simulated calibration by role; the device is an antenna. */
  simulate(points = 401) {
    const roles = ["short", "open", "load", "short_actual", "open_actual", "load_actual", "device"];
    const texts = this.call("bench_simulate", points).split("\f");
    return Object.fromEntries(roles.map((role, i) => [role, { name: role, text: texts[i] }]));
  }
}
