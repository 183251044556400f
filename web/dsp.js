// Measurement signals: spectra and windows, filters, sample-rate conversion, statistics, interpolation, calibration.
//
//     import { load } from "dsp";
//     const dsp = await load();
//     const s = dsp.spectrum(dsp.cos(1024, 123.4, 0, { dx: 1e-3 }), "gausstop");
//     dsp.peak(s, "gauss").place;                                       // 123.40 Hz
//
// Samples are signals, arrays, or what dsp.signal makes of arrays; results are signals. The names are those of dsp.h
// without their prefixes: the contract of each stands there. Nothing changes its arguments, but for `out`: the signal
// that takes the result, which may be the argument. A signal's memory goes back by free(), by `using`, or with it.

import { Calls } from "./calls.js";
import { rows } from "./routines.js";
import { DspError, Library, Signal } from "./signal.js";
import { streams } from "./streams.js";

export { DspError, Signal };
export * from "./names.js";

/** What the module asks of its surroundings: nothing that a library without files and clocks needs. */
const surroundings = new Proxy({}, { get: () => () => 0 });

/** Loads the library: dsp.wasm beside this file, or its bytes, or a URL. Each call loads one of its own. `more` are
 * imports of a module that has some. */
export async function load(source = new URL("dsp.wasm", import.meta.url), more = {}) {
  const is_address = source instanceof URL || typeof source === "string";
  const bytes = is_address ? await fetched(new URL(source, import.meta.url)) : source;
  const module = await WebAssembly.compile(bytes);
  const imports = {};
  for (const { module: from } of WebAssembly.Module.imports(module)) imports[from] = more[from] ?? surroundings;
  const { exports } = await WebAssembly.instantiate(module, imports);
  exports._initialize();
  return routines(new Library(exports));
}

async function fetched(url) {
  if (url.protocol === "file:") return (await import(/* webpackIgnore: true */ "node:fs/promises")).readFile(url);
  const response = await fetch(url);
  if (!response.ok) throw new Error(`${url.pathname}: ${response.status} ${response.statusText}`);
  return response.arrayBuffer();
}

function routines(library) {
  const { exports } = library;
  const calls = new Calls(library);
  const version = exports.dsp_version();
  const r = {
    Signal,
    library,
    lib: exports,
    signal: (samples, options) => calls.signal(samples, options),
    version: () => [Math.floor(version / 100), version % 100],
    free_internal: () => void exports.dsp_free_internal(),
  };
  for (const [form, names, signature, rule] of rows)
    for (const name of names.split(" ")) r[name] = calls.of_row(form, name, signature, rule);
  return Object.assign(r, streams(calls, r));
}
