// Routines on plain arrays: traces of a display, circles and matrices. Complex points may be real signals, too.

import { choose } from "./names.js";
import { one_length, real, rising } from "./routines.js";
import { DspError } from "./signal.js";

/** Adds them to the routines `r`. */
export function add_arrays(r, { lent, require, written }) {
  const { library, signal } = r;
  const { c } = library;
  const refuse = (routine, text) => { throw new DspError(routine, text); }; // prettier-ignore

  /** Signals of what `routine` writes to an address. */
  const points = (n, routine, dx) => signal(written(n, routine), { dx });
  const complex_points = (n, routine, dx) => signal(written(2 * n, routine), { dx, complex: true });

  /** Calls `body` with a complex copy. */
  function as_complex(x, body) {
    const z = r.rtoc(x);
    try {
      return body(z);
    } finally {
      z.free();
    }
  }

  /** The index that a search finds within a range [start, stop), with or without a band to leave out. */
  const found = (x, plain, skipping, { start = 0, stop, skip } = {}) =>
    lent([x], (trace) => {
      require(plain, [real], [trace]);
      const range = [start, stop ?? trace.length];
      if (!(0 <= start && start <= range[1] && range[1] <= trace.length))
        refuse(plain, `[${range}) is no range of a trace of ${trace.length} points`);
      if (skip && skip[0] <= start && start < skip[1] && range[1] <= skip[1])
        refuse(skipping, `the band [${skip}) leaves nothing of the range [${range})`);
      return skip ? c[skipping](trace.address, ...range, ...skip) : c[plain](trace.address, ...range);
    });

  return Object.assign(r, {
    find_max: (x, range) => found(x, "vfpd_FindMax", "vfpd_FindMax2", range),
    /** With `skip` null the first point is never looked at. */
    find_min: (x, range) => found(x, "vfpd_FindMin", "vfpd_FindMin2", { skip: [0, 0], ...range }),
    expand_linear: (n, first, last) => points(n, (out) => c.vfpd_ExpandLinear(out, n, first, last)),
    expand_log: (n, first, last) => {
      if (!(first > 0 && last > 0)) refuse("vfpd_ExpandLog", `a logarithmic axis lies above 0, got ${first} to ${last}`);
      return points(n, (out) => c.vfpd_ExpandLog(out, n, first, last));
    },
    scale_to_fp: (x, lo, hi, out_lo, out_hi) =>
      lent([x], ({ address, length, dx }) =>
        points(length, (out) => c.vfpdb_ScaleToFP(address, length, lo, hi, out, out_lo, out_hi), dx)),
    /** An Int32Array. */
    scale_to_int: (x, lo, hi, out_lo, out_hi) =>
      lent([x], ({ address, length }) => {
        const doubles = written(length, (out) => c.vfpdb_ScaleToInt(address, length, lo, hi, out, out_lo, out_hi));
        return new Int32Array(doubles.buffer).slice(0, length);
      }),
    /** A centred moving average; `phase`: the points are phases, unwrapped within each window. */
    smooth: (x, width, { phase = false } = {}) =>
      lent([x], (trace) => {
        const { address: at, length: n, dx, is_complex } = trace;
        if (phase) require("smooth", [real], [trace]);
        if (!(width >= 3 && width % 2 === 1)) refuse("vfpd_Smooth", `smooth takes an odd width of 3 or more, got ${width}`);
        if (is_complex) return complex_points(n, (out) => c.vfpd_SmoothCpx(at, out, n, 0, n, width), dx);
        return points(n, (out) => c.vfpd_Smooth(at, out, n, 0, n, width, phase), dx);
      }),
    /** Complex points as "level" or "return_loss" (dB), "magnitude", "phase" (degrees) or "swr". */
    format_buffer: (x, format) =>
      as_complex(x, ({ address, length, dx }) =>
        points(length, (out) => c.vfpd_FormatBuffer(choose("Format", format), address, out, 0, length), dx)),
    unwrap_phase: (x) =>
      as_complex(x, ({ address, length, dx }) => points(length, (out) => c.vfpd_UnwrapPhase(address, 0, length, out), dx)),
    get_fpscr: () => c.get_fpscr(),
    set_fpscr: (value) => c.set_fpscr(value),
    set_runfast: (on) => c.set_runfast(on),

    circle_fit: (z) =>
      as_complex(z, ({ address, length }) => {
        let status;
        const fit = (out) => (status = library.exports.vfpd_CircleFit(address, 0, length, out, out + 16, out + 24));
        const [re, im, radius, rms] = written(4, fit);
        if (status !== 0) refuse("vfpd_CircleFit", `no circle is near these ${length} points`);
        return { centre: { re, im }, radius, rms };
      }),
    /** A complex trace, given at the places x, at the places xi along arcs. */
    arc_interp: (x, trace, xi) =>
      lent([x, xi], (at, { address, length, dx }) =>
        as_complex(trace, (z) => {
          require("arc_interp", [one_length, rising], [at, z]);
          const routine = (out) => c.CircularInterpolation(at.address, z.address, at.length, address, out, length);
          return complex_points(length, routine, dx);
        })),
    /** The product of complex matrices, whose samples lie row by row: of a, which has m rows, and b. */
    matrix_mult: (a, b, m) =>
      as_complex(a, (left) =>
        as_complex(b, (right) => {
          const [k, p] = [left.length / m, (right.length * m) / left.length];
          if (!Number.isInteger(k) || !Number.isInteger(p))
            refuse("MatrixMult", `there is no product of ${left.length} elements in ${m} rows and ${right.length}`);
          if (k > m) refuse("MatrixMult", `matrix_mult takes no more columns than rows on the left, got ${m} x ${k}`);
          return complex_points(m * p, (out) => c.MatrixMult(left.address, right.address, out, m, k, p));
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
