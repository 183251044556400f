// The module over dsp.wasm, in Node: what it adds to the library, whose routines have tests of their own.
import assert from "node:assert/strict";
import { readdir, readFile } from "node:fs/promises";
import test from "node:test";
import v8 from "node:v8";
import vm from "node:vm";
import { pathToFileURL } from "node:url";

const built = pathToFileURL(process.env.DSP_JS);
const module = await import(built);
const { load, DspError } = module;
const dsp = await load();
const near = (a, b, tolerance = 1e-14) => assert.ok(Math.abs(a - b) <= tolerance, `${a} is not ${b}`);

test("dsp.wasm exports dsp.h and a heap", async () => {
  const header = (await readFile(`${process.env.DSP_SOURCE}/dsp/dsp.h`, "utf8")).replace(/#define.*/g, "");
  const declared = [...header.matchAll(/DSP_API[^(;]*?(\w+)\(/g)].map((m) => m[1]);
  const module = await WebAssembly.compile(await readFile(new URL("dsp.wasm", built)));
  const exported = WebAssembly.Module.exports(module).filter((e) => e.kind === "function").map((e) => e.name);
  for (const name of declared) assert.ok(exported.includes(name), name);
  assert.ok(declared.length > 150 && exported.length < declared.length + 10);
});

test("the names are those of the Python package, and declared", async () => {
  const folder = `${process.env.DSP_SOURCE}/python/dsp/`;
  const sources = await Promise.all((await readdir(folder)).filter((f) => f.endsWith(".py")).map((f) => readFile(folder + f, "utf8")));
  const lists = sources.flatMap((text) => [...text.matchAll(/__all__ = \[(.*?)\]/gs)].map((m) => m[1])).join();
  const tuples = ["Circle", "End", "Found", "Limited", "Line", "Record", "Regression"]; // results here are plain objects
  const names = [...lists.matchAll(/"(\w+)"/g)].map((m) => m[1]).filter((name) => !tuples.includes(name));
  assert.ok(names.length > 150);
  const declared = await readFile(new URL("dsp.d.ts", built), "utf8");
  for (const name of names) {
    assert.ok(name in dsp || name in module, name);
    assert.match(declared, new RegExp(`\\b${name}[(:]| class ${name}\\b`), name);
  }
});

test("routines take what they take in Python, and give the same", () => {
  const points = (s) => [...s.samples].map((v) => Number(v.toFixed(3)) + 0);
  const z = (...parts) => dsp.signal(parts, { complex: true });
  const [x, y] = [[0, 1, 2, 3], [0, 1, 4, 9]];
  const given = {
    roots: [dsp.roots([-1, 0, 0, 0, 1]), [1, 0, 0, 1, 0, -1, -1, 0]],
    poly: [dsp.poly([1, 2]), [2, -3, 1]],
    solve: [dsp.solve([0, 0, 1], 4), [-2, 2]],
    "all solutions": [dsp.solve([0, 0, 1], -4, { all: true }), [0, 2, 0, -2]],
    cspline_2d: [dsp.cspline_2d(x, y, ["clamped", 0], "natural"), [2.077, 1.846, 2.538, 0]],
    interp: [dsp.interp(x, y, [0.5, 2.5], "linear"), [0.5, 6.5]],
    smooth: [dsp.smooth([0, 0, 3, 0, 0], 3), [0, 1, 1, 1, 0]],
    "smooth, complex": [dsp.smooth(z(1, 0, 1, 0, 4, 0), 3), [1, 0, 2, 0, 4, 0]],
    expand_log: [dsp.expand_log(3, 1, 100), [1, 10, 100]],
    expand_linear: [dsp.expand_linear(3, 1, 2), [1, 1.5, 2]],
    scale_to_fp: [dsp.scale_to_fp([0, 0.25, 1], 0, 1, 10, 20), [10, 12.5, 20]],
    matrix_mult: [dsp.matrix_mult([1, 2, 3, 4], z(1, 0, 0, 1), 2), [1, 2, 3, 4]],
    invert: [dsp.invert(z(2, 0, 0, 0, 0, 0, 0, 4)), [0.5, 0, 0, 0, 0, 0, 0, -0.25]],
    arc_interp: [dsp.arc_interp([0, 1, 2], z(1, 0, 0, 1, -1, 0), [0.5]), [0.707, 0.707]],
    rsmp: [dsp.rsmp(10, 2), [8, 0, 0.001, 0.039, 0.244, 0.433, 0.244, 0.039, 0.001, 0]],
    rsmp_cos: [dsp.rsmp_cos(10, [8, 0.5, 0.5]), [8, 0, 0.146, 0.5, 0.854, 1, 0.854, 0.5, 0.146, 0]],
    format_buffer: [dsp.format_buffer(z(0.5, 0, 0, 0.1), "swr"), [3, 1.222]],
    corr: [dsp.corr([1, 1], [1, 2, 3, 4]), [0.75, 1.25, 1.75]],
    "corr, in part": [dsp.corr([1, 1], [1, 2, 3, 4], 1), [0.25, 0.5, 0.75, 1]],
    limit: [dsp.limit([0.5, 3], -1, 1).signal, [0.5, 1]],
    "window, active": [dsp.window([1, 1, 1, 1, 1, 1], "hann", "raw, no_swap", { active: 4 }), [0, 0, 0.5, 1, 0.5, 0]],
    "addcos by name": [dsp.addcos([0, 0, 0, 0], 0.25, { amp: 2 }), [2, 0, -2, 0]],
    "dct by place": [dsp.dct([1, 1], true), points(dsp.dct([1, 1], { normalised: true }))],
  };
  for (const [name, [got, wanted]] of Object.entries(given)) assert.deepEqual(points(got), wanted, name);
  assert.deepEqual([...dsp.scale_to_int([0, 0.25, 1], 0, 1, 0, 480)], [0, 120, 480]);
  assert.deepEqual([dsp.limit([0.5, 3], -1, 1).clipped, dsp.limit([0.5, 1], 1, -1).clipped], [true, false]);
  assert.deepEqual([dsp.find_min([0, 5, 3]), dsp.find_min([0, 5, 3], { skip: null })], [0, 2]);
  near(dsp.window_enbw("hann", 64, { active: 32 }), 3, 1e-13);
  assert.deepEqual([dsp.find_max([1, 5, 3]), dsp.find_max([1, 5, 3], { skip: [1, 2] }), dsp.find_min([4, 5, 3])], [1, 2, 2]);
  assert.deepEqual([dsp.cmp([1, 2], [1, 2.5]), dsp.cmp([1, 2], [1, 2.5], 1)], [-1, 0]);
  assert.deepEqual(dsp.circle_fit(z(3, 0, 2, 1, 1, 0, 2, -1)), { centre: { re: 2, im: 0 }, radius: 1, rms: 0 });
  const { slope, r } = dsp.lin_regres2([1, 3, 5]);
  assert.deepEqual([slope, r], [2, 1]);
  assert.equal(new dsp.FractionalResampler(2).convert(new Float64Array(100)).length, 51);
});

test("a tone between bins, as the README has it", () => {
  const s = dsp.spectrum(dsp.cos(1024, 123.4, 0, { dx: 1e-3 }), "gausstop");
  assert.equal(dsp.peak(s, "gauss").place.toFixed(2), "123.40");
  near(s.axis()[512], 500);
  assert.equal(s.axis(true)[256], 0);
});

test("signals keep spacing and representation; arrays take a signal's spacing; `out` may be the argument", () => {
  const x = dsp.signal([1, 2, 3, 4], { dx: 0.5 });
  assert.deepEqual([...dsp.add(x, [1, 1, 1, 1]).samples], [2, 3, 4, 5]);
  assert.equal(dsp.add([1, 1, 1, 1], x).dx, 0.5);
  const z = dsp.signal([1, 2, 3, 4], { complex: true });
  assert.ok(z.is_complex && z.length === 2);
  assert.deepEqual(dsp.sum(z), { re: 4, im: 6 });
  assert.equal(dsp.scale(x, 2, { out: x }), x);
  assert.deepEqual([...x.samples], [2, 4, 6, 8]);
  assert.deepEqual([...dsp.ifft(dsp.fft(x), { out: z }).samples], [2, 0, 4, 0, 6, 0, 8, 0]);
  assert.equal(dsp.mean(new Float32Array([1, 2, 6])), 3);
  near(dsp.window_enbw("hann", 64), 1.5);
  assert.deepEqual([...dsp.window([1, 1, 1, 1], "hann", "raw, no_swap").samples].map((w) => +w.toFixed(12)), [0, 0.5, 1, 0.5]);
  assert.deepEqual([...dsp.unwrap_phase(dsp.cexp(3, 0.4)).samples].map((p) => +p.toFixed(6)), [0, 2.513274, 5.026548]);
});

test("any signal may be `out`, and any memory samples", async () => {
  const [x, ones] = [dsp.signal([1, 2, 3, 4], { dx: 0.5 }), [1, 1, 1, 1]];
  const into_second = (run, second) => run(second, { out: second });
  const given = [
    [into_second((y, o) => dsp.sub(x, y, o), dsp.signal(ones)), [0, 1, 2, 3]],
    [into_second((y, o) => dsp.append(x, y, o), dsp.signal([9])), [1, 2, 3, 4, 9]],
    [into_second((c, o) => dsp.window_cos(x, c, o), dsp.signal([1])), [1, 2, 3, 4]],
    [into_second((xq, o) => dsp.interp([0, 1, 2], [0, 1, 4], xq, o), dsp.signal([0.5, 1.5])), [0.5, 2.5]],
    [dsp.add((await load()).signal(ones), x), [2, 3, 4, 5]], // of another module
    [dsp.add(x.samples, x), [2, 4, 6, 8]],
  ];
  for (const [got, wanted] of given) assert.deepEqual([...got.samples], wanted);
  const block = dsp.signal(new Float64Array(40));
  assert.equal(new dsp.FractionalResampler(0.5).convert(block, { out: block }).length, 81);
  const all = [];
  assert.throws(() => { for (;;) all.push(dsp.line(2 ** 24)); }, /memory ran out/); // prettier-ignore
  for (const s of all) s.free();
  assert.deepEqual([...x.samples], [1, 2, 3, 4]);
});

test("errors name routine and condition, and leave the arguments as they were", () => {
  const x = dsp.signal([1, 2, 3]);
  assert.throws(() => dsp.rfft(x), (e) => e instanceof DspError && /^rfft takes a power of two of samples, got 3; rdft/.test(e.message) && e.routine === "dspi_rfft");
  assert.throws(() => dsp.mul(x, [1]), /mul takes signals of one length, got 3 and 1/);
  assert.throws(() => dsp.spectrum(x, "hum"), /"hum" is none of UNIFORM/);
  assert.throws(() => dsp.zpad(x, 2 ** 30), /memory ran out/);
  assert.throws(() => dsp.sum(7), TypeError);
  assert.throws(() => dsp.offset(x), /offset takes by/);
  assert.throws(() => dsp.roots([0, 0]), /roots takes a coefficient that is not 0/);
  assert.throws(() => dsp.invert([1, 1, 1, 1]), /square matrix that has an inverse/);
  assert.throws(() => dsp.interp([0, 2, 1, 3], [1, 1, 1, 1], [1]), /interp takes places that rise/);
  assert.throws(() => new dsp.Resampler(0.5), /ratio of 1 or more, got 0.5/);
  const freed = dsp.signal([1]);
  freed.free();
  freed.free();
  const wrong = [
    [() => dsp.neg(freed), /freed/], [() => dsp.fft(freed, { out: x }), /freed/],
    [() => dsp.neg(x, { out: freed }), /freed/], [() => dsp.neg(x, { out: [1, 2, 3] }), /out is no signal/],
    [() => dsp.scale(x, "a"), /takes a number for by, got a/], [() => dsp.zpad(x, 2.5), /takes a whole number/],
    [() => dsp.cos(-1, 0.1), /from 0 on/], [() => dsp.line(NaN), /from 0 on/], [() => dsp.line(2 ** 32), /from 0 on/],
    [() => dsp.addcos(x, 0.1, { amplitude: 2 }), /no option amplitude/], [() => dsp.neg(["1", 2]), /got string at 0/],
    [() => dsp.signal([1], { complex: true }), /pairs/], [() => dsp.window(x, "hann, none"), /is none of/],
    [() => dsp.window(x, "hann", "raw, power"), /takes one of amplitude/],
    [() => dsp.window(x, 1.5), /has no value/], [() => dsp.window(x, "hann", 2 ** 32), /has no value/],
    [() => dsp.asin(dsp.rtoc(x)), /takes real samples/], [() => dsp.corr(x, x, 9), /takes 1 to 3 samples/],
    [() => new dsp.Resampler(2).convert(freed), /freed/], [() => new dsp.Decimator(1.5), /whole number/],
  ]; // prettier-ignore
  for (const [call, message] of wrong) assert.throws(call, message);
  assert.deepEqual([...x.samples], [1, 2, 3]);
});

test("streams in blocks are the stream at once", () => {
  const x = dsp.addcos(dsp.cos(5000, 0.01), 0.3);
  const streams = [
    () => new dsp.FirFilter(dsp.fir("lowpass", 31, 0.1)),
    () => new dsp.SymmetricFir(dsp.fir2("taps12")),
    () => new dsp.HalfBandFilter(),
    () => new dsp.Decimator(3),
    () => new dsp.Resampler(2.5),
  ];
  for (const make of streams) {
    const [whole, pieces] = [make(), make()];
    const run = (s, block) => (s.filter ? s.filter(block) : s.convert(block));
    const parts = [0, 7, 7, 2000, 5000].map((to, i, at) => run(pieces, dsp.subvec(x, at[i - 1] ?? 0, to - (at[i - 1] ?? 0))));
    assert.deepEqual(parts.flatMap((p) => [...p.samples]), [...run(whole, x).samples]);
    whole.free();
  }
  const average = new dsp.Average("max_hold").add(dsp.signal([1, 5])).add(dsp.signal([2, 3]));
  assert.deepEqual([...average.result().samples], [2, 5]);
});

test("a calibration is undone", () => {
  const complex = (...z) => dsp.signal(z, { complex: true });
  const actual = [complex(-1, 0), complex(1, 0), complex(0, 0), complex(0.3, -0.2)];
  const seen = (a) => dsp.add(complex(0.05, 0.01), dsp.div(dsp.mul(complex(0.9, 0.1), a), dsp.sub(complex(1, 0), dsp.mul(complex(-0.1, 0.2), a))));
  const measured = actual.map(seen);
  const corrected = new dsp.OnePort(measured.slice(0, 3), actual.slice(0, 3)).correct(measured[3]).samples;
  near(corrected[0], 0.3);
  near(corrected[1], -0.2);
  near(new dsp.OnePort(measured.slice(0, 3), actual.slice(0, 3)).distort(actual[3]).samples[1], measured[3].samples[1]);
});

test("memory goes back: by free, and when a signal is forgotten", async () => {
  const pages = () => dsp.library.exports.memory.buffer.byteLength;
  for (let i = 0; i < 4; ++i) dsp.cos(2 ** 20, 0.1).free();
  const before = pages();
  for (let i = 0; i < 200; ++i) dsp.cos(2 ** 20, 0.1).free();
  assert.equal(pages(), before);
  v8.setFlagsFromString("--expose-gc");
  const collect = vm.runInNewContext("gc");
  let returned = 0;
  dsp.library.own({}, () => ++returned);
  for (let i = 0; i < 50 && !returned; ++i) await new Promise((next) => setTimeout(next, 20)).then(collect);
  assert.equal(returned, 1);
});
