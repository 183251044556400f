// Transforms of dsp.js, the call included, beside those of fft.js from npm, interleaved in one run; best of the rounds.
// usage: DSP_JS=build/wasm/page/dsp.js MODULES=build/wasm/npm/node_modules node bench/fft.js
import { createRequire } from "node:module";
import { join, resolve } from "node:path";
import { pathToFileURL } from "node:url";

const { load } = await import(pathToFileURL(resolve(process.env.DSP_JS)));
const FFT = createRequire(join(resolve(process.env.MODULES), "x.js"))("fft.js");
const dsp = await load();

/** Microseconds of a call, from as many as take some milliseconds. */
function time(call) {
  let count = 1;
  for (;;) {
    const began = performance.now();
    for (let i = 0; i < count; ++i) call();
    const taken = performance.now() - began;
    if (taken > 5) return (1000 * taken) / count;
    count *= 2;
  }
}

console.log("complex samples   dsp.js / us   fft.js / us   ratio");
for (let bits = 8; bits <= 18; ++bits) {
  const n = 2 ** bits;
  const samples = Float64Array.from({ length: 2 * n }, (_, i) => Math.sin(i * i));
  const x = dsp.signal(samples, { complex: true });
  const out = dsp.signal(x);
  const fft = new FFT(n);
  const theirs = fft.createComplexArray();
  const best = [Infinity, Infinity];
  for (let round = 0; round < 9; ++round) {
    best[0] = Math.min(best[0], time(() => dsp.fft(x, { out })));
    best[1] = Math.min(best[1], time(() => fft.transform(theirs, samples)));
  }
  const shown = [best[0].toFixed(2), best[1].toFixed(2), (best[0] / best[1]).toFixed(2)];
  console.log(`${String(n).padStart(15)}${shown.map((text, i) => text.padStart([14, 14, 8][i])).join("")}`);
}
