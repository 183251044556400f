// Transforms of dsp.js, the call included, beside those of fft.js from npm: from one array into another that is there
// already, in rounds that take turns; the median of the rounds.
// usage: DSP_JS=build/wasm/page/dsp.js MODULES=build/wasm/npm/node_modules node bench/fft.js
import { createRequire } from "node:module";
import { join, resolve } from "node:path";
import { pathToFileURL } from "node:url";

const { load } = await import(pathToFileURL(resolve(process.env.DSP_JS)));
const FFT = createRequire(join(resolve(process.env.MODULES), "x.js"))("fft.js");
const dsp = await load();

/** Microseconds of a call, from as many as take about a millisecond. */
function time(call, count) {
  const began = performance.now();
  for (let i = 0; i < count; ++i) call();
  return (1000 * (performance.now() - began)) / count;
}

const median = (times) => times.sort((a, b) => a - b)[times.length >> 1];

// Other routines first: a program calls more than one, which the compiler of JavaScript notices.
const [some, other] = [dsp.line(64, 0.01), dsp.signal([])];
for (let i = 0; i < 3000; ++i) for (const name of ["mag", "rfft", "exp", "sort", "dft"]) dsp[name](some, { out: other });

console.log("complex samples   dsp.js / us   fft.js / us   ratio");
for (let bits = 8; bits <= 18; ++bits) {
  const n = 2 ** bits;
  const samples = Float64Array.from({ length: 2 * n }, (_, i) => Math.sin(i * i));
  const x = dsp.signal(samples, { complex: true });
  const out = dsp.signal(x);
  const fft = new FFT(n);
  const theirs = fft.createComplexArray();
  const calls = [() => dsp.fft(x, { out }), () => fft.transform(theirs, samples)];
  const count = Math.max(1, Math.round(2 ** 18 / (n * bits)));
  const times = calls.map((call) => [time(call, 20 * count)].slice(1));
  for (let round = 0; round < 101; ++round) calls.forEach((call, i) => times[i].push(time(call, count)));
  const [our_time, their_time] = times.map(median);
  const shown = [our_time.toFixed(2), their_time.toFixed(2), (our_time / their_time).toFixed(2)];
  console.log(`${String(n).padStart(15)}${shown.map((text, i) => text.padStart([14, 14, 8][i])).join("")}`);
}
