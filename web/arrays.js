// Routines on plain arrays: traces of a display, circles and matrices. The signals that they take and give lend them
// their samples. Ranges are [start, stop), of which `stop` is the end unless stated.

import { choose } from "./names.js";
import { one_length, real, rising } from "./routines.js";
import { DspError } from "./signal.js";

/** Adds them to the routines `r`. */
export function add_arrays(r, { sized, made, lent, filled, require, written }) {
  const { library } = r;
  const { c } = library;
  const refuse = (routine, text) => { throw new DspError(routine, text); }; // prettier-ignore

  /** A signal of `length` samples that `routine` fills by their address. */
  const points = (length, routine, { dx = 1, is_complex = false } = {}) => {
    const out = sized(length, dx, is_complex);
    return filled(out, true, (record) => (c.dsp_alloc(record), length > 0 && routine(out.address)));
  };

  /** Calls `body` with a complex copy. */
  function as_complex(x, body) {
    const z = r.rtoc(x);
    try {
      return body(z);
    } finally {
      z.free();
    }
  }

  /** As many points as x has. */
  const shown = (x, routine) => points(x.length, (out) => routine(x.address, x.length, out), { dx: x.dx });

  const range_of = (name, { length }, start, stop) =>
    0 <= start && start <= stop && stop <= length ? [start, stop] : refuse(name, `[${start}, ${stop}) is no range of a trace of ${length} points`);

  /** The index that a search finds, with or without a band to leave out. */
  const found = (name, plain, skipping, x, { start = 0, stop, skip } = {}) =>
    lent([x], (trace) => {
      require(name, [real], [trace]);
      const range = range_of(plain, trace, start, stop ?? trace.length);
      if (skip && skip[0] <= range[0] && range[0] < skip[1] && range[1] <= skip[1])
        refuse(skipping, `the band [${skip}) leaves nothing of the range [${range})`);
      return skip ? c[skipping](trace.address, ...range, ...skip) : c[plain](trace.address, ...range);
    });

  return Object.assign(r, {
    find_max: (x, range) => found("find_max", "vfpd_FindMax", "vfpd_FindMax2", x, range),
    /** With `skip` null the first point is never looked at. */
    find_min: (x, range) => found("find_min", "vfpd_FindMin", "vfpd_FindMin2", x, { skip: [0, 0], ...range }),
    expand_linear: (n, first, last) => points(n, (out) => c.vfpd_ExpandLinear(out, n, first, last)),
    expand_log: (n, first, last) =>
      first > 0 && last > 0
        ? points(n, (out) => c.vfpd_ExpandLog(out, n, first, last))
        : refuse("vfpd_ExpandLog", `a logarithmic axis lies above 0, got ${first} to ${last}`),
    scale_to_fp: (x, lo, hi, out_lo, out_hi) =>
      lent([x], (trace) => shown(trace, (from, n, out) => c.vfpdb_ScaleToFP(from, n, lo, hi, out, out_lo, out_hi))),
    /** An Int32Array. */
    scale_to_int: (x, lo, hi, out_lo, out_hi) =>
      lent([x], ({ address, length }) => {
        const pairs = written(length + 1, (out) => c.vfpdb_ScaleToInt(address, length, lo, hi, out, out_lo, out_hi));
        return new Int32Array(pairs.buffer).slice(0, length);
      }),
    /** A centred moving average; `phase`: the points are phases, unwrapped within each window. */
    smooth: (x, width, { phase = false } = {}) =>
      lent([x], (trace) => {
        const { address, length, dx, is_complex } = trace;
        if (phase) require("smooth", [real], [trace]);
        if (!(width >= 3 && width % 2 === 1)) refuse("vfpd_Smooth", `smooth takes an odd width of 3 or more, got ${width}`);
        const routine = (out) =>
          is_complex ? c.vfpd_SmoothCpx(address, out, length, 0, length, width) : c.vfpd_Smooth(address, out, length, 0, length, width, phase);
        return points(length, routine, { dx, is_complex });
      }),
    /** Complex points as "level" or "return_loss" (dB), "magnitude", "phase" (degrees) or "swr". */
    format_buffer: (x, format) => {
      const chosen = choose("Format", format);
      return as_complex(x, (z) => shown(z, (from, n, out) => c.vfpd_FormatBuffer(chosen, from, out, 0, n)));
    },
    unwrap_phase: (x) => as_complex(x, (z) => shown(z, (from, n, out) => c.vfpd_UnwrapPhase(from, 0, n, out))),
    get_fpscr: () => c.get_fpscr(),
    set_fpscr: (value) => c.set_fpscr(value),
    set_runfast: (on) => c.set_runfast(on),

    circle_fit: (points) =>
      as_complex(points, (z) => {
        let fit;
        const status = (out) => library.exports.vfpd_CircleFit(z.address, 0, z.length, out, out + 16, out + 24);
        const [re, im, radius, rms] = written(4, (out) => (fit = status(out)));
        if (fit !== 0) refuse("vfpd_CircleFit", `no circle is near these ${z.length} points`);
        return { centre: { re, im }, radius, rms };
      }),
    /** A complex trace z, given at the places x, at the places xi along arcs. */
    arc_interp: (x, trace, xi) =>
      lent([x, xi], (at, wanted) =>
        as_complex(trace, (z) => {
          require("arc_interp", [one_length, rising], [at, z]);
          const routine = (out) =>
            c.CircularInterpolation(at.address, z.address, at.length, wanted.address, out, wanted.length);
          return points(wanted.length, routine, { dx: wanted.dx, is_complex: true });
        })),
    /** The product of complex matrices, whose samples lie row by row: of a, which has m rows, and b. */
    matrix_mult: (a, b, m) =>
      as_complex(a, (left) =>
        as_complex(b, (right) => {
          const [k, p] = [left.length / m, (right.length * m) / left.length];
          if (!Number.isInteger(k) || !Number.isInteger(p))
            refuse("MatrixMult", `there is no product of ${left.length} elements in ${m} rows and ${right.length}`);
          if (k > m) refuse("MatrixMult", `matrix_mult takes no more columns than rows on the left, got ${m} x ${k}`);
          return points(m * p, (out) => c.MatrixMult(left.address, right.address, out, m, k, p), { is_complex: true });
        })),
    /** The inverse of a square complex matrix, whose samples lie row by row. */
    invert: (matrix) => {
      const out = r.rtoc(matrix);
      const n = Math.sqrt(out.length);
      if (Number.isInteger(n) && library.exports.invert(out.address, n) !== 0) return out;
      out.free();
      return refuse("invert", "invert takes a square matrix that has an inverse: no pivot below 2.2e-12");
    },
  });
}
