/* dsp - routines for measurement signals: one record, plain functions, C linkage.
 *
 * SPDX-License-Identifier: MIT
 *
 * Conventions
 * -----------
 * Status      Routines return 0 for success and -1 for failure. Reasons for -1 are lengths that do not match, a
 *             representation that the routine does not accept, an argument out of range, and lack of memory.
 *             A routine that fails leaves its output valid: it can be sized again or destroyed. Its samples are then
 *             undefined, and `length` and `is_complex` may have changed. If memory ran out, `data` may be null while
 *             `length` still holds the number that was asked for: set `length`, or destroy the record, before it
 *             serves as an input.
 * Order       Signals come first, inputs before outputs (but dsp_copy, dsp_copy_at_most and dsp_append take the
 *             destination first), then integers and numbers, then optional results and states.
 * Counts      Lengths are counted in samples; a complex sample counts once. Only `capacity` counts doubles. A negative
 *             length means an empty signal. A size that cannot be represented counts as lack of memory.
 * Frequency   Filter routines take cycles per sample (0.5 is the Nyquist frequency). All others take cycles per unit
 *             of `dx`. A transform of N samples changes `dx` to 1/(dx N), and a `dx` of 0 to 1e100.
 * Sharing     An output may be the same record as an input, or another record on the same buffer, unless the routine
 *             says otherwise. The result is the same. Buffers that overlap only in part are not supported. If an output
 *             grows, other records on its buffer point to memory that has been released.
 * Infinity    1e100 stands for a result that has no bound, such as 1/0, where a routine says so; some routines also
 *             limit components to +-1e100. NaN passes through the formulas and never causes undefined behaviour.
 * Names       dsp_ manages signals, dspi_ changes a signal in place, dspb_ makes one signal of two, dspbs_ makes a
 *             scalar of two signals, dspc_ creates a signal, dspd_ filters with a state, dsph_ computes spectra and
 *             converts sample rates, dsps_ computes statistics, dspu_ makes one signal of another, vfp... works on
 *             plain trace arrays, cf_... is the routine of the same name on a plain array.
 * Threads     One thread at a time: tables, windows and scratch signals belong to the process and have no lock.
 *
 * Each family has a section below, with an introduction and an example.
 */
#ifndef DSP_DSP_H
#define DSP_DSP_H

#include <stdint.h>

#if defined(_WIN32)
#if defined(DSP_BUILDING)
#define DSP_API __declspec(dllexport)
#elif defined(DSP_STATIC)
#define DSP_API
#else
#define DSP_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define DSP_API __attribute__((visibility("default")))
#else
#define DSP_API
#endif

#define DSP_VERSION_MAJOR 2
#define DSP_VERSION_MINOR 5
#define DSP_VERSION_PATCH 0

