// How functions take their arguments, and how they call a routine with them.

import * as groups from "./constants.js";
import { choose } from "./names.js";
import { DspError, Signal } from "./signal.js";

const is_int32 = (x) => (x | 0) === x;
const kinds = {
  number: ["a number", (x) => typeof x === "number"],
  integer: ["a whole number", is_int32],
  count: ["a whole number from 0 on", (x) => is_int32(x) && x >= 0],
  boolean: ["true or false", (x) => typeof x === "boolean" || x === 0 || x === 1],
};
const words = { true: true, false: false, none: undefined, nothing: [0, 0] };

/** Signals of any kind, real ones only, or complex ones, which real ones become. */
export const is_signal = (type) => type === "Samples" || type === "Real" || type === "Points";

export const record_of = (x) => (x instanceof Signal ? x.record : x ?? 0);
const address_of = (x) => (x instanceof Signal ? x.address : x ?? 0);

/** The parameters that a signature tells: {name, type, is_optional, otherwise}. Without a type they are numbers. */
export function parameters(signature) {
  return [...signature.matchAll(/(\w+)(?:: (\w+))?(?: = ([\w.-]+))?/g)].map(([, name, type = "number", text]) => {
    const otherwise = text in words ? words[text] : Number.isNaN(Number(text)) ? text : Number(text);
    return { name, type, is_optional: text !== undefined, otherwise };
  });
}

const made = { options: ["out"], records: (out, inputs) => [...inputs, out] };
const number = ({ samples: [re, im], is_complex }) => (is_complex ? { re, im } : re);

/** The forms of rows: what their routines' names begin with, the options they take, the order of the records of output
 * and inputs before the other arguments, and what becomes of the output. */
export const forms = {
  /** In place, on a copy of the first signal. */
  changed: { prefix: "dspi_", options: ["out", "dx"], records: (out, [, ...others]) => [out, ...others] },
  made: { ...made, prefix: "dspu_" },
  paired: { ...made, prefix: "dspb_" },
  reduced: { ...made, prefix: "dsps_", options: [], gives: number, type: "number | Complex" },
  /** A new signal, as long as the parameter `length` tells. */
  generated: { prefix: "dspc_", options: ["dx"], records: (out, inputs) => [out, ...inputs] },
  /** On arrays: the row tells their size and all arguments. */
  traced: { prefix: "", options: [], records: () => [] },
};

const defaults = { failure: "memory ran out", fails: (status) => status === -1 };

/** What makes signals of a library and calls its routines. */
export class Calls {
  constructor(library) {
    this.library = library;
  }

  is_ours(x) {
    return x instanceof Signal && x.library === this.library;
  }
  sized(length, dx, is_complex) {
    return new Signal(this.library, length, dx, is_complex);
  }

  /** A signal of samples: an array, or another signal to copy; `complex` ones are re, im, re, im ... */
  signal(samples, { dx, complex = false } = {}) {
    if (this.is_ours(samples)) return filled(this.sized(), true, (copy) => this.begin(copy, samples, dx));
    if (samples instanceof Signal)
      return this.signal(samples.samples, { dx: dx ?? samples.dx, complex: samples.is_complex });
    const values = numbers(samples, this.library);
    if (complex && values.length % 2 !== 0)
      throw new TypeError(`complex samples are pairs of numbers, got ${values.length} numbers`);
    const length = complex ? values.length / 2 : values.length;
    return filled(this.sized(length, dx, complex), true, (made) => {
      this.library.run("dsp_alloc", made.record);
      made.samples.set(values);
    });
  }

  /** Makes `out` what a routine that works in place begins with. */
  begin(out, source, dx) {
    if (out !== source) this.library.run("dsp_copy", out.record, source.record);
    if (dx !== undefined) out.dx = dx;
  }

  /** A signal for the time of a call: samples as they are, or one made of them, which goes onto the list `lent`. */
  lend(type, samples, lent, dx) {
    const fits = this.is_ours(samples) && (type !== "Points" || samples.is_complex);
    const x = fits ? samples : this.signal(samples, samples instanceof Signal ? {} : { dx });
    if (!fits) lent.push(x);
    if (type === "Points") this.library.run("dspi_rtoc", x.record);
    return x;
  }

  /** The values of parameters, by place or among the options. Arrays take the spacing of a signal beside them. */
  values(name, expected, given, options, lent) {
    const dx = given.find((x) => x instanceof Signal)?.dx;
    return expected.map(({ name: parameter, type, is_optional, otherwise }, i) => {
      const value = [given[i], options[parameter], otherwise].find((x) => x !== undefined);
      if (value === undefined && !is_optional) throw new TypeError(`${name} takes ${parameter}`);
      if (is_optional && (value ?? undefined) === undefined) return undefined;
      if (is_signal(type)) return this.lend(type, value, lent, dx);
      if (type in groups) return choose(type, value);
      if (type in kinds && !kinds[type][1](value))
        throw new TypeError(`${name} takes ${kinds[type][0]} for ${parameter}, got ${String(value)}`);
      return value;
    });
  }

