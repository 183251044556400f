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

import { add_arrays } from "./arrays.js";
import { Pad, Peak, Wnd, choose } from "./names.js";
import { one_length, parameters, prefixes, real, rising, rows } from "./routines.js";
import { DspError, Library, Signal } from "./signal.js";
import { add_streams } from "./streams.js";

export { DspError, Signal };
export * from "./names.js";

/** What the module asks of its surroundings: nothing that a library without files and clocks needs. */
const surroundings = new Proxy({}, { get: () => () => 0 });

/** Loads the library: dsp.wasm beside this file, or its bytes, or a URL; `more` are imports of a module that has some. */
export async function load(source = new URL("dsp.wasm", import.meta.url), more = {}) {
  const bytes = source instanceof URL || typeof source === "string" ? await fetched(new URL(source, import.meta.url)) : source;
  const module = await WebAssembly.compile(bytes);
  const imports = {};
  for (const { module: from } of WebAssembly.Module.imports(module)) imports[from] = more[from] ?? surroundings;
  const { exports } = await WebAssembly.instantiate(module, imports);
  exports._initialize();
  return routines(new Library(exports));
}

async function fetched(url) {
  if (url.protocol === "file:") return (await import("node:fs/promises")).readFile(url);
  const response = await fetch(url);
  if (!response.ok) throw new Error(`${url.pathname}: ${response.statusText}`);
  return response.arrayBuffer();
}

const is_options = (x) => x?.constructor === Object;