#ifdef __cplusplus
extern "C" {
#endif

/* ============================================================================================================
 * Signals (core)
 *
 * A `dsp_vec` is a run of doubles, real or complex, with a sample spacing. Its life:
 *
 *     dsp_vec v;
 *     dsp_init(&v);              // empty, dx 1
 *     v.length = 1024;           // say what is wanted ...
 *     dsp_alloc(&v);             // ... and get a buffer for it
 *     ... fill v.data, call routines ...
 *     dsp_destroy(&v);           // releases the buffer; v is empty again
 *
 * A record can also borrow memory of the caller: set `data`, `length` and `is_complex`, and leave `capacity` at 0. The
 * library never releases a borrowed buffer. Only routines that work in place write to it, as long as the result fits;
 * an output gets a buffer of the library's own instead, however large the borrowed one is.
 * ========================================================================================================== */

/** One complex sample: the layout of C's double _Complex and C++'s std::complex<double>. */
typedef struct dsp_complex {
  double re; /**< real part */
  double im; /**< imaginary part */
} dsp_complex;

/** A signal: real or complex samples with the spacing `dx`, in a buffer of the library's or of the caller's. */
typedef struct dsp_vec {
  double dx;        /**< sample spacing; 1.0 after dsp_init */
  double *data;     /**< real: length doubles; complex: 2 length doubles, re, im, re, im, ... */
  int32_t capacity; /**< doubles that the library owns at data; 0 or less: the buffer is borrowed, or there is none */
  int32_t length;   /**< number of samples */
  uint32_t is_complex; /**< 0 real, anything else complex; routines write 1 */
  int32_t reserved;    /**< set to 0 by dsp_init; no routine reads or copies it */
} dsp_vec;

/** Returns 0. Calling it is optional: the library needs no start-up. */
DSP_API int32_t dsp_lib_init(void);

/** Returns 205: release 2.5. */
DSP_API int32_t dsp_version(void);

/** Makes *v the empty real signal: dx 1, everything else 0. Always returns 0. It releases nothing: a buffer that *v
 * owns would be lost. */
DSP_API int32_t dsp_init(dsp_vec *v);

/** Releases the buffer if it is owned, and resets *v as dsp_init does. Always returns 0. */
DSP_API int32_t dsp_destroy(dsp_vec *v);

/** Makes room for the `length` and `is_complex` that *v states. A buffer that is large enough is kept with its contents
 * and never shrinks; otherwise it is replaced and the contents are lost. -1: no memory, or more than INT32_MAX doubles;
 * `data` is then null and `capacity` 0, and `length` and `is_complex` keep the wanted values. */
DSP_API int32_t dsp_alloc(dsp_vec *v);

/** As dsp_alloc, but keeps the samples that `old_length` and `old_is_complex` describe. Those of a borrowed buffer are
 * copied. -1: as dsp_alloc, and the samples are lost. An owned block that the heap could not resize is then leaked; it
 * is released if the wanted size was above INT32_MAX doubles. */
DSP_API int32_t dsp_realloc(dsp_vec *v, int32_t old_length, uint32_t old_is_complex);

/** Hooks that replace the heap for all buffers of signals, process-wide, null at first. A hook works on the record
 * itself; the library sets `capacity` after it returns.
 * dsp_alloc calls the allocation hook with the wanted `length` and `is_complex` in the record. If `capacity` is
 * positive, `data` is a buffer that the hook has to release, also if it then fails; if not, the hook must leave the old
 * buffer alone. It sets `data` to a buffer of at least the needed number of doubles, or to null.
 * dsp_realloc calls the reallocation hook, whose further arguments describe the contents to keep. For a borrowed or
 * absent buffer `data` is null; the library then copies the borrowed samples itself. On failure the hook sets `data` to
 * null, and has to release the old buffer itself if that is wanted.
 * dsp_destroy calls the release hook for an owned buffer, to release `data`.
 * Tables of the transforms, the list of cached windows, the records within a dsph_rsmp_state and the work memory of the
 * polynomial routines still come from the heap of the C library. */
typedef void (*dsp_alloc_fn)(dsp_vec *v);
typedef void (*dsp_realloc_fn)(dsp_vec *v, int32_t old_length, uint32_t old_is_complex);
typedef void (*dsp_free_fn)(dsp_vec *v);

/** Install a hook (null: back to the heap) and store the previous one in *previous unless that is null. Always return
 * 0. Install hooks before the first signal is sized: a buffer must be released by the same heap that it came from. */
DSP_API int32_t dsp_lib_alloc(dsp_alloc_fn hook, dsp_alloc_fn *previous);
DSP_API int32_t dsp_lib_realloc(dsp_realloc_fn hook, dsp_realloc_fn *previous);
DSP_API int32_t dsp_lib_free(dsp_free_fn hook, dsp_free_fn *previous);

/** dst = src: samples, dx and representation. -1: no memory. */
DSP_API int32_t dsp_copy(dsp_vec *dst, const dsp_vec *src);

/** dst = the first `count` samples of src, or all if there are fewer. -1: no memory. */
DSP_API int32_t dsp_copy_at_most(dsp_vec *dst, const dsp_vec *src, int32_t count);

/** dst = `count` samples of src from `start` on, with its dx and representation. Start and count are clamped to the
 * samples that exist. dst may be src: the signal is cut in place. Note the order: source first. -1: no memory. */
DSP_API int32_t dspu_subvec(const dsp_vec *src, dsp_vec *dst, int32_t start, int32_t count);

/** Appends src to dst, which keeps its dx and becomes complex if src is. -1: no memory; or src is dst, or a record on
 * dst's buffer (nothing changes). */
DSP_API int32_t dsp_append(dsp_vec *dst, const dsp_vec *src);

/** Orders two signals. *result is 0 if dx and all samples agree within `tolerance`; otherwise it is 1 or -1, the sign
 * of the first difference a - b beyond the tolerance: dx first, then sample by sample, the real before the imaginary
 * part. A real sample counts as complex with imaginary part 0. Differences that are NaN count as agreement. -1: the
 * lengths differ, *result is untouched. */
DSP_API int32_t dsp_cmp(const dsp_vec *a, const dsp_vec *b, double tolerance, int32_t *result);

/** Releases all caches of the process: filter spectra, tables of transforms, work signals, windows. Returns 0. The next
 * call of a routine rebuilds what it needs; the state that calls of dspd_hwfilt without a state share starts from
 * silence again. It may be called at any time when no other routine runs. Unloading the library without it leaves the
 * caches allocated, 300 kB after typical use. */
DSP_API int32_t dsp_free_internal(void);

/* ============================================================================================================
 * Arithmetic and representations (elementwise)
 *
 * These routines change one signal in place, sample by sample; `length` and `dx` stay. A routine that turns a real
 * signal into a complex one grows its buffer. Only these routines, dspi_zero and the dspu_ routines can fail (-1: no
 * memory).
 *
 *     dspi_fft(&v, 0);           // complex bins ...
 *     dspi_scale(&v, 2.0);
 *     dspi_mag(&v);              // ... to real amplitudes
 *     dspi_db(&v, 20.0);         // ... to decibels
 *
 * A real sample x combined with a complex constant or result counts as (x, 0). A polar signal is a complex signal whose
 * pairs are (magnitude, phase in radians): dspi_rtop makes it, dspi_ptor converts it back, and only the caller knows.
 * Results are the same, bit for bit, on every processor, but for decibels, the phase of complex samples, the square
 * root of complex samples and conversions from polar, which use mathematical functions.
 * ========================================================================================================== */

/** Decibels: factor log10(x), with `factor` 10 for powers and 20 for amplitudes. A real sample below the smallest
 * normal double (zero, negative, subnormal) gives factor times -307.6526555685888. A complex sample z gives (factor
 * log10 |z|, factor times the phase times log10 e), its parts limited to +-1e100; if |z|^2 is below the smallest normal
 * double, (factor times -307.65..., 0). */
DSP_API int32_t dspi_db(dsp_vec *v, double factor);

/** Real parts; the signal becomes real. */
DSP_API int32_t dspi_real(dsp_vec *v);

/** Imaginary parts; the signal becomes real. The samples of a real signal become 0. */
DSP_API int32_t dspi_imag(dsp_vec *v);

/** x becomes (x, 0); a complex signal stays as it is. -1: no memory. */
DSP_API int32_t dspi_rtoc(dsp_vec *v);

/** Complex conjugate; a real signal stays as it is. */
DSP_API int32_t dspi_conj(dsp_vec *v);

/** -x. */
DSP_API int32_t dspi_neg(dsp_vec *v);

/** x + c; for complex samples c is added to the real part only. */
DSP_API int32_t dspi_offset(dsp_vec *v, double c);

/** k x. */
DSP_API int32_t dspi_scale(dsp_vec *v, double k);

/** (c_re + i c_im) z; the signal becomes complex, unless it is empty. -1: no memory. */
DSP_API int32_t dspi_cscale(dsp_vec *v, double c_re, double c_im);

/** 1/x, and 1e100 for 0; for complex samples the conjugate over the squared magnitude, and (0, -0) for 0. A sample with
 * a part beyond +-1e100 is only conjugated and scaled by 1e-100. Magnitudes below 1.5e-154 lose digits, since the
 * square is subnormal; below 7.5e-155 its reciprocal is infinite, so that parts are infinite or, where they were 0,
 * NaN; below 1.5e-162 the square is 0, and the result is the conjugate times 1e100. */
DSP_API int32_t dspi_recip(dsp_vec *v);

/** Square root. Negative real samples give 0 and a real signal stays real. Complex samples give the principal root; the
 * magnitude counts as 1e100 if a part is beyond +-1e100, loses digits below 1.5e-154, where its square underflows, and
 * is 0 below 1.5e-162. */
DSP_API int32_t dspi_sqrt(dsp_vec *v);

/** x x, and 1e100 for a real sample beyond +-1e100. The parts of complex samples are limited to +-1e100 first. */
DSP_API int32_t dspi_square(dsp_vec *v);

/** i z; the signal becomes complex, unless it is empty. -1: no memory. */
DSP_API int32_t dspi_timesi(dsp_vec *v);

/** Clamps every value into [lo, hi], or [hi, lo] if lo is the larger; the parts of complex samples are clamped
 * separately. *clipped, unless null, becomes 1 if any value changed, else 0. NaN stays and does not count as changed.
 */
DSP_API int32_t dspi_limit(dsp_vec *v, double lo, double hi, int32_t *clipped);

/** Sets all samples to 0. A buffer that is too small or borrowed is replaced first. -1: no memory. */
DSP_API int32_t dspi_zero(dsp_vec *v);

/** Magnitude, right to one unit in the last place; as with hypot no square overflows or underflows. The signal becomes
 * real. */
DSP_API int32_t dspi_mag(dsp_vec *v);

/** Squared magnitude, 1e100 for a sample with a part beyond +-1e100; the signal becomes real. */
DSP_API int32_t dspi_magsq(dsp_vec *v);

/** Phase in radians, in [-pi, pi]; the signal becomes real. Negative real samples give pi, all others 0 (also NaN). A
 * complex zero gives 0, whatever its signs. */
DSP_API int32_t dspi_phase(dsp_vec *v);

/** To polar: (magnitude, phase) as dspi_mag and dspi_phase compute them. The signal becomes complex. -1: no memory. */
DSP_API int32_t dspi_rtop(dsp_vec *v);

/** From polar: (m, p) becomes (m cos p, m sin p). A real signal stays as it is. */
DSP_API int32_t dspi_ptor(dsp_vec *v);

/** As dspi_mag, dspi_magsq and dspi_sqrt, into `out`, which gets the length and dx of `in` and may be `in`. -1: no
 * memory. */
DSP_API int32_t dspu_mag(const dsp_vec *in, dsp_vec *out);
DSP_API int32_t dspu_magsq(const dsp_vec *in, dsp_vec *out);
DSP_API int32_t dspu_sqrt(const dsp_vec *in, dsp_vec *out);

/* ============================================================================================================
 * Two signals into one (elementwise)
 *
 * out = a op b, sample by sample. `out` may be `a` or `b`; it gets their length and the mean of their `dx`, and is
 * complex if either operand is. A real operand combined with a complex one has imaginary parts 0.
 *
 *     dspb_sub(&measured, &background, &measured);
 *     dspb_div(&measured, &reference, &ratio);
 *
 * -1: the lengths differ (the output is untouched), or no memory. Complex products and quotients are computed by the
 * plain formulas, without scaling and without recovery of infinities.
 * ========================================================================================================== */

/** a + b and a - b. Here the lengths may differ: the shorter operand is extended with zeros. */
DSP_API int32_t dspb_add(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);
DSP_API int32_t dspb_sub(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** a b. */
DSP_API int32_t dspb_mul(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** a times the conjugate of b. */
DSP_API int32_t dspb_conj_mul(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** a/b. Division by zero gives 0 if `a` is 0 too, else 1e100 whatever the sign of `a`, or (1e100, 1e100) for a complex
 * result. A complex divisor counts as zero if its squared magnitude underflows to 0 or is NaN; a real NaN gives NaN. */
DSP_API int32_t dspb_div(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** b + w (a - b): an exponential average b, updated with the new value a of weight w. w is not checked. */
DSP_API int32_t dspb_avg_add(const dsp_vec *a, const dsp_vec *b, dsp_vec *out, double w);

/** The larger or smaller sample of each pair. Real operands are compared by value. Otherwise samples are compared by
 * squared magnitude, which counts as 1e100 if a part is beyond +-1e100, and the whole sample is taken. Equal samples,
 * and comparisons with NaN, give b. */
DSP_API int32_t dspb_max(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);
DSP_API int32_t dspb_min(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** The product of the polynomials whose coefficients are the samples: full convolution, a.length + b.length - 1 samples
 * (none if either is empty), with the dx of a. The lengths may differ. The time grows with their product. */
DSP_API int32_t dspb_pmul(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** The complex signal with the samples (re[i], im[i]). -1: also for a complex input. */
DSP_API int32_t dspb_ritoc(const dsp_vec *re, const dsp_vec *im, dsp_vec *out);

/** The dot product, one sample: the sum of a[i] b[i] in order, without conjugation; 0 for empty operands. `out` keeps
 * its dx. */
DSP_API int32_t dspbs_dot(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/* ============================================================================================================
 * Elementary functions (elementwise)
 *
 * In place; length, dx and representation stay. There are no domain errors: outside its domain a function gives a fixed
 * value, which is 0, 1e100 or its value at the smallest normal double. For real samples dspi_exp, dspi_log and
 * dspi_log10 are right to one unit in the last place on every processor; the other functions are the C library's.
 *
 *     dspi_log10(&v);                          // -307.65 at least, where log10 gives minus infinity
 *     dspi_addcos(&v, 0, 50.0, 0.1, 0.0);      // plus a hum of 50 cycles per unit of dx
 *
 * The first six take real signals only: -1 for complex ones, which stay unchanged. The others always return 0.
 * ========================================================================================================== */

/** Inverse sine and cosine; 0 where |x| > 1. */
DSP_API int32_t dspi_asin(dsp_vec *v);
DSP_API int32_t dspi_acos(dsp_vec *v);

/** Hyperbolic sine and cosine; +-1e100 and 1e100 where |x| > 230.25850929940458 = 100 ln 10. */
DSP_API int32_t dspi_sinh(dsp_vec *v);
DSP_API int32_t dspi_cosh(dsp_vec *v);

/** Bessel functions of the second kind, order 0 and 1; 0 where x <= 0. */
DSP_API int32_t dspi_besy0(dsp_vec *v);
DSP_API int32_t dspi_besy1(dsp_vec *v);

/** e^x; 1e100 (for complex samples the magnitude) where the real part is above 230.25850929940458. */
DSP_API int32_t dspi_exp(dsp_vec *v);

/** 10^x, computed as e to the rounded product x ln 10: that rounding costs up to 4 units in the last place for |x| up
 * to 1, and up to 1100 for the largest |x|. The result (for complex samples its magnitude) is 1e100 where the real part
 * is above 100. Two oddities are kept: a real sample below -1e100 ends the conversion, so that it and all later ones
 * stay as they are; a complex sample with such a real part gets the magnitude -1e100. */
DSP_API int32_t dspi_exp10(dsp_vec *v);

/** Natural logarithm. -708.3964185322641 for a real sample below the smallest normal double; (-708.39..., 0) for a
 * complex sample whose squared magnitude is below it. The squared magnitude counts as 1e100 if a part is beyond
 * +-1e100; the real part of the result is then 115.12925464970229. */
DSP_API int32_t dspi_log(dsp_vec *v);

/** Common logarithm: dspi_db with factor 1. */
DSP_API int32_t dspi_log10(dsp_vec *v);

/** Flag of dspi_addcos. */
enum {
  DSP_ADDCOS_EXPONENTIAL = 1 /**< adds the sine to the imaginary parts as well */
};

/** Adds amp cos(phase + 2 pi freq dx k) to sample k, `freq` in cycles per unit of dx. With DSP_ADDCOS_EXPONENTIAL a
 * complex signal also gets the sine in its imaginary parts: a complex exponential is added. The accuracy is that of
 * dspc_cos. */
DSP_API int32_t dspi_addcos(dsp_vec *v, int32_t flags, double freq, double amp, double phase);

/* ============================================================================================================
 * Order, length and calculus (elementwise)
 *
 * In place; the two parts of a complex sample move together.
 *
 *     dspi_zpad2(&v, 4096, DSP_PAD_CENTRE | DSP_PAD_UNSCALED);    // zeros on both sides
 *     dspi_fft(&v, 0);
 *     dspi_swap_halves(&v);                                       // frequency 0 in the middle
 *
 * -1: no memory, an invalid mode, or a complex signal where a routine says real only.
 * ========================================================================================================== */

/** Modes of dspi_zpad2 and dspi_unzpad: one of the first three and one of the others. Further bits are ignored. */
enum {
  DSP_PAD_SCALED = 0,      /**< samples times new length / old length */
  DSP_PAD_ROOT_SCALED = 1, /**< samples times the square root of that */
  DSP_PAD_UNSCALED = 2,    /**< samples as they are; 3 is invalid */
  DSP_PAD_FRONT = 0x000,   /**< the samples lie at the front */
  DSP_PAD_CENTRE = 0x100,  /**< in the middle: sample n/2 of the shorter at sample n/2 of the longer signal */
  DSP_PAD_BACK = 0x200,    /**< at the end */
  DSP_PAD_SPLIT = 0x300    /**< the larger first half at the front, the rest at the end: for spectra */
};

/** Reverses the order. */
DSP_API int32_t dspi_rev(dsp_vec *v);

/** Drops the first k samples, k clamped into [0, length]. -1: no memory (a borrowed buffer is replaced by a copy). */
DSP_API int32_t dspi_shift(dsp_vec *v, int32_t k);

/** Sorts; equal samples may change places. Real samples are sorted by value; complex ones by squared magnitude, to
 * which a part beyond +-1e100 adds 1e200, then by real, then by imaginary part. Samples with a NaN come last. The time
 * never grows faster than n log n. */
DSP_API int32_t dspi_sort(dsp_vec *v);

/** dspi_swap_halves moves the first of N samples to N/2 (rounded down), which centres a spectrum; dspi_swap_halves2
 * undoes it. For even N both exchange the halves. */
DSP_API int32_t dspi_swap_halves(dsp_vec *v);
DSP_API int32_t dspi_swap_halves2(dsp_vec *v);

/** Appends zeros up to `length`; never shortens. -1: no memory. */
DSP_API int32_t dspi_zpad(dsp_vec *v, int32_t length);

/** Lengthens the signal to `length`, and places and scales the old samples as `mode` says. Nothing happens if the
 * signal is that long already. -1: no memory, or an invalid mode (the signal is then longer, its samples undefined). */
DSP_API int32_t dspi_zpad2(dsp_vec *v, int32_t length, int32_t mode);

/** The inverse: keeps the `length` samples that dspi_zpad2 would have placed, and scales by new length / old length or
 * its root. Nothing happens if there are no more than `length`. A length of 0 or less leaves none. -1: an invalid mode
 * (the signal is unchanged). */
DSP_API int32_t dspi_unzpad(dsp_vec *v, int32_t length, int32_t mode);

/** Completes the spectrum of a real signal from its lower half: n samples become 2 (n - 1), or 2 n - 1 with `odd`; the
 * new ones are the conjugates of their mirror images. dspi_recon is the even form and leaves fewer than 3 samples as
 * they are. -1: no memory. */
DSP_API int32_t dspi_recon(dsp_vec *v);
DSP_API int32_t dspi_orecon(dsp_vec *v, int32_t odd);

/** (x[i] - x[i-1])/dx with x[-1] = 0; a dx of 0 multiplies by 1e100 instead. */
DSP_API int32_t dspi_differ(dsp_vec *v);

/** dx (x[0] + ... + x[i]). */
DSP_API int32_t dspi_integ(dsp_vec *v);

/** Derivative of the polynomial whose coefficients, in ascending powers, are the samples: i x[i] moves to i - 1, and
 * there is one sample less. */
DSP_API int32_t dspi_pdiffer(dsp_vec *v);

/** Real only. Unwraps a phase: each sample is moved by whole turns to within pi of the one before it, the first to
 * within pi of 0. NaN and infinite samples become NaN, and the next one refers to the last finite one. */
DSP_API int32_t dspi_unwrap(dsp_vec *v);

/** The same relative to the mean of the last `window` outputs, or of all so far if they are fewer. 1 is dspi_unwrap, 0
 * wraps every sample into [-pi, pi]. -1: also for a negative window. */
DSP_API int32_t dspi_unwrap_wnd(dsp_vec *v, int32_t window);

/** Crossings that dspi_edge finds; both may be combined. */
enum {
  DSP_EDGE_RISING = 1, /**< from a to b with a <= level < b */
  DSP_EDGE_FALLING = 2 /**< from a to b with b < level <= a */
};

/** Real only. Replaces the signal by the positions where it crosses `level`: the interpolated index times dx, in order.
 * dx becomes 1. Other bits of `mode` are ignored. */
DSP_API int32_t dspi_edge(dsp_vec *v, int32_t mode, double level);

/* ============================================================================================================
 * Generators (elementwise)
 *
 * The caller sets length, dx and representation; the generator sizes the buffer and writes every sample.
 *
 *     v.length = 1000; v.dx = 1e-6; v.is_complex = 0;
 *     dspc_cos(&v, 50e3, 0.0);       // 50 kHz sampled at 1 MHz
 *
 * -1: no memory.
 * ========================================================================================================== */

/** offset, offset + slope dx, ... by repeated addition; complex signals get imaginary parts 0. */
DSP_API int32_t dspc_line(dsp_vec *v, double slope, double offset);

/** cos(phase + 2 pi freq dx k), `freq` in cycles per unit of dx; complex signals get imaginary parts 0. Every 256
 * samples the angle is computed afresh; in between a recurrence follows it to about 1e-15. The angle itself carries the
 * rounding of 2 pi freq dx and of its product with k: that is up to 2e-16 of the angle, for instance 5e-10 after a
 * million samples of a high frequency. */
DSP_API int32_t dspc_cos(dsp_vec *v, double freq, double phase);

/** The complex exponential of the same angle; on a real signal the same as dspc_cos. */
DSP_API int32_t dspc_cexp(dsp_vec *v, double freq, double phase);

/* ============================================================================================================
 * Fourier transforms (fft)
 *
 * Between time and frequency, in place, for records of any length. All transforms follow one convention: forward
 * X[k] = 1/N sum x[n] exp(-2 pi i k n/N), inverse x[n] = sum X[k] exp(+2 pi i k n/N). So a bin of a forward transform
 * is the amplitude of its frequency, and the inverse undoes the forward transform. `dx` becomes 1/(dx N): bin k lies at
 * frequency k dx. A dx of 0 becomes 1e100. The spectrum of a real signal is its lower half, N/2 + 1 bins; the others
 * are their conjugates.
 *
 *     v.length = 1000; v.dx = 1e-6;             // a real record at 1 MHz
 *     dspi_rdft(&v);                            // complex, 501 bins of 1 kHz
 *     for (k = 0; k < v.length; k++) ...        // frequency k * v.dx
 *     dspi_irdft(&v, 0);                        // the record again; 1 if its length had been odd
 *
 * Cost. From some hundred samples on, a sample of a length whose prime factors are 13 at most takes up to twice the
 * time that it takes in a power of two. Other lengths take four to eight times as long: most go through two transforms
 * of a fast length of at least 2N - 2. Real signals of even length take half the time of complex ones, those of odd
 * length the same time.
 *
 * Tables. The first transform of a length builds them, in less time than 30 later transforms take. Tables and work area
 * hold about 2N doubles for a power of two, 5N for other lengths of small prime factors, and 20N for the rest. Those of
 * powers of two are kept until dsp_free_internal. Of the other lengths, the sixteen used last are kept, up to 256 MB of
 * each kind of table (32 MB where addresses have 32 bits).
 *
 * Accuracy. Relative errors (root mean square) are about 0.7e-16 times the square root of log2 N, and up to twice that
 * where the prime factors are not small. Sums are formed before they are scaled, so that samples beyond 1e308/N may
 * overflow, forward and inverse. A NaN or infinite sample spreads over the whole result.
 *
 * Limits. No buffer exceeds INT32_MAX doubles, so the longest transform has 2^30 - 1 samples. -1 for lack of memory
 * leaves the samples undefined.
 * ========================================================================================================== */

/** Transform of a signal whose length is a power of two: forward if `inverse` is 0, else inverse. The result is
 * complex, but a single sample stays as it is. The forward transform of a real signal takes less time; a borrowed
 * buffer of 2 and more real samples is replaced by one of the library's. -1: another length (0 too; nothing changes),
 * no memory. */
DSP_API int32_t dspi_fft(dsp_vec *v, uint32_t inverse);

/** Moves sample i to the index whose bits are those of i in reverse order, for a length that is a power of two; a
 * second call restores the order. dx and representation stay. -1: another length (nothing changes), no memory for the
 * table. */
DSP_API int32_t dspi_bitrev(dsp_vec *v);

/** dspi_bitrev, and every sample times 1/length. */
DSP_API int32_t dspi_bitrev_scale(dsp_vec *v);

/** dspi_fft in place on a plain array of `length` samples: re, im, re, im, ... -1: as dspi_fft, and for real data of 2
 * and more samples, whose result would not fit into the array. */
DSP_API int32_t cf_dspi_fft(double *data, int32_t length, uint32_t is_complex, uint32_t inverse);

/** Half spectrum of a real signal whose length N is a power of two: the N/2 + 1 bins that dspi_fft gives, in half its
 * time. The buffer grows to the 2N doubles of a full spectrum. A single sample stays real. Bins 0 and N/2 have
 * imaginary part 0. -1: complex signal or another length (nothing changes), no memory. */
DSP_API int32_t dspi_rfft(dsp_vec *v);

/** Real signal of N = 2(length - 1) samples from its half spectrum, N a power of two; one bin gives one sample. The
 * imaginary parts of bins 0 and N/2 are ignored. -1: no memory, no bins, or N not a power of two (the signal is then
 * the full spectrum of N bins). */
DSP_API int32_t dspi_irfft(dsp_vec *v);

/** Transform of any length, otherwise as dspi_fft. For 0 and 1 samples only dx is inverted. Complex samples are
 * transformed where they lie. -1: no memory; above 2^29 samples also a length that would take two transforms of 2^31
 * samples or more. */
DSP_API int32_t dspi_dft(dsp_vec *v, int32_t inverse);

/** Half spectrum of a real signal of any length N: N/2 + 1 bins, rounded down. Bin 0 and, for even N, bin N/2 have
 * imaginary part 0. For 0 and 1 samples only dx is inverted, and the signal stays real. -1: complex signal (nothing
 * changes), no memory. */
DSP_API int32_t dspi_rdft(dsp_vec *v);

/** Inverse of dspi_rdft: 2(length - 1) real samples, or one more if `odd` is not 0 (a half spectrum does not tell). An
 * empty signal and a single bin keep their number of samples: they become real, and dx is inverted. -1: no memory. */
DSP_API int32_t dspi_irdft(dsp_vec *v, uint32_t odd);

/** Flags of dspi_dct; they may be combined. */
enum {
  DSP_DCT_INVERSE = 1,   /**< undoes the transform (type III) */
  DSP_DCT_NORMALISED = 2 /**< the normalised form: twice the other, and y[0] divided by sqrt 2 */
};

/** Cosine transform of a real signal of any length N: y[k] = 1/N sum x[n] cos(pi k (2n + 1)/(2N)) (type II). dx becomes
 * 1/(2N dx), or 5e99 for a dx of 0; for an empty signal 0.5/dx, or 1e100. Tables are kept as above. -1:
 * complex signal (nothing changes), no memory. */
DSP_API int32_t dspi_dct(dsp_vec *v, int32_t flags);

/** Hilbert transform of any length: delays every frequency by a quarter of its period, so that a cosine becomes a sine.
 * The constant and, for an even length, the highest frequency are removed. Representation and dx stay. -1: no memory.
 */
DSP_API int32_t dspi_hilbert(dsp_vec *v);

/** Analytic signal of any length: the signal plus i times its Hilbert transform. Its magnitude is the envelope, its
 * phase the instantaneous phase. The result is complex, but a single sample stays as it is; dx stays. -1: no memory. */
DSP_API int32_t dspi_analytic(dsp_vec *v);

/* ============================================================================================================
 * Windows (window)
 *
 * A window weights the samples of a record before a transform, so that a line leaks less into distant bins:
 *
 *     dspi_window(&v, DSP_WINDOW_HANN, DSP_WND_AMPLITUDE);      // mean 1: a line shows its amplitude
 *     dspi_rfft(&v);
 *     dsp_window_enbw(&bins, DSP_WINDOW_HANN, n);               // a bin takes in the noise of bins v.dx
 *
 * (dsph_fft does the first two in one call.) Windows of the catalogue are periodic: n samples are one period, and the
 * centre lies on sample n/2. After weighting, the halves of the record are swapped. This brings the centre to sample 0,
 * so that the phases of the bins refer to the middle of the record. The 16 windows made last are kept; a kept window
 * costs one product per sample.
 *
 * The catalogue. Levels are in dB, widths in bins of 1/(n dx), for long windows.
 *
 *     type                           side lobe      ENBW    -3 dB     main     ripple
 *                                      highest               width     lobe   in 1/2 bin
 *      0  uniform                      -13.3    1.0000    0.886     2.00      3.922
 *      1  triangular (Bartlett)        -26.5    1.3333    1.276     4.00      1.824
 *      2  Hann                         -31.5    1.5000    1.441     4.00      1.424
 *      3  Hamming                      -42.7    1.3628    1.303     4.00      1.751
 *      4  Blackman                     -58.1    1.7268    1.644     6.00      1.099
 *      5  Blackman-Harris, 3 terms     -71.5    1.7037    1.619     6.00      1.135
 *      6  Blackman-Harris, 4 terms     -93.3    2.0212    1.915     8.00      0.812
 *      7  Gausstop                    -125.4    2.2153    2.095    10.00      0.680
 *      8  flat-top, 4 terms            -70.4    3.4279    3.388     8.00      0.010
 *      9  flat-top, 5 terms            -95.1    3.8221    3.772    10.00      0.006
 *     10  flat-top, 6 terms           -116.8    4.2316    4.173    12.00      0.004
 *     11  flat-top, 7 terms           -144.1    4.5500    4.484    14.00      0.003
 *     12  flat-top P501               -120.7    4.1794    4.121    12.00      0.004
 *     13  flat-top P601               -147.4    4.5124    4.446    14.00      0.003
 *     14  Kaiser  70 dB                -70.0    1.7995    1.709     6.34      1.018
 *     15  Kaiser  80 dB                -80.0    1.9084    1.810     7.12      0.908
 *     16  Kaiser  90 dB                -90.0    2.0103    1.905     7.91      0.821
 *     17  Kaiser 100 dB               -100.0    2.1065    1.994     8.69      0.749
 *     18  Kaiser 110 dB               -110.0    2.1979    2.079     9.44      0.690
 *     19  Kaiser 120 dB               -120.0    2.2851    2.161    10.22      0.639
 *     20  Gauss 60 dB                  -60.0    1.7869    1.682     7.41      1.059
 *     21  Gauss 70 dB                  -70.0    1.9581    1.841    10.44      0.886
 *     22  Gauss 80 dB                  -80.0    2.1248    1.997    10.72      0.754
 *     23  sinc lobe (Riemann)          -26.4    1.2990    1.251     3.28      1.891
 *     24  Tukey, alpha 0.25            -13.6    1.1020    1.007     2.28      2.963
 *
 * Main lobe: the full width between the first minima. Ripple: the largest error of a line between two bins, too low
 * (for the flat-tops also too high); for the other windows this is the scallop loss. Type 24 has no name. Typical
 * choices: Blackman-Harris with 4 terms to see a line 90 dB below another one 5 bins away, a flat-top to read levels,
 * Hann for noise and resolution.
 * ========================================================================================================== */

/** Window types, passed as int32_t; several names for one value. */
typedef int32_t dsp_window_type;
enum {
  DSP_WINDOW_UNIFORM = 0,
  DSP_WINDOW_RECTANGULAR = 0,
  DSP_WINDOW_NONE = 0,
  DSP_WINDOW_P000 = 0,
  DSP_WINDOW_BARTLETT = 1,
  DSP_WINDOW_TRIANGULAR = 1,
  DSP_WINDOW_HANN = 2,
  DSP_WINDOW_P110 = 2,
  DSP_WINDOW_HAMMING = 3,
  DSP_WINDOW_P100 = 3,
  DSP_WINDOW_BLACKMAN = 4,
  DSP_WINDOW_BLACKMAN_HARRIS3 = 5,
  DSP_WINDOW_P200 = 5,
  DSP_WINDOW_BLACKMAN_HARRIS4 = 6,
  DSP_WINDOW_P310 = 6,
  DSP_WINDOW_LOWLEAK = 6,
  DSP_WINDOW_GAUSSTOP = 7,
  DSP_WINDOW_P400 = 7,
  DSP_WINDOW_FLAT4 = 8,
  DSP_WINDOW_P301 = 8,
  DSP_WINDOW_FLATTOP = 9,
  DSP_WINDOW_FLAT5 = 9,
  DSP_WINDOW_P401 = 9,
  DSP_WINDOW_FLAT6 = 10,
  DSP_WINDOW_P511 = 10,
  DSP_WINDOW_FLAT7 = 11,
  DSP_WINDOW_P611 = 11,
  DSP_WINDOW_P501 = 12,
  DSP_WINDOW_P601 = 13,
  DSP_WINDOW_KAISER70 = 14,
  DSP_WINDOW_KAISER80 = 15,
  DSP_WINDOW_KAISER90 = 16,
  DSP_WINDOW_KAISER100 = 17,
  DSP_WINDOW_KAISER110 = 18,
  DSP_WINDOW_KAISER120 = 19,
  DSP_WINDOW_GAUSS60 = 20,
  DSP_WINDOW_GAUSS70 = 21,
  DSP_WINDOW_GAUSS80 = 22,
  DSP_WINDOW_RIEMANN = 23,
  DSP_WINDOW_SINC_LOBE = 23
};

/** Flags of the window generators. */
enum {
  DSP_WND_AMPLITUDE = 0,     /**< scaled to mean 1: a windowed spectrum shows amplitudes */
  DSP_WND_POWER = 1,         /**< scaled to mean square 1: a windowed spectrum shows power, for noise */
  DSP_WND_RAW = 2,           /**< the peak is 1 */
  DSP_WND_SCALE_MASK = 3,    /**< the three above; the value 3 itself is invalid */
  DSP_WND_SYMMETRIC = 4,     /**< both ends on samples: Gauss, Kaiser, sinc lobe and Tukey; uniform ignores it */
  DSP_WND_ACTIVE = 8,        /**< the parameter is the number of samples that the window spans */
  DSP_WND_SWAP_UNIFORM = 16, /**< the uniform window swaps the halves as well */
  DSP_WND_NO_SWAP = 32       /**< the other windows do not swap them */
};

/** The type of a name in upper or lower case: "Hann", "Flattop", "kaiser70" and so on, and the names of the constants,
 * "DSP_WINDOW_HANN". An unknown name gives type 0 and -1. A null argument: -1. */
DSP_API int32_t dsp_window_from_str(const char *name, dsp_window_type *type);

/** Knows no name: writes "" (if buffer is not null and size above 0) and returns -1 for every type. */
DSP_API int32_t dsp_window_to_str(dsp_window_type type, char *buffer, int32_t size);

/** The factor that removes a raw window of n samples from the level of a spectrum. `kind` is DSP_WND_AMPLITUDE for
 * 1/mean (flat-tops: times the mean of their amplitude scale, which is not quite 1), DSP_WND_POWER for 1/root mean
 * square, DSP_WND_RAW for 1; n <= 0 gives 1 too. dsp_window_scale refuses DSP_WND_ACTIVE; dsp_window2_scale accepts it,
 * with the active length in `param`, and then measures the window, as both do for types from 14 on: that takes memory
 * and time for n samples. The other types have closed forms, which ignore DSP_WND_SYMMETRIC. A window whose mean is 0
 * gives 0. -1: null `scale`, a type or combination that does not exist, no memory. */
DSP_API int32_t dsp_window_scale(double *scale, dsp_window_type type, int32_t kind, int32_t n);
DSP_API int32_t dsp_window2_scale(double *scale, dsp_window_type type, int32_t kind, int32_t n, double param);

/** Equivalent noise bandwidth in bins: (amplitude scale / power scale)^2. This is n sum(w^2)/sum(w)^2, the catalogue's
 * figure, but for types 8 to 13: these have amplitude scales of their own, which make it up to 0.11 % less. The second
 * routine is for a window with the active length `param`. -1: as above. */
DSP_API int32_t dsp_window_enbw(double *enbw, dsp_window_type type, int32_t n);
DSP_API int32_t dsp_window2_enbw(double *enbw, dsp_window_type type, int32_t n, double param);

/** v, real or complex, times a window of the catalogue, in v's own buffer. `flags` is a scale (DSP_WND_AMPLITUDE,
 * _POWER or _RAW), combined with DSP_WND_SYMMETRIC and the swapping flags as wanted. The uniform window without
 * DSP_WND_ACTIVE changes no sample. dspi_window2 also takes DSP_WND_ACTIVE for types 0 and 2 to 13: the window then
 * spans the inner `param` > 0 samples of v (uniform: the first ones), which need not be a whole number; it is 0 outside
 * and is scaled by its measured mean or mean square. If `param` exceeds the length of v, the window is the inner part
 * of a longer one. An empty signal stays as it is. -1: a type or combination that does not exist, or no memory (a
 * cached window needs none); v is then unchanged. */
DSP_API int32_t dspi_window(dsp_vec *v, dsp_window_type type, int32_t flags);
DSP_API int32_t dspi_window2(dsp_vec *v, dsp_window_type type, int32_t flags, double param);

/** v times a parametric window; the halves are then swapped unless DSP_WND_NO_SWAP is set. The raw window at d samples
 * from the centre, L being the span (n, or n - 1 with DSP_WND_SYMMETRIC, where the centre of an even n lies between two
 * samples):
 * gauss   exp(-(d / (sigma L))^2 / 2); sigma 0: the centre alone
 * kaiser  I0(beta sqrt(1 - (2d/L)^2)) / I0(beta), |beta| limited to 460.5 (power scale: 230.3); a symmetric window of
 *         even length is divided by its centre samples instead, so that they are 1
 * tukey   1 up to (1 - alpha) L/2, then half a cosine down to 0; alpha 0 is uniform, 1 is Hann
 * sinc    sin(x)/x at x = 2 lobe d / L, and `peak` on a centre sample
 * These windows are not cached. -1: DSP_WND_ACTIVE, an invalid scale, or no memory; v is then unchanged. */
DSP_API int32_t dspi_window_gauss(dsp_vec *v, double sigma, int32_t flags);
DSP_API int32_t dspi_window_kaiser(dsp_vec *v, double beta, int32_t flags);
DSP_API int32_t dspi_window_tukey(dsp_vec *v, double alpha, int32_t flags);
DSP_API int32_t dspi_window_sinc(dsp_vec *v, double lobe, double peak, int32_t flags);

/** v times c[0] + c[1] cos(2 pi d/n) + c[2] cos(4 pi d/n) + ..., d samples from sample n/2, without scaling or
 * swapping. Without coefficients v becomes 0. -1: complex coefficients, no memory. */
DSP_API int32_t dspi_window_cos(dsp_vec *v, const dsp_vec *coefficients);

/** Filter taps times the raw window of a type. The window is centred between the first and last tap and spans n
 * samples, so that no tap gets weight 0. -1: unknown type, no memory. */
DSP_API int32_t dspi_window_fir(dsp_vec *v, dsp_window_type type);

/* ============================================================================================================
 * Spectra, averages and correlation (spectrum)
 *
 * The averaged, windowed amplitude spectrum of a real record, block after block:
 *
 *     for (int32_t count = 1; read_block(&block); ++count) {               // block.dx in seconds
 *       dsph_fft(&block, &spectrum, 0, 1.0, DSP_WINDOW_HANN, 0);           // a sine of amplitude A shows A
 *       dsph_avg(&spectrum, &average, NULL, DSP_AVG_MEAN | DSP_AVG_POWER, count, 0, -1.0, 0.0);
 *     }
 *     dspi_db(&average, 10.0);                                             // average.dx in hertz
 *
 * Scaling: without flags, a one-sided spectrum shows amplitudes, whatever the window and the padding. Every bin is
 * doubled, also the first and the last. A centred record has time 0 in its middle.
 * ========================================================================================================== */

/** Flags of the spectrum routines; they may be combined. */
enum {
  DSP_SPECTRUM_INVERSE = 1,         /**< from spectrum to record */
  DSP_SPECTRUM_TWO_SIDED = 2,       /**< always the complex transform, without the factor 2 (inverse: 0.5) */
  DSP_SPECTRUM_SUM = 4,             /**< a sum: times the transform length (inverse: divided by it); full record */
  DSP_SPECTRUM_UNWINDOWED = 8,      /**< the record is not windowed (forward) */
  DSP_SPECTRUM_CENTRED = 16,        /**< the halves are swapped around the transform; full record */
  DSP_SPECTRUM_FROM_TWO_SIDED = 32, /**< the given spectrum is complex and centred (inverse) */
  DSP_SPECTRUM_ODD = 64,            /**< the record had odd length (dsph_dft, inverse) */
  DSP_SPECTRUM_RAW = 128            /**< only the transform: no window, scaling or swapping; full record */
};

/** Averaging modes of dsph_avg, and two flags that may be added. */
enum {
  DSP_AVG_REPLACE = 0,    /**< the latest */
  DSP_AVG_MEAN = 1,       /**< arithmetic mean */
  DSP_AVG_MAX_HOLD = 2,   /**< the larger sample, by magnitude if complex */
  DSP_AVG_MIN_HOLD = 3,   /**< the smaller sample */
  DSP_AVG_HARMONIC = 4,   /**< harmonic mean */
  DSP_AVG_GEOMETRIC = 5,  /**< geometric mean */
  DSP_AVG_PERIODIC = 6,   /**< the latest at counts 1, 1 + period, 1 + 2 period, ... */
  DSP_AVG_MODE_MASK = 15, /**< the modes; other values leave the average as it is */
  DSP_AVG_LIMIT = 16,     /**< the derived weight falls no further from count `limit` on: exponential averaging */
  DSP_AVG_POWER = 32      /**< averages the squared magnitude of the input */
};

/** Spectrum of a record on a power-of-two grid. M is the transform length: the least power of two >= n, at most 2^30;
 * n < 1 stands for the record's length. Typical: n 0, fraction 1.0.
 *
 * Forward: takes the first `fraction` of M samples (a fraction outside (0, 1] counts as 1.0; never more than there
 * are), windows them in amplitude scale, scales them and pads them with zeros to M. A real record gives M/2 + 1 bins
 * from 0 to the Nyquist frequency. A complex one, or DSP_SPECTRUM_TWO_SIDED, gives M bins with frequency 0 in the
 * middle (sample M/2). A window other than uniform moves the middle of the record to time 0, so that phases refer to
 * it.
 *
 * Inverse, with the same n, fraction and flags: gives `fraction` of M samples, windowed as the forward transform left
 * them; n < 1 takes M from the spectrum. Two cases differ. The spectrum of a complex record needs
 * DSP_SPECTRUM_FROM_TWO_SIDED as well, and the result is complex, as it is with DSP_SPECTRUM_TWO_SIDED and _RAW. A
 * record shorter than `fraction` M comes back with zeros behind it, or on both sides where the halves are swapped (a
 * window other than uniform, _SUM, _CENTRED); its samples are larger by the ratio of the lengths, but for _SUM and
 * _RAW.
 *
 * DSP_SPECTRUM_SUM, _CENTRED and _RAW ignore n and fraction. out->dx = 1/(in->dx M). An empty record counts as silence.
 * out may be in. -1: null signal, no memory, or an unknown window where one is applied (forward, without
 * DSP_SPECTRUM_UNWINDOWED and _RAW). */
DSP_API int32_t dsph_fft(const dsp_vec *in, dsp_vec *out, int32_t n, double fraction, dsp_window_type window,
                         int32_t flags);

/** The same on the record's own length, whatever it is, without padding and fraction. The inverse of a half spectrum of
 * L bins gives 2(L - 1) samples, or one more with DSP_SPECTRUM_ODD. */
DSP_API int32_t dsph_dft(const dsp_vec *in, dsp_vec *out, dsp_window_type window, int32_t flags);

/** Folds `in` into the running average `avg`, which the caller keeps between calls and need not clear: at `count` 1 (or
 * less) it becomes a copy. `count` numbers the spectra from 1. `weight` is the share of the new spectrum. A negative
 * one (typical: -1.0) is derived: 1/count, or with DSP_AVG_LIMIT and a `limit` above 0, 1/limit from count `limit` on.
 * `period` matters to DSP_AVG_PERIODIC only. The dx of the average becomes the mean of its own and that of `in`, or in
 * a copy that of `in`. In the hold modes equal samples keep the average. `work` is a work signal that saves an
 * allocation per call; if it is null or shares a buffer with the others, a temporary is used. -1: null in or avg,
 * lengths that differ, no memory (the average may then be empty; it starts anew at count 1). */
DSP_API int32_t dsph_avg(const dsp_vec *in, dsp_vec *avg, dsp_vec *work, int32_t flags, int32_t count, int32_t period,
                         double weight, double limit);

/** Correlation of `in` with the first m samples of `ref`, at every lag where these lie within `in`:
 * out[j] = (1/P) sum over i < m of in[i + j] conj(ref[i]), j = 0 ... length of in - m, P being the least power of two
 * >= the length of `in`; half of that if `halve` is not 0. The result is complex if either operand is; dx is the mean
 * of both. `work` as in dsph_avg. -1: null ref, in or out, m below 1 or above the shorter length, no memory. */
DSP_API int32_t dsph_corr(const dsp_vec *ref, const dsp_vec *in, dsp_vec *out, dsp_vec *work, int32_t m,
                          uint32_t halve);

/** dsph_corr without a work signal. */
DSP_API int32_t dspb_corr(const dsp_vec *ref, const dsp_vec *in, dsp_vec *out, int32_t m, uint32_t halve);

/** dsph_fft with n 0 on plain arrays and a spacing of 1. `out_data` receives all samples of the result. M is the least
 * power of two >= length. Forward: M + 2 doubles for real data and one side, else 2 M. Inverse of a half spectrum: M
 * doubles, M being the least power of two >= 2 (length - 1); else 2 M. A raw transform counts as two-sided. Nothing is
 * written on failure. */
DSP_API int32_t cf_dsph_fft(const double *in_data, double *out_data, int32_t length, uint32_t is_complex,
                            double fraction, dsp_window_type window, int32_t flags);

/* ============================================================================================================
 * Statistics, peak and regression (stats)
 *
 * Each routine reduces one signal to a signal of one sample (a histogram, a peak or a fit: of a few). The `dx` of the
 * output stays, unless a routine says otherwise:
 *
 *     dsp_vec level;
 *     dsp_init(&level);
 *     dsps_rms(&v, &level);                  // level.data[0] is the level
 *     dsps_mean(&v, &v);                     // in place: v is now its own mean
 *
 * Sums are formed in blocks of 2048 samples, and within a block in 32 partial sums, the same on every processor: the
 * bits do not depend on the machine, and a mean has an error of about 2 units in the last place of the mean of |x|, for
 * any length. No routine fails because of values, or for an empty signal, whose statistic is 0 unless another value is
 * stated. Where a routine says that values saturate, one beyond +-1e100 counts as +-1e100 and its square as 1e200;
 * elsewhere infinities and NaN pass through. All return -1 when memory runs out.
 * ========================================================================================================== */

/** Sum of the samples; complex for a complex signal. */
DSP_API int32_t dsps_sum(const dsp_vec *in, dsp_vec *out);

/** Arithmetic mean, sum/n. */
DSP_API int32_t dsps_mean(const dsp_vec *in, dsp_vec *out);

/** Geometric mean: the n-th root of the product of all samples, formed from front to back. It is 0 if the product is
 * below the smallest normal double, so for every negative product. Complex: the principal root. Products easily leave
 * the range of doubles: for long signals take the mean of the logarithms instead. */
DSP_API int32_t dsps_gmean(const dsp_vec *in, dsp_vec *out);

/** Harmonic mean: n over the sum of the reciprocals. It is 0 if a real sample is 0, and 1e100 if the reciprocals of
 * real samples sum to 0. Complex samples saturate, and a complex 0 has the reciprocal 0. */
DSP_API int32_t dsps_hmean(const dsp_vec *in, dsp_vec *out);

/** The middle sample in the order of dspi_sort, or the mean of the two middle ones. It works on a copy, which is sorted
 * if it is complex. */
DSP_API int32_t dsps_median(const dsp_vec *in, dsp_vec *out);

/** The greatest (least) sample; of equal ones the first. The search for a real maximum starts from -1e100, for a
 * minimum from 1e100; that is the result if no sample is greater (less). Complex samples are compared by squared
 * magnitude, which counts as 1e100 if a part is beyond +-1e100; the result is the whole sample, or (0, 0) for the
 * maximum and (1e100, 1e100) for the minimum if none was taken. A sample with a NaN is never taken. */
DSP_API int32_t dsps_max(const dsp_vec *in, dsp_vec *out);
DSP_API int32_t dsps_min(const dsp_vec *in, dsp_vec *out);

/** Energy: the sum of |x|^2, real. A sample with a part beyond +-1e100 adds 1e100. */
DSP_API int32_t dsps_magsq_sum(const dsp_vec *in, dsp_vec *out);

/** Square root of the mean of |x|^2, from the same sum. */
DSP_API int32_t dsps_rms(const dsp_vec *in, dsp_vec *out);

/** Variance, and its root, the standard deviation: of the samples themselves (pop, over n), or estimated for the
 * population that they are drawn from (samp, over n - 1; 0 for a single sample). The result is real; for complex
 * signals it is that of |x - mean|^2. One pass relative to the mean of the first, middle and last sample; differences
 * from that mean saturate. A variance of 0 may come out as a rounding residue of either sign; the root of a negative
 * one is NaN. */
DSP_API int32_t dsps_pop_var(const dsp_vec *in, dsp_vec *out);
DSP_API int32_t dsps_samp_var(const dsp_vec *in, dsp_vec *out);
DSP_API int32_t dsps_pop_stddev(const dsp_vec *in, dsp_vec *out);
DSP_API int32_t dsps_samp_stddev(const dsp_vec *in, dsp_vec *out);

/** Skewness m3/m2^1.5 of a real signal, in one pass as above. If the variance is 0, the result is 0, or 1e100 if the
 * third moment is not 0. -1: also for a complex signal (nothing changes). */
DSP_API int32_t dsps_skew(const dsp_vec *in, dsp_vec *out);

/** Excess kurtosis m4/m2^2 - 3 of a real signal, in two passes, saturating; -3 for a constant or empty signal. -1: also
 * for a complex signal (nothing changes). */
DSP_API int32_t dsps_excess(const dsp_vec *in, dsp_vec *out);

/** Counts samples (of a complex signal: magnitudes, 1e100 if a part is beyond +-1e100) in `bins` bins of bin_width from
 * `start` on; out->dx becomes bin_width. A sample x belongs to bin trunc((x - start)/bin_width), with the rounding of
 * that quotient, so that one on a border may fall to either side if the border is not exact. A quotient from `bins`
 * to 2.2e-15 of it above belongs to the last bin; other samples outside and NaN are not counted. With bin_width 0,
 * samples equal to `start` count in bin 0; a negative bin_width counts downwards. bins <= 0: nothing is counted. */
DSP_API int32_t dsps_hist(const dsp_vec *in, dsp_vec *out, double start, double bin_width, int32_t bins);

/** Flags of dsps_peak: one refinement, and one of the last two if wanted (DSP_PEAK_AT_INDEX overrides the other). */
enum {
  DSP_PEAK_NO_INTERP = 0x000,   /**< the sample itself */
  DSP_PEAK_PARABOLIC = 0x100,   /**< a parabola through the sample and its neighbours */
  DSP_PEAK_GAUSS = 0x200,       /**< a Gaussian through the sample and its larger neighbour */
  DSP_PEAK_GAUSS_CORR = 0x300,  /**< the same with a cubic correction of the place */
  DSP_PEAK_INTERP_MASK = 0x700, /**< the refinements; other values are invalid */
  DSP_PEAK_AT_INDEX = 0x1000,   /**< the sample at `index`, clamped to the signal */
  DSP_PEAK_MIN = 0x2000         /**< the least sample */
};

/** The greatest sample, its height and place refined between samples. A complex signal is searched by squared
 * magnitude, which is also the height. Of equal samples the first is taken; NaN never is. out becomes a real signal of
 * two samples: the value, and the place as an index from 0 (not times `dx`; out->dx stays). Empty: (0, 0). out may be
 * in.
 *
 * DSP_PEAK_PARABOLIC gives the sample itself at both ends of the signal. Three equal samples, or three on a line (with
 * DSP_PEAK_AT_INDEX), give an infinite or NaN place.
 *
 * DSP_PEAK_GAUSS takes the sample and its larger neighbour (the right one if they are equal) and gives the place where
 * a Gaussian exp(-0.631 t^2), t in samples, through both has its centre. This is the shape of the squared magnitude
 * under DSP_WINDOW_GAUSSTOP: in its spectrum, without padding, a tone is found to 0.001 bins, and with
 * DSP_PEAK_GAUSS_CORR to 0.000002 bins. Use the place only: the height follows a Gaussian of half that exponent and
 * jumps by 1.4 dB for a tone on a bin. Compute the height as y exp(0.631 d^2) from the sample y nearest to the place, d
 * its distance from there. Both samples must be above 0; others give NaN, infinities or a clamped result.
 *
 * -1: another refinement, no memory; and, with a clamped result written, a Gaussian centre more than a sample away from
 * the middle of the pair. */
DSP_API int32_t dsps_peak(const dsp_vec *in, dsp_vec *out, int32_t flags, int32_t index);

/** The value at x of the polynomial c[0] + c[1] x + c[2] x^2 + ... whose coefficients are a real signal, by Horner's
 * rule. -1: also for a complex signal (nothing changes). */
DSP_API int32_t dsps_peval(const dsp_vec *c, dsp_vec *out, double x);

/** Straight line through points: out = slope, intercept of y on x. The samples of a real signal are y, and x is the
 * index times `dx` (1 if `dx` is 0); a complex signal holds points (re, im). Differences from a provisional mean
 * saturate. The index of a real signal starts again at 0 after every 2048 samples: fit longer traces as points. If all
 * x are equal, the result is 1e100, 1e100. One point gives slope 0 and its y. */
DSP_API int32_t dsps_lin_regres(const dsp_vec *in, dsp_vec *out);

/** The same fit with its statistics, twenty values; out->dx becomes 1.
 *
 *     y on x   x on y
 *        0        7    slope (1e100 if the variable it divides by does not vary)
 *        1        8    intercept (likewise)
 *        2        9    variance of the residuals
 *        3       10    variance of the slope
 *        4       11    variance of the intercept
 *        5       12    covariance of slope and intercept
 *        6       13    their correlation
 *
 *       14, 15   means of x and y
 *       16, 17   sample variances of x and y (over n - 1)
 *       18       sample covariance
 *       19       correlation coefficient r; 0 if x or y does not vary
 *
 * Variances of residuals are over n - 2, and 0 for two points. They are computed from 1 - r^2, as are the variances and
 * covariances that follow: if r is near 1, they lose digits, and all of them when 1 - r^2 is below 1e-16. One point:
 * its y at 1 and 15, its x at 8 and 14, all others 0. */
DSP_API int32_t dsps_lin_regres2(const dsp_vec *in, dsp_vec *out);

/* ============================================================================================================
 * FIR design and streaming filters (filter)
 *
 * Filters for streams: each call takes one block, and carries what the next block needs in a state of the caller's. A
 * record filtered in blocks of any lengths gives the same samples as the record filtered at once. A lowpass at a tenth
 * of the sample rate:
 *
 *     h.length = 101;
 *     dspc_fir(&h, DSP_FIR_LOWPASS, 0.1, 0.0);       // taps; frequencies in cycles per sample
 *     dsp_init(&state);                              // empty: silence before the stream
 *     while (next_block(&in))
 *       dspd_fir(&in, &out, &h, &state);             // out has the length of in, 50 samples late
 *     dsp_destroy(&state);
 *
 * A state takes the dx and representation of the input on every call. A null state stands for silence before the block,
 * and nothing is kept. The routine sizes the output, which may be the input. -1: an output on the buffer of a filter or
 * of a state, and a state on the buffer of the input. Once the largest block has been seen, no further call allocates.
 * Products and sums are fused where the processor can: results are the same on one processor and agree to rounding on
 * others.
 * ========================================================================================================== */

/** Kernels of dspc_fir. The taps are h(t) at t = k - (N - 1)/2, N the length: an odd filter has a tap at its centre
 * t = 0, an even one two taps beside it. The halves are exact mirror images, but for the delayed lowpass. x stands for
 * 2 pi f t, sinc x for sin(x)/x. */
typedef int32_t dsp_fir_type;
enum {
  DSP_FIR_BANDPASS = 0,        /**< centre f, full bandwidth p: 2p sinc(pi p t) cos x; f 0.2, p 0.1 passes 0.15-0.25 */
  DSP_FIR_BANDSTOP = 1,        /**< 1 at the centre minus the bandpass; odd lengths only */
  DSP_FIR_HIGHPASS = 2,        /**< 1 at the centre minus the lowpass; odd lengths only */
  DSP_FIR_LOWPASS = 3,         /**< cut-off (-6 dB) f: 2f sinc x */
  DSP_FIR_SINH = 4,            /**< smoothing by sinh(b sqrt(1 - (2t/(N+1))^2)); b is f, 0: by length; sum 1 */
  DSP_FIR_DELAYED_LOWPASS = 5, /**< lowpass f, p samples (typically a fraction) later: 2f sinc(2 pi f (t - p)); sum 1 */
  DSP_FIR_DIFFERENTIATOR = 6,  /**< d/dt up to f: 4 pi f^2 (cos x - sinc x)/x; gain 2 pi nu, per sample */
  DSP_FIR_GAUSSIAN = 7,        /**< exp(-x^2/(2 ln 2)): half power at f; 0: a plain mean; sum 1 */
  DSP_FIR_HILBERT = 8,         /**< -2f (1 - cos x)/x: gain 1 up to f, 90 degrees ahead: the negative of dspi_hilbert */
  DSP_FIR_KAISER_SPECTRUM = 9, /**< sinh(r)/r, r^2 = b^2 - 4(b^2 + pi^2)(t/(N+1))^2; |b| is |f|, 0: by length; sum 1 */
  DSP_FIR_RAMP = 10            /**< 4f^2 (sinc x + (cos x - 1)/x^2): gain 2 |nu| up to f, as for back projection */
};

/** Sets of dspc_fir2. */
typedef int32_t dsp_fir2_type;
enum {
  DSP_FIR2_TAPS12 = 100, /**< half of the 23-tap lowpass before the fractional stage of dsph_rsmp */
  DSP_FIR2_TAPS20 = 101, /**< half of the 39-tap lowpass for halving: docs/filters.md shows its response */
  DSP_FIR2_TAPS5 = 102   /**< half of 9 taps that rise from gain 1 at frequency 0 to 1.42 at the Nyquist frequency */
};

/** Fills h, whose `length` states the number of taps, with a kernel of f and p. A complex h gets imaginary parts 0. dx
 * and length stay. Kernels marked "sum 1" are divided by their sum (unless it is 0). f and p are not checked: the
 * formula is evaluated as it stands. Ideal kernels ripple by 9 % beside their edges; multiply by a window for smoother
 * ones (dspi_window_fir). Lengths of 0 or less do nothing. -1: no such kind (h is then allocated and real), an even
 * length where an odd one is needed, no memory. */
DSP_API int32_t dspc_fir(dsp_vec *h, dsp_fir_type kind, double f, double p);

/** Makes h one of the fixed halves, 12, 20 or 5 taps, of which the last is the centre (odd = 1 in dspd_sfir). A complex
 * h gets imaginary parts 0. -1: no such set (h is untouched), no memory. */
DSP_API int32_t dspc_fir2(dsp_vec *h, dsp_fir2_type kind);

/** out[n] = sum of h[k] in[n - k]. The samples before the block come from `state`: M - 1 samples, M being the number of
 * taps, oldest first. A shorter state is extended by zeros at its newest end; of a longer one the first M - 1 samples
 * count. out is complex if in or h is, and gets the length and dx of in. Without taps, in is copied to out.
 *
 * Filters of up to 45 taps (35 on complex blocks) and complex filters are summed directly: on one processor the results
 * are the same bits for every division into blocks. Longer real filters run through the FFT where that is cheaper; then
 * blocks agree to 1e-13 of the sum of |h| times the largest input. A sample that is not finite or beyond 1e50 reaches
 * only the outputs that weight it: its block, and later ones that need it, are summed directly where the FFT would
 * spread it. If the filter has such a tap, every block is summed directly. The spectra of the last long filter are kept
 * while the same taps (within 1.1e-15 |h[0]|) and transform sizes are used: one filter on many blocks is cheap, several
 * long ones in turn are not. -1: no memory.
 */
DSP_API int32_t dspd_fir(const dsp_vec *in, dsp_vec *out, const dsp_vec *h, dsp_vec *state);

/** dspd_fir with a filter given by its first half: the L samples of `half`, then their mirror image, negated if `anti`
 * is not 0. If `odd` is not 0, the last sample of `half` is the centre, 2L - 1 taps in all (an antisymmetric filter
 * keeps its centre as given); else there are 2L taps. Real halves of filters of up to 60 taps are summed directly:
 * the same bits for every division into blocks. */
DSP_API int32_t dspd_sfir(const dsp_vec *in, dsp_vec *out, const dsp_vec *half, int32_t odd, int32_t anti,
                          dsp_vec *state);

/** Keeps every `factor`-th sample (below 1: every one) and multiplies dx by the factor. The first sample of the state
 * is the number of samples to skip before the next one is kept; NaN and negative values count as 0. Nothing is filtered
 * here: filter first. */
DSP_API int32_t dspd_deci(const dsp_vec *in, dsp_vec *out, int32_t factor, dsp_vec *state);

/** A fixed recursive lowpass: four times (0.25 + 0.5 z^-1 + 0.5 z^-2 + 0.25 z^-3)/(1 + 0.5 z^-2). Gain 1 at frequency
 * 0, flat within 0.11 dB up to 0.18, below -61 dB from 0.3 on, and 0 at the Nyquist frequency. The state holds 12
 * samples, three inner values of each section. All calls with a null state share one, which dsp_free_internal releases.
 * -1: `reserved` is not null. */
DSP_API int32_t dspd_hwfilt(const dsp_vec *in, dsp_vec *out, const void *reserved, dsp_vec *state);

/** dspd_hwfilt(v, v, reserved, NULL): in place, always on the shared state. `reserved` must be null. */
DSP_API int32_t dspi_hwfilt(dsp_vec *v, const void *reserved);

/* ============================================================================================================
 * Sample-rate conversion (resample)
 *
 * Lower sample rates, by any ratio of input to output rate from 1 up:
 *
 *     dsph_rsmp_coef_init(&coef);                    // once per ratio
 *     dsph_rsmp_coef_alloc(&coef, 0);
 *     dsph_rsmp_coef_setup(&coef, 0, 48.0 / 44.1, 0, 0);
 *     dsph_rsmp_state_init(&state);                  // once per stream
 *     dsph_rsmp_state_alloc(&coef, &state, 0);       // 0: a real stream
 *     dsph_rsmp_state_reset(&coef, &state);          // before the first block
 *     while (next_block(&in))
 *       dsph_rsmp(&in, &out, &scratch, &coef, &state);
 *     dsph_rsmp_state_destroy(&state);
 *     dsph_rsmp_coef_destroy(&coef);
 *
 * What it reaches (docs/filters.md has the figures for each ratio), with a pass band of 0 to 0.39 of the output rate:
 * flat within 0.065 dB; distortion of a tone below -115 dB rms. Tones from 0.61 of the output rate on leave at most
 * -90 dB in the pass band, and at most -36 dB between 0.39 and 0.5 (most a little above ratios of 2, 4 and 8).
 * Frequencies from 0.5 to 0.61 are mirrored into the latter band. A stream in blocks gives the same bits as the stream
 * at once. The output begins where the filters have settled: samples that depend on the silence before the stream are
 * dropped.
 * ========================================================================================================== */

/** The filters and settings for one ratio. The routines below fill it; its fields may be read. */
typedef struct dsph_rsmp_coef {
  dsp_vec halfband;      /**< first half of the 39-tap lowpass */
  int32_t halfband_odd;  /**< 1: it ends with the centre */
  dsp_vec prefilter;     /**< first half of the 23-tap lowpass before the fractional stage */
  int32_t prefilter_odd; /**< 1 */
  dsp_vec kernel;        /**< interpolation kernel of kind 4, 13314 samples */
  int32_t interp;        /**< 1: linear between the points of the kernel */
  double ratio;          /**< what remains after halving, in [1, 2) */
  int32_t halvings;      /**< stages that halve the rate */
  int32_t mode;          /**< not 0: the fractional stage runs even for a ratio of 1 */
  int32_t delay1;        /**< outputs to drop after halving: 33, or 0 without a stage */
  int32_t delay2;        /**< outputs to drop at the end: 19 + ceil(35/ratio), or 0 without a fractional stage */
} dsph_rsmp_coef;

/** What a stream carries from block to block. */
typedef struct dsph_rsmp_state {
  int32_t stages;       /**< halvings that it is built for */
  dsp_vec *stage_hist;  /**< history of the lowpass of each stage, 38 samples */
  dsp_vec *stage_phase; /**< decimation phase of each stage */
  int32_t delay1;       /**< samples still to drop after halving */
  dsp_vec pre_hist;     /**< history of the 23-tap lowpass */
  dsp_vec rsmp_state;   /**< state of the fractional stage, see dspd_rsmp */
  dsp_vec post_hist;    /**< history of the last lowpass */
  dsp_vec post_phase;   /**< phase of the last decimation */
  int32_t delay2;       /**< samples still to drop at the end */
} dsph_rsmp_state;

/** Builds a kernel table of v's length from a built-in list. Kinds 0 and 1 are series in powers of a cosine, 2 to 4
 * cosine series. Gains are relative to frequency 0, frequencies in cycles per input sample:
 *
 *     kind   taps   gain at 0.1   at 0.25   largest from 0.6 on
 *       0      8      -1.4 dB      -9.1 dB       -64 dB         smoothest; for signals far below the sample rate
 *       1     13      +0.5 dB      +0.4 dB       -84 dB         the best alone; gain 0.971 at frequency 0
 *       2      8      -1.4 dB      -9.0 dB       -63 dB         as 0, in a shorter table
 *       3     10       0.0 dB       0.0 dB       -28 dB         flat; images of frequencies above 0.25 remain
 *       4     13     +11.1 dB     +21.4 dB      -101 dB         only as a part of dsph_rsmp, whose lowpasses undo it
 *
 * -1: no such kind (v untouched), or as the builders. */
DSP_API int32_t dspc_rsmp(dsp_vec *v, int32_t kind);

/** Kernel tables of any even length L: v[0] is c[0], the number of taps T, and v[L/2 + j] = v[L/2 - j] is the sum over
 * k from 1 of c[k] cos((k - 1) j d) (dspc_rsmp_cos) or c[k] cos(j d)^(k - 1) (dspc_rsmp_pcos), with d = 2 pi/(L - 2).
 * So the kernel has (L - 2)/T points per input sample, typically 256 to 1024. A complex v gets imaginary parts 0. With
 * fewer than two samples in v or c, v becomes c[0] followed by zeros. -1: otherwise an odd length, complex c, c on v's
 * buffer, no memory. */
DSP_API int32_t dspc_rsmp_cos(dsp_vec *v, const dsp_vec *c);
DSP_API int32_t dspc_rsmp_pcos(dsp_vec *v, const dsp_vec *c);

/** One output for every `step` input samples (0 or more): the sum of T samples weighted by the kernel, whose points are
 * used as they are (`interp` 0) or interpolated linearly. Interpolation for a step p/q in [0.5, 1) with q up to 512 is
 * fastest: its weights are kept, and are those of positions rounded to 2^-40 samples. In a stream from silence, output
 * m stands for input m step - T/2; the first output is made of the T samples before the stream, so it does not depend
 * on the first input. On entry, `length` of out states the largest number of outputs wanted; those left over come first
 * in the next block, computed from the oldest samples held if they need older ones. out->dx is step times in->dx.
 * Nothing is filtered: frequencies above the Nyquist frequency of the output alias.
 *
 * The state: T past samples; at index T the position of the next output relative to the T samples that it is made of
 * (-1 or more); at T + 1 how many samples after the oldest one held those T begin. For complex streams both are in the
 * real parts. Zeros start a stream.
 *
 * A table of fewer than 2 samples copies in to out. -1: step negative, infinite or NaN; a number of taps v[0] that is
 * not a whole number from 1 on, or a table length less 2 that is not a multiple of it; a complex table; a position in
 * the state below -1 or not finite; an output on the buffer of the table or the state; no memory. */
DSP_API int32_t dspd_rsmp(const dsp_vec *in, dsp_vec *out, int32_t interp, const dsp_vec *table, double step,
                          dsp_vec *state);

/** dspd_rsmp with a table of a built-in kind (0: 8194, 1: 13314, 2: 2050, 3: 10242, 4: 13314 samples), which is made
 * for each call in some milliseconds. -1: also for no such kind. */
DSP_API int32_t dspd_rsmp2(const dsp_vec *in, dsp_vec *out, int32_t interp, int32_t kind, double step, dsp_vec *state);

/** Empties a coefficient record, or releases what it owns. Null is allowed. Always return 0. */
DSP_API int32_t dsph_rsmp_coef_init(dsph_rsmp_coef *coef);
DSP_API int32_t dsph_rsmp_coef_destroy(dsph_rsmp_coef *coef);

/** Makes the filters and the kernel, about 110 kB. -1: `reserved` is not 0, no memory. */
DSP_API int32_t dsph_rsmp_coef_alloc(dsph_rsmp_coef *coef, int32_t reserved);

/** Sets the ratio, input rate over output rate: the halvings that leave a ratio in [1, 2), and the delays. 0 and less
 * count as 1. A ratio below 1 is kept, but a block never gives more samples than it has. If `mode` is not 0, the
 * fractional stage runs for a ratio of 1, too. The second argument is ignored. After a change of ratio that changes the
 * halvings, reset the state. -1: NaN or infinite ratio, `reserved` not 0; nothing is stored. */
DSP_API int32_t dsph_rsmp_coef_setup(dsph_rsmp_coef *coef, int32_t reserved0, double ratio, int32_t mode,
                                     int32_t reserved);

/** Empties a state record, or releases what it owns. Always return 0. */
DSP_API int32_t dsph_rsmp_state_init(dsph_rsmp_state *state);
DSP_API int32_t dsph_rsmp_state_destroy(dsph_rsmp_state *state);

/** Builds the state for a ratio and a representation. What the state carries is kept where both stay the same. -1: no
 * memory. */
DSP_API int32_t dsph_rsmp_state_alloc(const dsph_rsmp_coef *coef, dsph_rsmp_state *state, uint32_t is_complex);

/** Restarts the stream: silence before it, and the outputs to drop counted anew. A state that is never reset drops no
 * outputs. */
DSP_API int32_t dsph_rsmp_state_reset(const dsph_rsmp_coef *coef, dsph_rsmp_state *state);

/** Converts one block: out gets about in->length/ratio samples, fewer at the start of a stream, and dx times the ratio.
 * After a reset, with k halvings, r = coef->ratio and h = 2^k, output m stands for the stream's sample
 * ratio m + (k > 0 ? 14 h + 19 : 0) + (delay2 > 0 ? h (r (delay2 - 9.5) - 17.5) : 0). `scratch` is work space that
 * saves allocations if it is kept from call to call (null: allocated each time). A null `state` converts the block on
 * its own and drops nothing. in, out and scratch may be the same record. -1: no memory, a ratio below
 * 3e-8; the stream then begins anew, as after a reset. */
DSP_API int32_t dsph_rsmp(const dsp_vec *in, dsp_vec *out, dsp_vec *scratch, const dsph_rsmp_coef *coef,
                          dsph_rsmp_state *state);

/* ============================================================================================================
 * Interpolation (interp)
 *
 * A tabulated function at other abscissae. A correction table of gain over frequency, at the bins of a spectrum:
 *
 *     dsp_cspline(&frequencies, &gains, NULL, &bins, &correction);            // not-a-knot spline
 *     dsp_interp(&frequencies, &gains, NULL, &bins, &correction,
 *                DSP_INTERP_LINEAR | DSP_INTERP_CLAMP);                       // straight lines, held at the ends
 *
 * Nodes rise strictly. Queries rise too: the search for their interval only moves forward, and a query left of the
 * interval that was reached is evaluated on that interval. Everything is real. Reference: de Boor, A Practical Guide to
 * Splines.
 * ========================================================================================================== */

/** Schemes of dsp_interp, and a flag. Schemes 2, 4, 6 and 7 give one constant, the ordinate of the right node of the
 * first query's interval; but 7 is linear with two nodes. */
enum {
  DSP_INTERP_HOLD = 0,      /**< the ordinate of the previous node; from the last node on, that of the last */
  DSP_INTERP_LINEAR = 1,    /**< a line through the two nodes around the query */
  DSP_INTERP_QUADRATIC = 3, /**< a parabola through the nearest node and its neighbours; linear with two nodes */
  DSP_INTERP_SPLINE = 5,    /**< a cubic spline */
  DSP_INTERP_CLAMP = 16     /**< holds the first and last ordinate outside; else the outermost pieces are extended */
};

/** Conditions at the ends of a spline. */
enum {
  DSP_SPLINE_NOT_A_KNOT = 0,        /**< the two outermost intervals are one cubic; typical */
  DSP_SPLINE_CLAMPED = 1,           /**< the first derivative is given */
  DSP_SPLINE_SECOND_DERIVATIVE = 2, /**< the second derivative is given */
  DSP_SPLINE_NATURAL = 3            /**< the second derivative is 0 */
};

/** The function through the nodes (x, y) at the abscissae xq. out becomes real, with the length and dx of xq; it may be
 * any of the inputs. Only the spline reads d2: the second derivatives from dspb_cspline_2d, or null for not-a-knot
 * ends, which are then computed in every call. No nodes give zeros. One node gives its ordinate, or for the spline the
 * parabola with the second derivative d2[0]. -1: complex input, lengths that differ, two nodes of equal abscissa in an
 * interval that is reached (out then holds the results before it), a spline without d2 and fewer than four nodes, no
 * memory. */
DSP_API int32_t dsp_interp(const dsp_vec *x, const dsp_vec *y, const dsp_vec *d2, const dsp_vec *xq, dsp_vec *out,
                           int32_t mode);

/** dsp_interp with DSP_INTERP_SPLINE. */
DSP_API int32_t dsp_cspline(const dsp_vec *x, const dsp_vec *y, const dsp_vec *d2, const dsp_vec *xq, dsp_vec *out);

/** The second derivatives at the nodes of the cubic spline through them, with a condition for each end and, where it
 * takes one, a value. They are right to 1e-14 of the largest one, also for intervals of very different widths. d2
 * becomes real, with the length of the nodes and the mean of their dx; it may be x or y. -1: complex input, lengths
 * that differ, fewer than four nodes, abscissae that do not rise, an unknown condition, no memory. */
DSP_API int32_t dspb_cspline_2d(const dsp_vec *x, const dsp_vec *y, dsp_vec *d2, double left_value, double right_value,
                                int32_t left, int32_t right);

/** a and b sample by sample in turn: out[2i] = a[i], out[2i + 1] = b[i]. dx becomes half the mean of theirs; out is
 * complex if either is, and may be a or b. -1: lengths that differ or cannot be doubled (nothing changes); no memory
 * (dx, `length` and `is_complex` of out are then set already). */
DSP_API int32_t dspb_inter(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** A zero after every sample, dx halved: the first step of interpolation by two, before a lowpass filter. -1: no memory
 * (`length` is then doubled and `dx` halved already), or a length that cannot be doubled (nothing changes). */
DSP_API int32_t dspi_zinter(dsp_vec *v);

/* ============================================================================================================
 * Trace display (trace): plain arrays, no signals
 *
 * From measured reflection points to what a screen shows, range by range while a sweep is running:
 *
 *     vfpd_ExpandLinear(frequency, n, start, stop);                       // the axis
 *     vfpd_FormatBuffer(DSP_FORMAT_RETURN_LOSS, points, trace, from, to); // the points that came in, in dB
 *     vfpd_Smooth(trace, smooth, n, from, to, 11, 0);                     // may write fewer: it needs neighbours
 *     best = vfpd_FindMax(smooth, 0, n);
 *     vfpdb_ScaleToInt2(smooth, n, 60.0, 0.0, pixels, 0, 479);
 *
 * A range [start, stop) is half open. Point i of the input gives element i of the output, wherever the range starts.
 * Nothing allocates memory. A count of 0 or less is an empty buffer. Outputs must not overlap inputs unless the routine
 * says so. The scaling routines whose names end in 2 give the same bits as those without; they are kept for the
 * programs that call them.
 * ========================================================================================================== */

/** buf[i] *= scale; the last one in single precision. */
DSP_API void vfpdbMul1(double scale, double *buf, int32_t n);
DSP_API void vfpdbMul2(double scale, double *buf, int32_t n);
DSP_API void vfpsbMul2(float scale, float *buf, int32_t n);

/** Maps [lo, hi] to [out_lo, out_hi] by a line, truncates towards zero and saturates at the limits of int32_t; NaN
 * gives 0. lo == hi is not refused: the slope is then infinite or NaN, and so are the values before saturation. */
DSP_API void vfpdb_ScaleToInt(const double *in, int32_t n, double lo, double hi, int32_t *out, int32_t out_lo,
                              int32_t out_hi);
DSP_API void vfpdb_ScaleToInt2(const double *in, int32_t n, double lo, double hi, int32_t *out, int32_t out_lo,
                               int32_t out_hi);

/** Maps [lo, hi] to [out_lo, out_hi] by a line. out may be in. */
DSP_API void vfpdb_ScaleToFP(const double *in, int32_t n, double lo, double hi, double *out, double out_lo,
                             double out_hi);

/** The index of the largest value in [start, stop), the first of equal ones; `start` if the range has fewer than two
 * points. Comparisons with NaN fail: a NaN is never taken, but one at `start` is never replaced either. */
DSP_API int32_t vfpd_FindMax(const double *arr, int32_t start, int32_t stop);

/** The index of the smallest value in [start + 1, stop). Unlike vfpd_FindMax it never looks at arr[start], and returns
 * `start` only if no later value is below the largest double. */
DSP_API int32_t vfpd_FindMin(const double *arr, int32_t start, int32_t stop);

/** The index of the largest (smallest) value in [start, stop) outside the band [skip_lo, skip_hi). Both look at the
 * first point; equal values and NaN as in vfpd_FindMax. A band with skip_lo >= skip_hi excludes nothing. -1: `start`
 * lies in the band, and the band reaches `stop`. */
DSP_API int32_t vfpd_FindMax2(const double *arr, int32_t start, int32_t stop, int32_t skip_lo, int32_t skip_hi);
DSP_API int32_t vfpd_FindMin2(const double *arr, int32_t start, int32_t stop, int32_t skip_lo, int32_t skip_hi);

/** n points from `first` to `last`, evenly spaced; both ends are exact. One point is `first`. */
DSP_API void vfpd_ExpandLinear(double *out, int32_t n, double first, double last);

/** n points from `first` to `last` in even ratios; both ends are exact. Nothing is written unless both are above 0. */
DSP_API void vfpd_ExpandLog(double *out, int32_t n, double first, double last);

/** Centred moving average over `width` points (odd, at least 3) of a trace of n points. Towards both ends of the trace
 * the window shrinks symmetrically, so that in[0] and in[n - 1] stay as they are. It writes the points from `start` on
 * whose window ends before `stop`, and returns how many; call it again from there when more points have come in. Points
 * before `start` are read. A phase trace (is_phase not 0; in radians) is unwrapped within each window, and its mean is
 * wrapped into [-pi, pi] again. The time per point does not depend on the width. Sums are compensated, so that a trace
 * smoothed in pieces agrees with the whole to rounding, and a sample that has left the window, be it NaN or very large,
 * leaves no more than rounding behind. out must not be in. -1: a negative start, stop below start, a width that is even
 * or below 3; but start == stop returns 0 for any width. */
DSP_API int32_t vfpd_Smooth(const double *in, double *out, int32_t n, int32_t start, int32_t stop, int32_t width,
                            int32_t is_phase);

/** The same for complex points: magnitude and phase are averaged separately, the phase without unwrapping. */
DSP_API int32_t vfpd_SmoothCpx(const dsp_complex *in, dsp_complex *out, int32_t n, int32_t start, int32_t stop,
                               int32_t width);

/** Formats of vfpd_FormatBuffer, with p = re^2 + im^2 and r = sqrt(p). */
enum {
  DSP_FORMAT_LEVEL = 0,      /**< 10 log10(p): level in dB, minus infinity for a zero point */
  DSP_FORMAT_MAGNITUDE = 1,  /**< r */
  DSP_FORMAT_PHASE = 2,      /**< atan2(im, re) 57.29577951307855: degrees (180/pi, but smaller by 7e-14 of it) */
  DSP_FORMAT_SWR = 3,        /**< (1 + r)/(1 - r): standing-wave ratio, 1000000 for r above 0.999998 */
  DSP_FORMAT_RETURN_LOSS = 4 /**< -10 log10(p): return loss in dB */
};

/** Points of [start, stop) in a display format. Other formats write nothing. */
DSP_API void vfpd_FormatBuffer(uint32_t format, const dsp_complex *in, double *out, int32_t start, int32_t stop);

/** The phase of points [start, stop) in radians, without jumps above pi from point to point. It continues what `out`
 * holds at 0 to start - 1: a piece starts from the whole turns between out[0] and out[start - 1], and takes at most one
 * turn per point. A NaN point leaves the count of turns as it was. */
DSP_API void vfpd_UnwrapPhase(const dsp_complex *in, int32_t start, int32_t stop, double *out);

/** Modes of the floating-point unit for the calling thread, as bits of the VFP's FPSCR: 22-23 the rounding (0 nearest,
 * 1 up, 2 down, 3 towards zero), 24 flush to zero, 25 default NaN. On ARM (FPSCR) and AArch64 (FPCR) it is the register
 * itself. On x86-64 it is a word per thread, returned as stored, whose bits 22-24 set the unit's modes (flush to zero:
 * of subnormal results and operands). Elsewhere it is a word without effect. get_fpscr returns the register; set_fpscr
 * returns what it was before. set_runfast sets bits 24 and 25 (`on` not 0) or clears them, leaves all others alone and
 * returns what it wrote. */
DSP_API uint32_t get_fpscr(void);
DSP_API uint32_t set_fpscr(uint32_t value);
DSP_API uint32_t set_runfast(int32_t on);

/* ============================================================================================================
 * Zeros of polynomials and the way back (poly)
 *
 * Coefficients are the samples of a signal in ascending powers, as dsps_peval takes them. The poles of a filter, and
 * the polynomial they belong to; a sensor's reading turned into the quantity that it stands for:
 *
 *     double c[] = {2, -3, 1};                              // 2 - 3 z + z^2
 *     dsp_vec v = {1, c, 0, 3, 0, 0};                       // borrows c
 *     dspi_proots(&v);                                      // v = (1, 0), (2, 0): complex, two samples
 *     dspi_pztoc(&v);                                       // v = 2, -3, 1: real, three samples
 *     dsps_psolve(&calibration, &out, reading);             // where dsps_peval(&calibration, ...) gives the reading
 *     if (out.length == 1) quantity = out.data[0];
 *
 * Every zero z is refined until its backward error is rounding: |p(z)| <= 4 n eps (|c[0]| + |c[1] z| + ... ), with the
 * degree n and eps = 2^-52. It is then an exact zero of a polynomial whose coefficients differ by that little. A
 * multiple zero is found as often as it counts, as a close group of zeros: so small a change of the coefficients splits
 * it. The time rises with n^2: 4 us for n = 10, 0.3 ms for n = 200.
 *
 * All return -1 when memory runs out. Whatever the reason for a -1, the arguments are as they were.
 * ========================================================================================================== */

/** Coefficients become zeros: a complex signal of as many samples as the degree, dx 1, in ascending order of modulus;
 * zeros of one modulus (to 4 eps) in the order of their phase, from 0 up to 2 pi. Those of a real polynomial, one whose
 * imaginary parts are all 0 included, have an imaginary part of exactly 0 or come in exact conjugate pairs, the one
 * with the positive imaginary part first and the other directly behind it. Coefficients of 0 at the top lower the
 * degree; each one at the bottom gives a zero at exactly 0. No samples, or degree 0: an empty complex signal. A zero
 * too small for a double is 0. -1: every sample is 0, a sample is not finite, a zero is too large for a double. Method:
 * Ehrlich-Aberth iteration from the polynomial's Newton polygon. */
DSP_API int32_t dspi_proots(dsp_vec *v);

/** Zeros become the coefficients of the polynomial that has them and 1 as its highest coefficient: one sample more, in
 * ascending powers, dx 1; real when each zero is real or has its exact conjugate among the others, else complex. No
 * zeros: 1. The zeros are multiplied out in Leja's order in twice the digits, so that partial products neither overflow
 * nor cancel where the result does not; a coefficient too large for a double is infinite. -1: a zero is not finite. */
DSP_API int32_t dspi_pztoc(dsp_vec *v);

/** All real x where the polynomial c has the value y, dsps_peval backwards: out is a real signal, dx 1, in ascending
 * order, a multiple solution as often as it counts, empty when there is none. Rounding may move a double solution off
 * the real axis, as a pair of complex ones. Such a pair counts as two solutions at its real part if the bound above,
 * with |y| added to the sum, holds all the way from the pair to the axis. out may be c. -1: c is complex; c is constant
 * and equal to y (without samples c is 0); a coefficient or y is not finite; a zero of c - y is too large for a double.
 */
DSP_API int32_t dsps_psolve(const dsp_vec *c, dsp_vec *out, double y);

/** All complex z where the real or complex polynomial c has the value y_re + i y_im, as dspi_proots gives the zeros of
 * c - y. out may be c. -1 as dsps_psolve, but for a complex c. */
DSP_API int32_t dsps_pcsolve(const dsp_vec *c, dsp_vec *out, double y_re, double y_im);

/* ============================================================================================================
 * One-port calibration, complex matrices, circles and arcs (rf): plain arrays, no signals
 *
 * A reflectometer sees the reflection coefficient a of a device through an error box,
 * g = e00 + e10e01 a / (1 - e11 a), with directivity e00, reflection tracking e10e01 and source match e11. Measurements
 * of three standards with known coefficients give the three terms, which correct every later measurement:
 *
 *     Compute1PortTerms(short_g, open_g, load_g, short_a, open_a, load_a, 0, n);    // now e00, e11, e10e01
 *     a[i] = (g[i] - e00[i]) / (e10e01[i] + e11[i] (g[i] - e00[i]));                // in complex numbers
 *
 * Reference: D. Rytting, An Analysis of Vector Measurement Accuracy Enhancement Techniques. C++ programs find the
 * matrix in dsp/rf/matrix.h: matrix<std::complex<double>>, or of any other field. One thread at a time.
 * ========================================================================================================== */

/** Error terms from three standards at points [first, end): g1 to g3 hold the measured coefficients and become
 * directivity e00, source match e11 and reflection tracking e10e01; a1 to a3 hold the actual coefficients and are only
 * read. All six values of a point are read before any is written, so that arrays may be the same. Nothing happens for
 * first >= end. Standards that do not determine the terms (two equal ones, for example) give meaningless terms at that
 * point, without notice. If memory runs out (a few hundred bytes), std::bad_alloc is thrown: the only exception that
 * leaves the library. */
DSP_API void Compute1PortTerms(dsp_complex *g1, dsp_complex *g2, dsp_complex *g3, const dsp_complex *a1,
                               const dsp_complex *a2, const dsp_complex *a3, int32_t first, int32_t end);

/** out = a b for row-major arrays: a of m x k, b of k x p, out of m x p elements (it may be a or b). Returns the number
 * of elements written, m p. -1, and out untouched: a has more columns than rows, a negative size, no memory. */
DSP_API int32_t MatrixMult(const dsp_complex *a, const dsp_complex *b, dsp_complex *out, int32_t m, int32_t k,
                           int32_t p);

/** Inverts the row-major n x n array m in place by Gauss-Jordan elimination with row pivoting, and returns 1. 0, and m
 * untouched: a pivot of modulus below 2.220446049250313e-12 (an absolute bound: scale small matrices up), n <= 0, no
 * memory. A NaN pivot counts as valid: the result is 1, and NaN elements are written. */
DSP_API int32_t invert(dsp_complex *m, int32_t n);

/** The circle nearest to the points of [start, stop) in the sense of least squared distances from it, as for the
 * quality factor of a resonance or the centre of a constellation:
 *
 *     dsp_complex centre;
 *     double radius, rms;
 *     if (vfpd_CircleFit(trace, 0, n, &centre, &radius, &rms) == 0) ...    // rms: how well it fits
 *
 * An algebraic fit (Pratt) starts it, Newton's method finishes it, in 5 passes over the points as a rule. Scale and
 * place do not matter. On a short arc (5 degrees) the result is the least squares solution as long as the noise stays
 * below a tenth of the arc's height above its chord. rms, unless null, becomes the root mean square distance. -1, and
 * nothing is written: fewer than three points; values that are not finite; points that lie on a straight line, or all
 * in one place, to 4 eps of the largest coordinate (eps = 2^-52); points to which no circle is nearer than the best
 * straight line, as those of an even zigzag; a result too large for a double. */
DSP_API int32_t vfpd_CircleFit(const dsp_complex *z, int32_t start, int32_t stop, dsp_complex *centre, double *radius,
                               double *rms);

/** zi[i] = the complex trace z, given at the n places x, at xi[i] for m places, along arcs: a marker between the points
 * of a sweep.
 *
 *     CircularInterpolation(frequency, reflection, n, &marker, &value, 1);
 *
 * Between nodes k and k+1 the value is (1 - t) times the curve through nodes k-1, k, k+1 plus t times that through k,
 * k+1, k+2, with t = (x - x[k])/(x[k+1] - x[k]). In the first and the last interval, and beyond the ends, it lies on
 * the only curve there is. A curve is the circle through its three nodes; the angle on it is the parabola in x through
 * the angles of the nodes. From node to node it takes the arc shorter than half a circle (counter-clockwise if it is
 * half a circle, to rounding). A reflection behind a length of line, a + r e^{i(bx + c)}, is reproduced to rounding
 * while it turns by less than pi from node to node. Through three nodes on a straight line, to 4 eps of their largest
 * modulus, both parts are parabolas in x instead, so that straight traces stay straight. A node's own x gives its value
 * exactly. xi may be in any order; zi overlaps no input. n = 1 is a constant, n = 2 a straight line. A NaN in z or xi
 * spoils only the values that use it. m <= 0: nothing is done. -1, and nothing is written: n <= 0, x does not rise
 * strictly. */
DSP_API int32_t CircularInterpolation(const double *x, const dsp_complex *z, int32_t n, const double *xi,
                                      dsp_complex *zi, int32_t m);

#ifdef __cplusplus
}
#endif

#endif