  /** The options at the end of the arguments `given`, which is an object of names. */
  options(name, given, expected, others) {
    const last = given.at(-1);
    const options = last?.constructor === Object && !("re" in last) ? given.pop() : {};
    if (given.length > expected.length)
      throw new TypeError(`${name} takes ${expected.length} arguments, got ${given.length}`);
    for (const key of Object.keys(options))
      if (!others.includes(key) && !expected.some((p) => p.is_optional && p.name === key))
        throw new TypeError(`${name} has no option ${key}`);
    if (options.out !== undefined && !this.is_ours(options.out)) throw new TypeError(`${name}: out is no signal`);
    return options;
  }

  /** Calls `body` with the options and the values of the parameters; what was lent for it is freed. */
  taking(name, expected, given, others, body) {
    const lent = [];
    try {
      const options = this.options(name, given, expected, others);
      return body(this.values(name, expected, given, options, lent), options, lent);
    } finally {
      for (const x of lent) x.free();
    }
  }

  /** The signal that a row's routine writes to. */
  output({ form, size, length_at, is_complex }, values, inputs, { out, dx }, lent) {
    if (out) return out;
    if (form === "changed" && lent.includes(inputs[0])) return lent.splice(lent.indexOf(inputs[0]), 1)[0];
    if (form === "generated") return this.sized(values[length_at], dx, is_complex);
    const own = this.sized(...(size?.(...values) ?? []));
    return form === "traced" ? filled(own, true, () => this.library.run("dsp_alloc", own.record)) : own;
  }

  /** Calls a row's routine, its conditions being met. */
  perform(row, values, inputs, out, dx) {
    const { form, name, expected, needs, prefix, call, before, records, fails, failure, gives } = row;
    const is_traced = form === "traced";
    const plain = values.filter((_, i) => !is_signal(expected[i].type) && i !== row.length_at);
    const given = is_traced ? [out, ...values] : [...plain, ...inputs];
    const [routine, ...args] = call ? call(...given) : [prefix + name, ...plain];
    require(name, routine, needs, values);
    const seen = before?.(...values);
    if (form === "changed") this.begin(out, inputs[0], dx);
    const all = [...records(out, inputs), ...args].map(is_traced ? address_of : record_of);
    const status = this.library.exports[routine](...all);
    if (fails(status, out)) throw new DspError(routine, `${name}: ${failure}`);
    return gives ? gives(out, seen ?? status, ...values) : out;
  }

  /** The function of a row: parameters by place or by name, the latter among the options. */
  of_row(form, name, signature = "x: Samples", rule = {}) {
    const expected = parameters(signature);
    const length_at = form === "generated" ? expected.findIndex((p) => p.name === "length") : -1;
    const needs = needs_of(expected, rule);
    const row = { ...defaults, ...forms[form], ...rule, form, name, expected, length_at, needs };
    const body = (values, options, lent) => {
      const inputs = values.filter((_, i) => is_signal(expected[i].type));
      const out = this.output(row, values, inputs, options, lent);
      if (form === "changed" && inputs.indexOf(out) > 0) lent.push((inputs[inputs.indexOf(out)] = this.signal(out)));
      let result;
      filled(out, out !== options.out, () => (result = this.perform(row, values, inputs, out, options.dx)));
      if (row.gives && result.signal !== out) out.free();
      return result;
    };
    const in_full = (...given) => this.taking(name, expected, given, row.options, body);
    return form === "changed" && expected.length === 1 ? this.of_plain_row(row, in_full) : in_full;
  }

  /** The function of a row that changes one signal and takes nothing else, without lists of arguments: a call costs
   * next to nothing where signal and output exist. */
  of_plain_row({ name, needs, call, prefix, failure }, in_full) {
    const [routine, constant] = call?.() ?? [prefix + name];
    const { dsp_copy, [routine]: change } = this.library.exports;
    return (x, options) => {
      const out = options?.out;
      if (!this.is_ours(x) || !this.is_ours(out) || options.dx !== undefined)
        return options === undefined ? in_full(x) : in_full(x, options);
      require(name, routine, needs, [x]);
      if ((x !== out && dsp_copy(out.record, x.record) === -1) || change(out.record, constant) === -1)
        throw new DspError(routine, `${name}: ${failure}`);
      return out;
    };
  }
}

/** `out` when `body` succeeds; one of our own is freed when it does not. */
export function filled(out, is_own, body) {
  try {
    body(out);
    return out;
  } catch (error) {
    if (is_own) out.free();
    throw error;
  }
}

/** The conditions of a row: each says what is wrong with the values, if anything. */
function needs_of(expected, { needs = [] }) {
  const reals = expected.flatMap(({ type }, i) => (type === "Real" ? [i] : []));
  if (reals.length === 0) return needs;
  return [(...values) => reals.some((i) => values[i]?.is_complex) && "takes real samples, got complex ones", ...needs];
}

/** Throws if one of the conditions has something to say about the values. */
export function require(name, routine, needs, values) {
  for (const need of needs) {
    const wrong = need(...values);
    if (wrong) throw new DspError(routine, `${name} ${wrong}`);
  }
}

/** Numbers in an array that stays when memory grows. */
function numbers(samples, { exports }) {
  if (typeof samples !== "object" || samples?.length === undefined)
    throw new TypeError("samples are an array of numbers or a signal");
  if (ArrayBuffer.isView(samples)) return samples.buffer === exports.memory.buffer ? samples.slice() : samples;
  const wrong = Array.from(samples).findIndex((x) => typeof x !== "number");
  if (wrong >= 0) throw new TypeError(`samples are numbers, got ${typeof samples[wrong]} at ${wrong}`);
  return samples;
}
