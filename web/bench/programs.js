// What the programs compute, in bench.wasm: a task by the words of a command line, answered by an object and columns.

import { load } from "../dsp.js";

const decoder = new TextDecoder();
const disk = new FileReaderSync();

export class Programs {
  files = new Map(); // what the programs can open, by name

  async load() {
    const imports = { size: (name) => this.size(name), read: (...where) => this.read(...where) };
    this.dsp = await load(new URL("../bench.wasm", import.meta.url), { page: imports });
    return this;
  }

  get library() {
    return this.dsp.library;
  }

  bytes(address, count) {
    return new Uint8Array(this.library.exports.memory.buffer, address, count);
  }

  text(address) {
    const bytes = this.bytes(address);
    return decoder.decode(bytes.subarray(0, bytes.indexOf(0)));
  }

  size(name) {
    return this.files.get(this.text(name))?.size ?? -1;
  }

  read(name, at, into, count) {
    const bytes = new Uint8Array(disk.readAsArrayBuffer(this.files.get(this.text(name)).slice(at, at + count)));
    this.bytes(into, count).set(bytes);
    return bytes.length;
  }

  /** Runs a task; `options` as those of the programs, `names` of files, and samples where a task takes some. */
  run(task, options = {}, names = [], samples = []) {
    const { library } = this;
    const { exports } = library;
    const words = [task, ...Object.entries(options).map(([name, value]) => `--${name}=${value}`), "--", ...names];
    const line = new TextEncoder().encode(`${words.join("\n")}\0`);
    const address = library.allocate(line.length);
    this.bytes(address, line.length).set(line);
    library.doubles(exports.bench_input(samples.length), samples.length).set(samples);
    const status = exports.bench_run(address);
    exports.free(address);
    const text = this.text(exports.bench_text());
    if (status !== 0) throw new Error(text);
    const column = (i) => library.doubles(exports.bench_column(i), exports.bench_length(i)).slice();
    return { ...JSON.parse(text), columns: Array.from({ length: exports.bench_columns() }, (_, i) => column(i)) };
  }
}