function routines(library) {
  const { c } = library;
  const sized = (length, dx, is_complex) => new Signal(library, length, dx, is_complex);

  /** A signal of samples: an array, or another signal to copy; `complex` ones are re, im, re, im ... */
  function signal(samples, { dx = samples.dx ?? 1, complex = false } = {}) {
    if (samples instanceof Signal) {
      const copy = sized(0);
      c.dsp_copy(copy.record, samples.record);
      return copy;
    }
    if (samples.length === undefined) throw new TypeError("samples are an array or a signal");
    const made = sized(complex ? samples.length >> 1 : samples.length, dx, complex);
    c.dsp_alloc(made.record);
    const doubles = made.samples;
    doubles.set(samples.length === doubles.length ? samples : samples.slice(0, doubles.length));
    return made;
  }

  /** Calls `body` with samples as signals, null for those left out; what became a signal for the call only is freed. */
  function lent(samples, body) {
    if (samples.every((x) => x instanceof Signal)) return body(...samples);
    const spacing = samples.find((x) => x instanceof Signal)?.dx;
    const own = [];
    const as_signal = (x) => {
      if (x == null || x instanceof Signal) return x;
      own.push(signal(x, { dx: x.dx ?? spacing ?? 1 }));
      return own.at(-1);
    };
    try {
      return body(...samples.map(as_signal));
    } finally {
      for (const s of own) s.free();
    }
  }

  /** Refuses signals of which one of the conditions has something to say. */
  function require(name, needs, signals, routine = name) {
    for (const need of needs) {
      const wrong = need(...signals);
      if (wrong) throw new DspError(routine, `${name} ${wrong}`);
    }
  }

  /** What `body` gives when it succeeds; a signal that cannot be made is freed. */
  function filled(out, own, body) {
    try {
      body(out.record);
      return out;
    } catch (error) {
      if (own) out.free();
      throw error;
    }
  }

  /** What a routine writes into the record given after those of its operands. */
  const made = (samples, routine, { out, name, routine: called, needs = [] } = {}) =>
    lent(samples, (...signals) => {
      require(name, needs, signals, called);
      return filled(out ?? sized(), !out, (record) => routine(...signals.map((s) => s?.record ?? 0), record));
    });

  /** What a routine that works in place makes of a copy of x. */
  const changed = (x, routine, { out, dx, name, routine: called, needs = [] } = {}) =>
    lent([x], (source) => {
      require(name, needs, [source], called);
      return filled(out ?? sized(), !out, (record) => {
        if (out !== source) c.dsp_copy(record, source.record);
        if (dx !== undefined) library.view.setFloat64(record, dx, true);
        routine(record);
      });
    });

  /** A signal of one sample as a number. */
  function number(s) {
    const [re, im] = s.samples;
    const value = s.is_complex ? { re, im } : re;
    s.free();
    return value;
  }

  /** Numbers of a small result by name. */
  function fields(s, ...keys) {
    const samples = s.samples.slice();
    s.free();
    return Object.fromEntries(keys.map((key, i) => [key, samples[i]]));
  }

  /** How the kinds of rows call a routine that takes records: the signals come first, then the options. */
  const kinds = {
    in_place: (call, options, x) => changed(x, call, options),
    made: (call, options, x) => made([x], call, options),
    pair: (call, options, x, y) => made([x, y], call, options),
    number: (call, options, x) => number(made([x], call, options)),
    number_of_two: (call, options, x, y) => number(made([x, y], call, options)),
    generated: (call, { dx, is_complex, length }) => filled(sized(length, dx, is_complex), true, call),
  };

  /** The function of a row: signals, parameters by place, and at the end an object of options and parameters by name. */
  function of_row(kind, name, signature, { routine = prefixes[kind] + name, args = (...all) => all, ...rest } = {}) {
    const expected = parameters(signature);
    const signals = kinds[kind].length - 2;
    const most = signals + expected.length;
    const value_of = ({ name: parameter, type, otherwise }, given, options) => {
      const value = given ?? options[parameter] ?? otherwise;
      if (value === undefined) throw new TypeError(`${name} takes ${parameter}`);
      return type === "number" || type === "boolean" ? value : choose(type, value);
    };
    if (kind === "in_place" && expected.length === 0) {
      const [call, last] = [c[routine], args()];
      const rule = { name, routine, needs: rest.needs };
      return (x, { out, dx } = {}) => changed(x, (record) => call(record, ...last), out || dx ? { out, dx, ...rule } : rule);
    }
    return (...given) => {
      const options = is_options(given.at(-1)) ? given.pop() : {};
      if (given.length > most) throw new TypeError(`${name} takes ${most} arguments, got ${given.length}`);
      const values = expected.map((parameter, i) => value_of(parameter, given[signals + i], options));
      const length = kind === "generated" ? values.shift() : undefined;
      const called = typeof routine === "function" ? routine(...values) : routine;
      const { out, dx } = options;
      const taken = { out, dx, length, name, routine: called, needs: rest.needs, is_complex: rest.is_complex };
      const call = c[called];
      const last = args(...values);
      return kinds[kind]((...records) => call(...records, ...last), taken, ...given.slice(0, signals));
    };
  }

  /** What the heap holds of `count` numbers after `routine` has written them. */
  function written(count, routine) {
    const out = library.allocate(8 * count);
    try {
      routine(out);
      return library.doubles(out, count).slice();
    } finally {
      c.free(out);
    }
  }

  const r = { signal, Signal, library, lib: library.exports };
  for (const [kind, names, signature, rule] of rows)
    for (const name of names.split(" ")) r[name] = of_row(kind, name, signature, rule);

  const regression = "slope intercept residual_var slope_var intercept_var cov corr x_slope x_intercept x_residual_var " +
    "x_slope_var x_intercept_var x_cov x_corr mean_x mean_y var_x var_y cov_xy r";
  const nodes = (least) => [
    (x, y) => real(x, y), one_length, rising,
    (x) => x.length < least && `takes ${least} nodes or more, got ${x.length}`,
  ]; // prettier-ignore
  const at_nodes = (name, x, y, d2, xq, routine, least) => made([x, y, d2, xq], routine, { name, needs: nodes(d2 ? 0 : least) });

  /** A table of so many samples by the coefficients of a cosine series, after the number of taps. */
  const kernel_table = (name) => (length, coefficients) => {
    const routine = (series, out) => {
      library.set_length(out, length);
      c[`dspc_${name}`](out, series);
    };
    return made([coefficients], routine, { name, needs: [real] });
  };

  Object.assign(r, {
    version: () => [Math.floor(c.dsp_version() / 100), c.dsp_version() % 100],
    free_internal: () => void c.dsp_free_internal(),
    append: (x, y) => lent([y], (tail) => changed(x, (record) => c.dsp_append(record, tail.record))),
    /** 0 when dx and all samples agree within the tolerance, else the sign of the first difference. */
    cmp: (x, y, tolerance = 0) =>
      lent([x, y], (a, b) => {
        require("cmp", [one_length], [a, b]);
        return new Int32Array(written(1, (out) => c.dsp_cmp(a.record, b.record, tolerance, out)).buffer)[0];
      }),

    window: (x, window, flags = 0, { active, ...o } = {}) => {
      const [type, value] = [choose("Window", window), choose("Wnd", flags)];
      if (active === undefined) return changed(x, (record) => c.dspi_window(record, type, value), o);
      return changed(x, (record) => c.dspi_window2(record, type, value | Wnd.ACTIVE, active), o);
    },
    window_cos: (x, coefficients, o) =>
      lent([coefficients], (table) => {
        require("window_cos", [real], [table]);
        return changed(x, (record) => c.dspi_window_cos(record, table.record), o);
      }),
    window_scale: (window, length, kind = 0) =>
      written(1, (out) => c.dsp_window_scale(out, choose("Window", window), choose("Wnd", kind), length))[0],
    window_enbw: (window, length) => written(1, (out) => c.dsp_window_enbw(out, choose("Window", window), length))[0],

    corr: (ref, x, { m = ref.length, halve = false } = {}) => {
      const most = Math.min(ref.length, x.length);
      const fits = () => !(m >= 1 && m <= most) && `takes 1 to ${most} samples of the reference, got ${m}`;
      return made([ref, x], (a, b, out) => c.dspb_corr(a, b, out, m, halve), { name: "corr", needs: [fits] });
    },
    peak: (x, how = "parabolic", { index } = {}) => {
      const flags = choose("Peak", how) | (index === undefined ? 0 : Peak.AT_INDEX);
      let clamped = false;
      const out = made([x], (a, o) => void (clamped = library.exports.dsps_peak(a, o, flags, index ?? 0) !== 0));
      if (out.length < 2) throw new DspError("dsps_peak", "peak: memory ran out");
      const { value, position } = fields(out, "value", "position");
      return { value, position, place: position * (x.dx ?? 1), clamped };
    },
    lin_regres: (x) => fields(made([x], c.dsps_lin_regres), "slope", "intercept"),
    lin_regres2: (x) => fields(made([x], c.dsps_lin_regres2), ...regression.split(" ")),

    fir: (kind, length, f = 0, p = 0) => {
      const type = choose("Fir", kind);
      const odd = () => (type === 1 || type === 2) && length % 2 === 0 && `takes an odd number of taps for this kind, got ${length}`;
      require("fir", [odd], []);
      return filled(sized(length), true, (record) => c.dspc_fir(record, type, f, p));
    },
    fir2: (kind) => filled(sized(), true, (record) => c.dspc_fir2(record, choose("Fir2", kind))),
    rsmp_cos: kernel_table("rsmp_cos"),
    rsmp_pcos: kernel_table("rsmp_pcos"),

    interp: (x, y, xq, mode = "linear", { d2 } = {}) => {
      const scheme = choose("Interp", mode);
      return at_nodes("interp", x, y, d2, xq, (a, b, d, q, out) => c.dsp_interp(a, b, d, q, out, scheme), (scheme & 7) === 5 ? 4 : 0);
    },
    cspline: (x, y, xq, { d2 } = {}) => at_nodes("cspline", x, y, d2, xq, c.dsp_cspline, 4),
    /** Ends are "not_a_knot", "natural", ["clamped", slope] or ["second_derivative", value]. */
    cspline_2d: (x, y, left = "not_a_knot", right = "not_a_knot") => {
      const [[l, l_value = 0], [r, r_value = 0]] = [left, right].map((end) => [end].flat());
      const ends = [l_value, r_value, choose("Spline", l), choose("Spline", r)];
      return made([x, y], (a, b, out) => c.dspb_cspline_2d(a, b, out, ...ends), { name: "cspline_2d", needs: nodes(4) });
    },
    /** Where a polynomial has the value y: real places, or with `all` complex ones, too. */
    solve: (coefficients, y = 0, { all = false } = {}) => {
      const { re, im } = typeof y === "number" ? { re: y, im: 0 } : y;
      if (!all && im !== 0) throw new DspError("dsps_psolve", "solve takes a real value unless all solutions are asked for");
      const is_y = ({ samples, is_complex }) => samples.every((v, i) => v === (i === 0 ? re : i === 1 && is_complex ? im : 0));
      const needs = [...(all ? [] : [real]), (k) => is_y(k) && "takes an equation that not every number solves"];
      const routine = (k, out) => (all ? c.dsps_pcsolve(k, out, re, im) : c.dsps_psolve(k, out, re));
      return made([coefficients], routine, { name: "solve", needs });
    },
  });
  const tools = { sized, made, lent, filled, require, written };
  return add_streams(add_arrays(r, tools), tools);
}
