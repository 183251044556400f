/* dsp - routines for measurement signals: one record, plain functions, C linkage.
 *
 * SPDX-License-Identifier: MIT
 *
 * Conventions, stated once
 * ------------------------
 * Status      Routines return 0 for success and -1 for failure: lengths that do not match, a representation
 *             that a routine does not take, an argument out of range, memory that ran out. A routine that
 *             fails leaves every record valid (it can be used again and destroyed); the output's contents are
 *             then undefined, its `length` and `is_complex` possibly changed.
 * Order       Signals first, inputs before outputs (but `dsp_copy`, `dsp_copy_at_most` and `dsp_append` take the
 *             destination first), then integers and numbers, then optional results and states.
 * Counts      Lengths are samples; a complex sample counts once. `capacity` alone counts doubles. A negative
 *             length is an empty signal. Sizes that do not fit are out of memory.
 * Frequency   Filter routines take cycles per sample (0.5 is Nyquist); everything else takes cycles per unit of
 *             `dx`. A transform of N samples turns `dx` into 1/(dx N), and a `dx` of 0 into 1e100.
 * Sharing     An output may be the same record as an input, or another record on the same buffer, unless the
 *             routine says otherwise; the result is the same. Buffers that merely overlap are not supported.
 * Infinity    1e100 stands for a result without bound (1/0, a component beyond +-1e100 where a routine says so).
 *             NaN runs through the formulas; it is never undefined behaviour.
 * Names       dsp_ signal management, dspi_ in place, dspb_ two signals into one, dspbs_ two signals into a
 *             scalar, dspc_ create, dspd_ filter with a state, dsph_ spectra and resampler, dsps_ statistics,
 *             dspu_ one signal into another, vfp... plain trace arrays.
 * Threads     One thread at a time: tables, windows and scratch signals are process-wide and unguarded.
 *
 * The prefix of a routine names its family: see the sections below, each with its own introduction.
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
 * A record may also borrow the caller's memory: set `data`, `length` and `is_complex` and leave `capacity` 0. The
 * library never releases a borrowed buffer; a routine that needs more room replaces it by one of its own.
 * ========================================================================================================== */

/** One complex sample: the layout of C's double _Complex and C++'s std::complex<double>. */
typedef struct dsp_complex {
  double re; /**< real part */
  double im; /**< imaginary part */
} dsp_complex;

/** A signal: samples `dx` apart, real or complex, in a buffer of the library's or of the caller's. */
typedef struct dsp_vec {
  double dx;           /**< spacing of two samples; 1.0 after dsp_init */
  double *data;        /**< real: length doubles; complex: 2 length doubles, re, im, re, im, ... */
  int32_t capacity;    /**< doubles the library owns behind data; 0 or less: the buffer is borrowed, or there is none */
  int32_t length;      /**< samples */
  uint32_t is_complex; /**< 0 real, anything else complex; routines write 1 */
  int32_t reserved;    /**< written 0, read by no routine, not copied */
} dsp_vec;

/** Returns 0. Calling it is optional: the library needs no start-up. */
DSP_API int32_t dsp_lib_init(void);

/** Returns 205: release 2.5. */
DSP_API int32_t dsp_version(void);

/** Makes *v the empty real signal: dx 1, everything else 0. Releases nothing, so not for a signal that owns a
 * buffer. Always 0. */
DSP_API int32_t dsp_init(dsp_vec *v);

/** Releases an owned buffer and leaves *v as dsp_init does; a borrowed buffer is left alone. Always 0. */
DSP_API int32_t dsp_destroy(dsp_vec *v);

/** Makes room for the `length` and `is_complex` that *v states. A buffer that is large enough stays as it is, contents
 * included, and never shrinks; otherwise the contents are lost. -1: no memory, or more than INT32_MAX doubles; `data`
 * is then null and `capacity` 0, `length` and `is_complex` stay as asked. */
DSP_API int32_t dsp_alloc(dsp_vec *v);

/** As dsp_alloc, but the samples that `old_length` and `old_is_complex` describe survive; those of a borrowed buffer
 * are copied. -1 as dsp_alloc: the samples are lost, and the block that could not be resized by the heap stays
 * allocated with nobody to release it (a block too large to be counted is released). */
DSP_API int32_t dsp_realloc(dsp_vec *v, int32_t old_length, uint32_t old_is_complex);

/** Hooks in place of the heap, process-wide, null at first. Each works on the record itself.
 * The allocation hook (dsp_alloc) finds the wanted `length` and `is_complex` in the record and the old buffer still
 * in `data`, which is then its own to release; it leaves `data` at a buffer of at least the needed doubles, or null.
 * The reallocation hook (dsp_realloc) keeps the contents described by its two further arguments; for a borrowed or
 * absent buffer it is called with `data` null. The release hook (dsp_destroy) releases `data`.
 * `capacity` is the library's to update, after the hook returns. */
typedef void (*dsp_alloc_fn)(dsp_vec *v);
typedef void (*dsp_realloc_fn)(dsp_vec *v, int32_t old_length, uint32_t old_is_complex);
typedef void (*dsp_free_fn)(dsp_vec *v);

/** Install a hook (null: back to the heap) and hand out the previous one when `previous` is not null. Always 0.
 * Install hooks before the first signal is sized: a buffer must go back to where it came from. */
DSP_API int32_t dsp_lib_alloc(dsp_alloc_fn hook, dsp_alloc_fn *previous);
DSP_API int32_t dsp_lib_realloc(dsp_realloc_fn hook, dsp_realloc_fn *previous);
DSP_API int32_t dsp_lib_free(dsp_free_fn hook, dsp_free_fn *previous);

/** dst = src: samples, dx and representation. -1: no memory. */
DSP_API int32_t dsp_copy(dsp_vec *dst, const dsp_vec *src);

/** dst = the first `count` samples of src, fewer if it is shorter. -1: no memory. */
DSP_API int32_t dsp_copy_at_most(dsp_vec *dst, const dsp_vec *src, int32_t count);

/** dst = the `count` samples of src from `start` on, dx and representation as src. Start and count are clamped to what
 * is there. dst may be src: the signal is cut in place. Note the order: source first. -1: no memory. */
DSP_API int32_t dspu_subvec(const dsp_vec *src, dsp_vec *dst, int32_t start, int32_t count);

/** Appends src to dst, which keeps its dx and becomes complex when src is. -1: no memory, or src is dst or a view of
 * dst's buffer (then nothing changes). */
DSP_API int32_t dsp_append(dsp_vec *dst, const dsp_vec *src);

/** Orders two signals: *result is 0 when dx and all samples agree within `tolerance`, else 1 or -1 by the sign of the
 * first difference a - b beyond it (dx, then sample by sample, real before imaginary part). Real samples count as
 * complex ones with imaginary part 0; NaN differences count as none. -1: lengths differ, *result untouched. */
DSP_API int32_t dsp_cmp(const dsp_vec *a, const dsp_vec *b, double tolerance, int32_t *result);

/** Releases every cache of the process: filter spectra, transform tables, work signals, windows. The next call of a
 * routine rebuilds what it needs. May be called any number of times; never while another routine runs. */
DSP_API int32_t dsp_free_internal(void);

/* ============================================================================================================
 * Arithmetic and representations (elementwise)
 *
 * One signal changed in place, sample by sample; `length` and `dx` stay. A routine that makes a real signal complex
 * grows its buffer, and is the only kind here that can fail (-1: no memory).
 *
 *     dspi_fft(&v, 0);           // complex bins ...
 *     dspi_scale(&v, 2.0);
 *     dspi_mag(&v);              // ... to real amplitudes
 *     dspi_db(&v, 20.0);         // ... to decibels
 *
 * Real samples that meet a complex constant or result count as (x, 0). Polar signals are complex signals whose pairs
 * are (magnitude, phase in radians): dspi_rtop makes them, dspi_ptor undoes it, and only the caller knows.
 * All arithmetic here is the same, bit for bit, on every processor.
 * ========================================================================================================== */

/** Decibels: factor log10(x), `factor` 10 for powers and 20 for amplitudes. A real sample below the smallest normal
 * double (zero, negative, subnormal) gives the factor times -307.6526555685888. Complex: (factor log10 |z|, factor
 * times the phase times log10 e), parts beyond +-1e100 clamped to it; below the smallest normal |z|^2, (that floor, 0).
 */
DSP_API int32_t dspi_db(dsp_vec *v, double factor);

/** Real parts; the signal becomes real. */
DSP_API int32_t dspi_real(dsp_vec *v);

/** Imaginary parts; the signal becomes real. A real signal becomes all 0. */
DSP_API int32_t dspi_imag(dsp_vec *v);

/** x becomes (x, 0); a complex signal stays. -1: no memory. */
DSP_API int32_t dspi_rtoc(dsp_vec *v);

/** Complex conjugate; a real signal stays. */
DSP_API int32_t dspi_conj(dsp_vec *v);

/** -x. */
DSP_API int32_t dspi_neg(dsp_vec *v);

/** x + c; of complex samples only the real part moves. */
DSP_API int32_t dspi_offset(dsp_vec *v, double c);

/** k x. */
DSP_API int32_t dspi_scale(dsp_vec *v, double k);

/** (c_re + i c_im) z; the signal becomes complex, unless it is empty. -1: no memory. */
DSP_API int32_t dspi_cscale(dsp_vec *v, double c_re, double c_im);

/** 1/x, and 1e100 for 0. Complex zeros give (0, -0). A complex sample with a part beyond +-1e100 is merely conjugated
 * and scaled by 1e-100. Below a magnitude of 7.5e-155 the reciprocal of the square overflows: parts of the result may
 * be infinite or, where they were 0, NaN. */
DSP_API int32_t dspi_recip(dsp_vec *v);

/** Square root: 0 for negative real samples (a real signal stays real), the principal root of complex ones, whose
 * magnitude counts as 1e100 when a part is beyond +-1e100. */
DSP_API int32_t dspi_sqrt(dsp_vec *v);

/** x x, and 1e100 for a real sample beyond +-1e100. Complex: parts beyond +-1e100 count as +-1e100. */
DSP_API int32_t dspi_square(dsp_vec *v);

/** i z; the signal becomes complex, unless it is empty. -1: no memory. */
DSP_API int32_t dspi_timesi(dsp_vec *v);

/** Clamps every value, each part of complex samples by itself, into [lo, hi], or [hi, lo] when those are the right way
 * round. *clipped, unless null, becomes 1 if any value was outside, else 0. NaN stays and counts as inside. */
DSP_API int32_t dspi_limit(dsp_vec *v, double lo, double hi, int32_t *clipped);

/** All samples 0; a buffer that is too small, or borrowed, is replaced first. -1: no memory. */
DSP_API int32_t dspi_zero(dsp_vec *v);

/** Magnitude; the signal becomes real. Neither overflows nor vanishes on the way, like hypot; within one unit in the
 * last place of it. */
DSP_API int32_t dspi_mag(dsp_vec *v);

/** Squared magnitude, 1e100 for samples with a part beyond +-1e100; the signal becomes real. */
DSP_API int32_t dspi_magsq(dsp_vec *v);

/** Phase in radians, in [-pi, pi]; the signal becomes real. Real samples have pi below 0, else 0 (NaN too); complex
 * zeros of any sign 0. */
DSP_API int32_t dspi_phase(dsp_vec *v);

/** To polar: (dspi_mag, dspi_phase). The signal becomes complex. -1: no memory. */
DSP_API int32_t dspi_rtop(dsp_vec *v);

/** From polar: (m, p) becomes (m cos p, m sin p). A real signal stays. */
DSP_API int32_t dspi_ptor(dsp_vec *v);

/** As dspi_mag, dspi_magsq and dspi_sqrt, into `out`, which takes length and dx of `in` and may be it. -1: no memory.
 */
DSP_API int32_t dspu_mag(const dsp_vec *in, dsp_vec *out);
DSP_API int32_t dspu_magsq(const dsp_vec *in, dsp_vec *out);
DSP_API int32_t dspu_sqrt(const dsp_vec *in, dsp_vec *out);

/* ============================================================================================================
 * Two signals into one (elementwise)
 *
 * out = a op b, sample by sample. `out` may be `a` or `b`; it takes their length, the mean of their `dx`, and is
 * complex when either is. A real operand beside a complex one has imaginary parts 0.
 *
 *     dspb_sub(&measured, &background, &measured);
 *     dspb_div(&measured, &reference, &ratio);
 *
 * -1: the lengths differ (the output is untouched), or no memory. Complex products and quotients follow the school
 * formulas: no rescue of infinities, no scaling.
 * ========================================================================================================== */

/** a + b and a - b. The shorter operand is extended with zeros: lengths may differ here. */
DSP_API int32_t dspb_add(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);
DSP_API int32_t dspb_sub(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** a b. */
DSP_API int32_t dspb_mul(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** a times the conjugate of b. */
DSP_API int32_t dspb_conj_mul(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** a/b. Over zero: 0 when `a` is 0 too, else 1e100 whatever its sign, (1e100, 1e100) when complex. A complex divisor
 * whose squared magnitude underflows to 0 counts as zero. */
DSP_API int32_t dspb_div(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** b + w (a - b): the exponential average b after the new value a of weight w. w is not checked. */
DSP_API int32_t dspb_avg_add(const dsp_vec *a, const dsp_vec *b, dsp_vec *out, double w);

/** The larger or smaller sample of each pair, whole: by value when both are real, else by squared magnitude, which
 * counts as 1e100 when a part is beyond +-1e100. Ties, and comparisons with NaN, go to b. */
DSP_API int32_t dspb_max(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);
DSP_API int32_t dspb_min(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** The product of the polynomials whose coefficients are the samples: full convolution, a.length + b.length - 1 samples
 * (none when either is empty), dx of a. The lengths may differ. Time grows with their product. */
DSP_API int32_t dspb_pmul(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** The complex signal (re, im) of two real ones of equal length. -1 also for complex inputs. */
DSP_API int32_t dspb_ritoc(const dsp_vec *re, const dsp_vec *im, dsp_vec *out);

/** The dot product, one sample, summed in order and without conjugation; 0 for empty operands. `out` keeps its dx. */
DSP_API int32_t dspbs_dot(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/* ============================================================================================================
 * Elementary functions (elementwise)
 *
 * In place; length, dx and representation stay. No domain errors: outside its domain a function gives a fixed value,
 * 0 or 1e100 or the function's value at the smallest normal double. Exponentials and logarithms of real samples are
 * right to one unit in the last place, whatever the processor; the rest are the C library's.
 *
 *     dspi_log10(&v);                          // a floor of -307.65 instead of minus infinity
 *     dspi_addcos(&v, 0, 50.0, 0.1, 0.0);      // plus a hum of 50 cycles per unit of dx
 *
 * The first six take real signals only (-1 for complex ones, unchanged); the others always return 0.
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

/** e^x; 1e100 (the magnitude, of complex samples) where the real part is above 230.25850929940458. */
DSP_API int32_t dspi_exp(dsp_vec *v);

/** 10^x; 1e100 (the magnitude) where the real part is above 100. Two oddities are kept: a real sample below -1e100 ends
 * the conversion, it and all after it stay as they are; a complex one gets the magnitude -1e100. */
DSP_API int32_t dspi_exp10(dsp_vec *v);

/** Natural logarithm; -708.3964185322641 for real samples below the smallest normal double, and (that, 0) for complex
 * ones whose squared magnitude is below it. The squared magnitude counts as 1e100 when a part is beyond +-1e100 (the
 * real part is then 115.12925464970229). */
DSP_API int32_t dspi_log(dsp_vec *v);

/** Common logarithm: dspi_db with factor 1. */
DSP_API int32_t dspi_log10(dsp_vec *v);

/** Adds amp cos(phase + 2 pi freq dx k) to sample k, `freq` in cycles per unit of dx. With bit 0 of `flags` a complex
 * signal gets the sine as well, in its imaginary parts: a complex exponential. The angle is computed afresh every 256
 * samples and turned in between; errors stay near 1e-15 of the amplitude. */
DSP_API int32_t dspi_addcos(dsp_vec *v, int32_t flags, double freq, double amp, double phase);

/* ============================================================================================================
 * Order, length and calculus (elementwise)
 *
 * In place; complex samples move as pairs.
 *
 *     dspi_zpad2(&v, 4096, DSP_PAD_CENTRE | DSP_PAD_UNSCALED);    // zeros on both sides
 *     dspi_fft(&v, 0);
 *     dspi_swap_halves(&v);                                       // frequency 0 in the middle
 *
 * -1: no memory, a mode that has no meaning, or a complex signal where a routine says real only.
 * ========================================================================================================== */

/** Modes of dspi_zpad2 and dspi_unzpad: one of the first three, one of the others; further bits are ignored. */
enum {
  DSP_PAD_SCALED = 0,      /**< samples times new length / old length */
  DSP_PAD_ROOT_SCALED = 1, /**< times the square root of that */
  DSP_PAD_UNSCALED = 2,    /**< as they are; 3 is invalid */
  DSP_PAD_FRONT = 0x000,   /**< the samples lie at the front */
  DSP_PAD_CENTRE = 0x100,  /**< in the middle: sample n/2 of the shorter at sample n/2 of the longer signal */
  DSP_PAD_BACK = 0x200,    /**< at the end */
  DSP_PAD_SPLIT = 0x300    /**< the first half, the larger one, at the front, the rest at the end, as spectra want it */
};

/** Reverses the order. */
DSP_API int32_t dspi_rev(dsp_vec *v);

/** Drops the first k samples, k clamped into [0, length]. -1: no memory (a borrowed buffer is replaced by a copy). */
DSP_API int32_t dspi_shift(dsp_vec *v, int32_t k);

/** Sorts, not stably: real samples by value; complex ones by squared magnitude, parts beyond +-1e100 counting 1e200,
 * then by real, then by imaginary part. Samples with a NaN come last. Never worse than n log n. */
DSP_API int32_t dspi_sort(dsp_vec *v);

/** Exchanges the halves: of N samples, the first moves to N/2 (a spectrum is centred). dspi_swap_halves2 undoes it; for
 * even N the two are the same. */
DSP_API int32_t dspi_swap_halves(dsp_vec *v);
DSP_API int32_t dspi_swap_halves2(dsp_vec *v);

/** Appends zeros up to `length`; never shortens. -1: no memory. */
DSP_API int32_t dspi_zpad(dsp_vec *v, int32_t length);

/** Lengthens to `length`, placing and scaling the old samples as `mode` says; nothing happens if the signal is that
 * long already. -1: no memory, or an invalid mode (the signal is then longer, its samples undefined). */
DSP_API int32_t dspi_zpad2(dsp_vec *v, int32_t length, int32_t mode);

/** The inverse: keeps the `length` samples that dspi_zpad2 would have placed so; nothing happens if there are no more.
 * A length of 0 or less leaves none. -1: an invalid mode (unchanged). */
DSP_API int32_t dspi_unzpad(dsp_vec *v, int32_t length, int32_t mode);

/** Completes the spectrum of a real signal from its one side: n samples become 2 (n - 1), or with `odd` 2 n - 1, the
 * new ones the conjugates of those that mirror them. dspi_recon is the even form, and leaves fewer than 3 samples as
 * they are. -1: no memory. */
DSP_API int32_t dspi_recon(dsp_vec *v);
DSP_API int32_t dspi_orecon(dsp_vec *v, int32_t odd);

/** (x[i] - x[i-1])/dx with x[-1] = 0; times 1e100 for dx 0. */
DSP_API int32_t dspi_differ(dsp_vec *v);

/** dx (x[0] + ... + x[i]). */
DSP_API int32_t dspi_integ(dsp_vec *v);

/** Derivative of the polynomial whose coefficients, in ascending powers, are the samples: i x[i] at i - 1, one sample
 * less. */
DSP_API int32_t dspi_pdiffer(dsp_vec *v);

/** Real only. Takes the jumps out of a phase: each sample is moved by whole turns to within pi of the one before it,
 * the first to within pi of 0. NaN and infinite samples become NaN, and the next goes on from the last number. */
DSP_API int32_t dspi_unwrap(dsp_vec *v);

/** The same against the mean of the last `window` outputs, of as many as there are at first; 1 is dspi_unwrap, 0 wraps
 * every sample into [-pi, pi]. -1 also for a negative window. */
DSP_API int32_t dspi_unwrap_wnd(dsp_vec *v, int32_t window);

/** Real only. Replaces the signal by the positions where it crosses `level`, interpolated, in units of dx from its
 * first sample: rising with bit 0 of `mode` (a <= level < b), falling with bit 1 (b < level <= a). dx becomes 1. */
DSP_API int32_t dspi_edge(dsp_vec *v, int32_t mode, double level);

/* ============================================================================================================
 * Generators (elementwise)
 *
 * The caller states length, dx and representation; the generator sizes the buffer and writes every sample.
 *
 *     v.length = 1000; v.dx = 1e-6; v.is_complex = 0;
 *     dspc_cos(&v, 50e3, 0.0);       // 50 kHz sampled at 1 MHz
 *
 * -1: no memory.
 * ========================================================================================================== */

/** offset, offset + slope dx, ... by repeated addition; complex signals get imaginary parts 0. */
DSP_API int32_t dspc_line(dsp_vec *v, double slope, double offset);

/** cos(phase + 2 pi freq dx k), `freq` in cycles per unit of dx; complex signals get imaginary parts 0. The angle is
 * computed afresh every 256 samples and turned in between; errors stay near 1e-15. */
DSP_API int32_t dspc_cos(dsp_vec *v, double freq, double phase);

/** The complex exponential of the same angle; on a real signal dspc_cos. */
DSP_API int32_t dspc_cexp(dsp_vec *v, double freq, double phase);

/* ============================================================================================================
 * Fourier transforms (fft)
 *
 * Between time and frequency, in place, for records of any length, and what rests on that. The conventions are the same
 * everywhere: forward X[k] = 1/N sum x[n] exp(-2 pi i k n/N), inverse x[n] = sum X[k] exp(+2 pi i k n/N), so that a
 * bin of a forward transform is the amplitude of its frequency and the inverse undoes the forward one. `dx` becomes
 * 1/(dx N): bin k lies at k times the new dx. A dx of 0 becomes 1e100. The spectrum of a real signal is its lower
 * half, N/2 + 1 bins; the rest are their conjugates.
 *
 *     v.length = 1000; v.dx = 1e-6;             // a real record at 1 MHz
 *     dspi_rdft(&v);                            // complex, 501 bins of 1 kHz
 *     for (k = 0; k < v.length; k++) ...        // frequency k * v.dx
 *     dspi_irdft(&v, 0);                        // the record again; 1 had its length been odd
 *
 * Powers of two are the fastest lengths; others go through two transforms of the least power of two from 2N - 2 on and
 * grow the buffer to that. Relative errors are about 0.7e-16 times the root of the number of stages, log2 N. The first
 * transform of a size builds its tables (about 2N doubles); they stay until dsp_free_internal.
 * -1 for lack of memory leaves the samples undefined. NaN and infinite samples spread over the whole result.
 * ========================================================================================================== */

/** Transform of a signal whose length is a power of two; forward for `inverse` 0, else inverse. The result is complex,
 * but a single sample stays as it is. A real signal takes less time forward; borrowed, with 2 and
 * more samples, it gets a buffer of the library's own. Scaled last: samples beyond 1e308/N may overflow on the way.
 * -1: another length (0 too; nothing changes), no memory. */
DSP_API int32_t dspi_fft(dsp_vec *v, uint32_t inverse);

/** Puts sample i where the bits of its index in reverse order say, for a power-of-two length; twice restores the order.
 * dx and representation stay. -1: another length (nothing changes), no memory for the table. */
DSP_API int32_t dspi_bitrev(dsp_vec *v);

/** dspi_bitrev, and every sample times 1/length. */
DSP_API int32_t dspi_bitrev_scale(dsp_vec *v);

/** dspi_fft on a bare array of `length` samples: re, im, re, im, ... in place. -1 as dspi_fft, and for real data of 2
 * and more samples, whose result would not fit the array. */
DSP_API int32_t cf_dspi_fft(double *data, int32_t length, uint32_t is_complex, uint32_t inverse);

/** Half spectrum of a real signal whose length N is a power of two: N/2 + 1 bins, those of dspi_fft. Half its work; the
 * buffer is grown to the 2N doubles of a full spectrum. A single sample stays real. Bins 0 and N/2 have imaginary part
 * 0. -1: complex signal, another length (nothing changes), no memory. */
DSP_API int32_t dspi_rfft(dsp_vec *v);

/** Real signal of N = 2(length - 1) samples from its half spectrum, N a power of two; one bin gives one sample.
 * Imaginary parts of bins 0 and N/2 are ignored. -1: no memory, no bins, or N no power of two (the signal is then the
 * full spectrum of N bins). */
DSP_API int32_t dspi_irfft(dsp_vec *v);

/** Transform of any length, else as dspi_fft. Lengths 0 and 1 only invert dx. For a length that is no power of two
 * (Bluestein's method) the chirp and its spectrum of the last such length are kept: the next transform of that length,
 * either way, starts at once. -1: no memory, or a length beyond 2^28 that is no power of two. */
DSP_API int32_t dspi_dft(dsp_vec *v, int32_t inverse);

/** Half spectrum of a real signal of any length N: N/2 + 1 bins, rounded down. -1: complex signal (nothing changes), no
 * memory. */
DSP_API int32_t dspi_rdft(dsp_vec *v);

/** Inverse of dspi_rdft: 2(length - 1) real samples, one more with `odd` (a half spectrum does not tell). An empty
 * signal and, without `odd`, a single bin only invert dx. -1: no memory. */
DSP_API int32_t dspi_irdft(dsp_vec *v, uint32_t odd);

/** Cosine transform of a real signal of any length N, y[k] = 1/N sum x[n] cos(pi k (2n + 1)/(2N)) (type II); flag 1:
 * its inverse (type III); flag 2: the normalised form, twice that, y[0] over sqrt 2 as well. dx becomes 1/(2N dx),
 * 5e99 for a dx of 0; an empty signal's 0.5/dx. The rotations of the last length are kept. -1: complex signal (nothing
 * changes), no memory. */
DSP_API int32_t dspi_dct(dsp_vec *v, int32_t flags);

/** Hilbert transform of any length: every frequency a quarter period later, cosine to sine; constant and, for an even
 * length, highest frequency removed. Representation and dx stay. -1: no memory. */
DSP_API int32_t dspi_hilbert(dsp_vec *v);

/** Analytic signal of any length: the signal plus i times its Hilbert transform, so that magnitude and phase are
 * envelope and instantaneous phase. Complex (a single sample stays as it is); dx stays. -1: no memory. */
DSP_API int32_t dspi_analytic(dsp_vec *v);

/* ============================================================================================================
 * Windows (window)
 *
 * A window weighs the samples of a record before it is transformed, so that a line leaks less into its neighbourhood:
 *
 *     dspi_window(&v, DSP_WINDOW_HANN, DSP_WND_AMPLITUDE);      // mean 1: a line shows its amplitude
 *     dspi_rfft(&v);
 *     dsp_window_enbw(&bins, DSP_WINDOW_HANN, n);               // a bin takes in the noise of bins v.dx
 *
 * (dsph_fft does the first two in one.) Windows of the catalogue are periodic: n samples are one period, the centre
 * stands on sample n/2, and after weighing the halves are swapped, which brings it to sample 0 and the phase of every
 * bin to the middle of the record. The 16 windows used last are kept, so that one used again costs one product.
 *
 * The catalogue. Levels in dB, widths in bins of 1/(n dx), for long windows.
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
 * Main lobe: full width between the first minima. Ripple: the most by which a line shows too low between two bins
 * (flat-tops: or too high), so for the narrow ones their scallop loss. Type 24 has no name. A line and another 90 dB
 * below it 5 bins off ask for Blackman-Harris with 4 terms; levels, for a flat-top; noise and resolution, for Hann.
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
  DSP_WND_POWER = 1,         /**< scaled to mean square 1: it shows power, noise above all */
  DSP_WND_RAW = 2,           /**< peak 1 */
  DSP_WND_SCALE_MASK = 3,    /**< all bits of it set: invalid */
  DSP_WND_SYMMETRIC = 4,     /**< both ends on samples; Gauss, Kaiser, sinc lobe and Tukey only */
  DSP_WND_ACTIVE = 8,        /**< the parameter is the number of samples that the window spans */
  DSP_WND_SWAP_UNIFORM = 16, /**< the uniform window swaps halves as well */
  DSP_WND_NO_SWAP = 32       /**< the others do not */
};

/** The type of a name, upper or lower case: "Hann", "Flattop", "kaiser70" ... and the constants, "DSP_WINDOW_HANN".
 * Unknown: type 0 and -1. A null argument: -1. */
DSP_API int32_t dsp_window_from_str(const char *name, dsp_window_type *type);

/** Knows no name: writes "" (if buffer is not null and size above 0) and returns -1 for every type. */
DSP_API int32_t dsp_window_to_str(dsp_window_type type, char *buffer, int32_t size);

/** The factor that undoes a raw window of n samples in a spectrum. `kind` DSP_WND_AMPLITUDE: 1/mean (flat-tops: times
 * the mean, not quite 1, that their amplitude scale has); DSP_WND_POWER: 1/root mean square; DSP_WND_RAW, or n <= 0: 1.
 * The first form refuses DSP_WND_ACTIVE; the second takes it, with the active length in `param`, and measures the
 * window itself, as both do for types from 14 on (memory and time for n samples). 0 for a window without mean. -1: null
 * `scale`, a type or combination that does not exist, no memory. */
DSP_API int32_t dsp_window_scale(double *scale, dsp_window_type type, int32_t kind, int32_t n);
DSP_API int32_t dsp_window2_scale(double *scale, dsp_window_type type, int32_t kind, int32_t n, double param);

/** Equivalent noise bandwidth in bins: (amplitude scale / power scale)^2, n sum(w^2)/sum(w)^2. The second for the
 * window with active length `param`. -1 as above. */
DSP_API int32_t dsp_window_enbw(double *enbw, dsp_window_type type, int32_t n);
DSP_API int32_t dsp_window2_enbw(double *enbw, dsp_window_type type, int32_t n, double param);

/** v times a window of the catalogue, in v's own memory, real or complex. `flags` is a scale (DSP_WND_AMPLITUDE, _POWER
 * or _RAW), perhaps with DSP_WND_SYMMETRIC and the swapping flags; the uniform window without DSP_WND_ACTIVE changes no
 * sample. dspi_window2 also takes DSP_WND_ACTIVE, for types 0 and 2 to 13: the window then spans the inner `param` > 0
 * samples of v (uniform: the first), not necessarily a whole number, is 0 outside and scaled by what it measures; a
 * `param` above v's length leaves the inner part of a longer window. An empty signal stays as it is. -1: a type or
 * combination that does not exist, no memory (which a window in the cache does not need): v as it was. */
DSP_API int32_t dspi_window(dsp_vec *v, dsp_window_type type, int32_t flags);
DSP_API int32_t dspi_window2(dsp_vec *v, dsp_window_type type, int32_t flags, double param);

/** v times a parametric window, halves swapped unless DSP_WND_NO_SWAP. At d samples from the centre, L the span (n, and
 * n - 1 with DSP_WND_SYMMETRIC, the centre of an even n then between two samples), raw:
 * gauss   exp(-(d / (sigma L))^2 / 2); sigma 0: the centre alone
 * kaiser  I0(beta sqrt(1 - (2d/L)^2)) / I0(beta), |beta| limited to 460.5 (power scale: 230.3)
 * tukey   flat to (1 - alpha) L/2, then half a cosine down to 0; alpha 0 is uniform, 1 is Hann
 * sinc    sin(x)/x at x = 2 lobe d / L, `peak` on a centre sample
 * Not cached. -1: DSP_WND_ACTIVE, an invalid scale, no memory: v as it was. */
DSP_API int32_t dspi_window_gauss(dsp_vec *v, double sigma, int32_t flags);
DSP_API int32_t dspi_window_kaiser(dsp_vec *v, double beta, int32_t flags);
DSP_API int32_t dspi_window_tukey(dsp_vec *v, double alpha, int32_t flags);
DSP_API int32_t dspi_window_sinc(dsp_vec *v, double lobe, double peak, int32_t flags);

/** v times c[0] + c[1] cos(2 pi d/n) + c[2] cos(4 pi d/n) + ..., d samples from sample n/2; no scaling, no swap. No
 * coefficients: v becomes 0. -1: complex coefficients, no memory. */
DSP_API int32_t dspi_window_cos(dsp_vec *v, const dsp_vec *coefficients);

/** Filter taps times the raw window of a type, centred between the first and last tap and spanning n samples, so that
 * no tap gets weight 0. -1: unknown type, no memory. */
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
 * Scaling: without flags a spectrum of one side shows amplitudes, the window's mean and the padding taken out; every
 * bin is doubled, the first and last included. Centred records have time 0 in the middle.
 * ========================================================================================================== */

/** Flags of the spectrum routines; they may be combined. */
enum {
  DSP_SPECTRUM_INVERSE = 1,         /**< from spectrum to record */
  DSP_SPECTRUM_TWO_SIDED = 2,       /**< complex transform always, no factor 2 (inverse 0.5) for the missing side */
  DSP_SPECTRUM_SUM = 4,             /**< a sum: times the transform length (inverse: over it); full record */
  DSP_SPECTRUM_UNWINDOWED = 8,      /**< the record is not windowed (forward) */
  DSP_SPECTRUM_CENTRED = 16,        /**< halves swapped around the transform; full record */
  DSP_SPECTRUM_FROM_TWO_SIDED = 32, /**< the spectrum given is complex and centred (inverse) */
  DSP_SPECTRUM_ODD = 64,            /**< the record had odd length (dsph_dft, inverse) */
  DSP_SPECTRUM_RAW = 128            /**< the bare transform: no window, scale or swap; full record */
};

/** Averaging modes of dsph_avg, and two flags to go with them. */
enum {
  DSP_AVG_REPLACE = 0,    /**< the latest */
  DSP_AVG_MEAN = 1,       /**< arithmetic mean */
  DSP_AVG_MAX_HOLD = 2,   /**< larger sample, by magnitude when complex */
  DSP_AVG_MIN_HOLD = 3,   /**< smaller sample */
  DSP_AVG_HARMONIC = 4,   /**< harmonic mean */
  DSP_AVG_GEOMETRIC = 5,  /**< geometric mean */
  DSP_AVG_PERIODIC = 6,   /**< the latest at counts 1, 1 + period, 1 + 2 period, ... */
  DSP_AVG_MODE_MASK = 15, /**< other modes leave the average as it is */
  DSP_AVG_LIMIT = 16,     /**< the derived weight stops falling at count `limit`: exponential averaging from there */
  DSP_AVG_POWER = 32      /**< averages the squared magnitude of the input */
};

/** Spectrum of a record on a power-of-two grid.
 * Forward: the first `fraction` of the M-point transform length (M the least power of two >= n, at most 2^30; n < 1:
 * the record's length; typical n 0, fraction 1.0; a fraction outside (0, 1] counts as 1.0) is windowed in amplitude
 * mode, scaled and zero-padded to M. A real record gives M/2 + 1 bins from 0 to Nyquist; a complex one, or
 * DSP_SPECTRUM_TWO_SIDED, gives M bins with frequency 0 in the middle (sample M/2). A window other than uniform leaves
 * the record's middle at time 0, so phases refer to it. Inverse: undoes the same flags, up to the window, and yields
 * `fraction` of M samples; n < 1 takes M from the spectrum. DSP_SPECTRUM_SUM, _CENTRED and _RAW ignore n and fraction.
 * out->dx = 1/(in->dx M). An empty record is a silent one. out may be in. -1: null signal, unknown window, no memory.
 */
DSP_API int32_t dsph_fft(const dsp_vec *in, dsp_vec *out, int32_t n, double fraction, dsp_window_type window,
                         int32_t flags);

/** The same on the record's own length, whatever it is: no padding, no fraction. The inverse of a half spectrum yields
 * 2(L - 1) samples, or one more with DSP_SPECTRUM_ODD. */
DSP_API int32_t dsph_dft(const dsp_vec *in, dsp_vec *out, dsp_window_type window, int32_t flags);

/** Folds `in` into the running average `avg`, which the caller keeps between calls and never has to clear: at
 * `count` 1 (or less) it becomes a copy. `count` numbers the spectra from 1. `weight` is the share of the new spectrum;
 * negative (typical: -1.0) derives it as 1/count, or 1/limit from count `limit` on with DSP_AVG_LIMIT. `period` matters
 * to DSP_AVG_PERIODIC only. In the hold modes a tie keeps the average. `work` is a signal to compute in, kept by
 * callers who want no allocation per call; null, or one that shares a buffer with the others: a temporary. -1: null in
 * or avg, lengths that differ, no memory. */
DSP_API int32_t dsph_avg(const dsp_vec *in, dsp_vec *avg, dsp_vec *work, int32_t flags, int32_t count, int32_t period,
                         double weight, double limit);

/** Correlation of `in` with the first m samples of `ref`, at every lag where these lie inside `in`:
 * out[j] = (1/P) sum over i < m of in[i + j] conj(ref[i]), j = 0 ... length of in - m, P the least power of two >= the
 * length of `in`; halved once more when `halve` is not 0. Complex when either operand is; dx is the mean of both.
 * `work` as in dsph_avg. -1: null ref, in or out, m outside 1 ... the shorter length, no memory. */
DSP_API int32_t dsph_corr(const dsp_vec *ref, const dsp_vec *in, dsp_vec *out, dsp_vec *work, int32_t m,
                          uint32_t halve);

/** dsph_corr without a work signal. */
DSP_API int32_t dspb_corr(const dsp_vec *ref, const dsp_vec *in, dsp_vec *out, int32_t m, uint32_t halve);

/** dsph_fft with n 0 on plain arrays and a spacing of 1. `out_data` takes every sample of the result, with M the least
 * power of two >= length: forward, real and one-sided, M + 2 doubles, else 2 M; inverse of a half spectrum, M the least
 * power of two >= 2 (length - 1), M doubles, else 2 M (M from length). A raw transform counts as two-sided. Nothing is
 * written on failure. */
DSP_API int32_t cf_dsph_fft(const double *in_data, double *out_data, int32_t length, uint32_t is_complex,
                            double fraction, dsp_window_type window, int32_t flags);

/* ============================================================================================================
 * Statistics, peak and regression (stats)
 *
 * Each reduces one signal to a signal of one sample (a histogram, a peak or a fit: of a few), whose `dx` stays:
 *
 *     dsp_vec level;
 *     dsp_init(&level);
 *     dsps_rms(&v, &level);                  // level.data[0] is the level
 *     dsps_mean(&v, &v);                     // in place: v is now its own mean
 *
 * Sums run in blocks of 2048 samples and, inside a block, in 32 lanes whatever the processor: fast, the same bits
 * everywhere, a mean right to about 2 units in the last place for any length. No routine fails on numbers or on an
 * empty signal, whose statistic is 0 where nothing else is said. Where values are said to saturate, one beyond +-1e100
 * counts as +-1e100 and its square as 1e200; where not, infinities and NaN run through. All return -1 when memory runs
 * out.
 * ========================================================================================================== */

/** Sum of the samples; complex for a complex signal. */
DSP_API int32_t dsps_sum(const dsp_vec *in, dsp_vec *out);

/** Arithmetic mean, sum/n. */
DSP_API int32_t dsps_mean(const dsp_vec *in, dsp_vec *out);

/** Geometric mean, the n-th root of the product of all samples, taken front to back; 0 for a product below the smallest
 * normal double, so for every negative one. Complex: the principal root. Products leave the range of doubles easily:
 * for long signals average logarithms instead. */
DSP_API int32_t dsps_gmean(const dsp_vec *in, dsp_vec *out);

/** Harmonic mean, n over the sum of reciprocals; 0 if a real sample is 0, 1e100 if real reciprocals cancel. Complex
 * samples saturate, and a complex 0 counts as reciprocal 0. */
DSP_API int32_t dsps_hmean(const dsp_vec *in, dsp_vec *out);

/** Middle one in the order of dspi_sort, or the mean of the middle two. Works on a copy; a complex one is sorted. */
DSP_API int32_t dsps_median(const dsp_vec *in, dsp_vec *out);

/** The greatest (least) sample; of equal ones the first. A real maximum starts from -1e100 and a minimum from 1e100,
 * which stay the result when no sample beats them. Complex samples are compared by squared magnitude, which counts as
 * 1e100 when a part is beyond +-1e100; the whole sample is given, (0, 0) or (1e100, 1e100) when none beats the
 * start. NaN, also in one part, is never chosen. */
DSP_API int32_t dsps_max(const dsp_vec *in, dsp_vec *out);
DSP_API int32_t dsps_min(const dsp_vec *in, dsp_vec *out);

/** Energy: the sum of |x|^2, real. A sample with a part beyond +-1e100 adds 1e100. */
DSP_API int32_t dsps_magsq_sum(const dsp_vec *in, dsp_vec *out);

/** Root of the mean of |x|^2, with that sum. */
DSP_API int32_t dsps_rms(const dsp_vec *in, dsp_vec *out);

/** Variance and its root, the standard deviation: of the samples as they are (pop, over n) or estimated for what they
 * are drawn from (samp, over n - 1; a single sample has 0). Real; complex signals are measured by |x - mean|^2. One
 * pass about the mean of the first, middle and last sample; differences from it saturate. A variance that is 0 may come
 * out as a rounding residue of either sign, whose root is NaN if negative. */
DSP_API int32_t dsps_pop_var(const dsp_vec *in, dsp_vec *out);
DSP_API int32_t dsps_samp_var(const dsp_vec *in, dsp_vec *out);
DSP_API int32_t dsps_pop_stddev(const dsp_vec *in, dsp_vec *out);
DSP_API int32_t dsps_samp_stddev(const dsp_vec *in, dsp_vec *out);

/** Skewness m3/m2^1.5 of a real signal, one pass as above; without variance 0, or 1e100 for a third moment that is
 * none. -1 for a complex signal: nothing is touched. */
DSP_API int32_t dsps_skew(const dsp_vec *in, dsp_vec *out);

/** Excess kurtosis m4/m2^2 - 3 of a real signal, two passes, saturated; -3 for a constant or empty one. -1 for a
 * complex signal: nothing is touched. */
DSP_API int32_t dsps_excess(const dsp_vec *in, dsp_vec *out);

/** Counts of samples (complex: of magnitudes, 1e100 for a part beyond +-1e100) in `bins` bins of bin_width from `start`
 * on; out->dx becomes bin_width. A sample on a border belongs to the upper bin, one on the last border or a few units
 * in the last place above it to the last bin; others outside, and NaN, are not counted. With bin_width 0, samples equal
 * to `start` count in bin 0; a negative one counts downwards. bins <= 0: nothing is counted. */
DSP_API int32_t dsps_hist(const dsp_vec *in, dsp_vec *out, double start, double bin_width, int32_t bins);

enum {
  DSP_PEAK_NO_INTERP = 0x000,
  DSP_PEAK_PARABOLIC = 0x100,
  DSP_PEAK_GAUSS = 0x200,
  DSP_PEAK_GAUSS_CORR = 0x300,
  DSP_PEAK_INTERP_MASK = 0x700,
  DSP_PEAK_AT_INDEX = 0x1000,
  DSP_PEAK_MIN = 0x2000
};

/** The greatest sample (DSP_PEAK_MIN: the least; DSP_PEAK_AT_INDEX: the one at `index`, clamped to the signal), its
 * height and place refined between samples. A complex signal is searched, and its height given, by squared magnitude.
 * out becomes a real signal of two: the value, and the position in samples from 0 (`dx` not applied, out->dx kept).
 * DSP_PEAK_PARABOLIC fits a parabola through the sample and its neighbours, none at the ends. DSP_PEAK_GAUSS
 * takes the sample and its larger neighbour, the right one of equals, for a Gaussian exp(-0.631 t^2), t in samples (a
 * squared magnitude whose magnitude falls as exp(-0.316 t^2)), which gives the place, p samples right of the left one
 * of the two, a; the height is a exp(0.316 p^2). So falls the lobe of DSP_WINDOW_GAUSSTOP, under which, nothing
 * padded, this finds a tone to 0.001 bins. DSP_PEAK_GAUSS_CORR adds a cubic correction of the place: to 0.000002 bins.
 * Of equal samples the first wins; NaN never does. Empty: (0, 0). out may be in. -1: other refinements, no memory; and,
 * with the clamped result written, a Gaussian centre more than a sample from the middle of its pair. */
DSP_API int32_t dsps_peak(const dsp_vec *in, dsp_vec *out, int32_t flags, int32_t index);

/** The polynomial c[0] + c[1] x + c[2] x^2 + ... of a real signal, by Horner's rule. -1 for a complex signal,
 * nothing touched. */
DSP_API int32_t dsps_peval(const dsp_vec *c, dsp_vec *out, double x);

/** Straight line through points: out = slope, intercept of y on x. A real signal is y, its x the place times `dx` (1 if
 * `dx` is 0); a complex signal holds points (re, im). Differences from a rough centre saturate. The places of a real
 * signal start again at 0 after every 2048 samples: fit longer traces as points. No slope (all x equal): 1e100, 1e100.
 * One point: slope 0 and its y. */
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
 *       19       correlation coefficient; 0 when x or y does not vary
 *
 * Residual variances are over n - 2, and 0 for two points. One point: its y at 1 and 15, its x at 8 and 14, else 0. */
DSP_API int32_t dsps_lin_regres2(const dsp_vec *in, dsp_vec *out);

/* ============================================================================================================
 * FIR design and streaming filters (filter)
 *
 * Filters for streams: each call takes one block and carries what the next one needs in a state of the caller's. A
 * record filtered in blocks, of any lengths, is the record filtered whole. A lowpass at a tenth of the sample rate:
 *
 *     h.length = 101;
 *     dspc_fir(&h, DSP_FIR_LOWPASS, 0.1, 0.0);       // taps; frequencies in cycles per sample
 *     dsp_init(&state);                              // empty: silence before the stream
 *     while (next_block(&in))
 *       dspd_fir(&in, &out, &h, &state);             // out has the length of in, 50 samples late
 *     dsp_destroy(&state);
 *
 * States take the input's dx and representation on every call; null is silence before the block, and nothing is kept.
 * Outputs are sized by the routine and may be the input. An output on a filter's or a state's buffer is refused with
 * -1, and so is a state on the input's. Once sizes have been reached, no further call allocates.
 * ========================================================================================================== */

/** Kernels of dspc_fir. The taps are h(t) at t = k - (N - 1)/2, N the length: an odd filter has a tap at its centre
 * t = 0, an even one two beside it. Halves are exact mirrors, except for the delayed lowpass. x stands for 2 pi f t,
 * sinc x for sin(x)/x. */
typedef int32_t dsp_fir_type;
enum {
  DSP_FIR_BANDPASS = 0,        /**< centre f, full bandwidth p: 2p sinc(pi p t) cos x; f 0.2, p 0.1 passes 0.15-0.25 */
  DSP_FIR_BANDSTOP = 1,        /**< 1 at the centre less the bandpass; odd lengths only */
  DSP_FIR_HIGHPASS = 2,        /**< 1 at the centre less the lowpass; odd lengths only */
  DSP_FIR_LOWPASS = 3,         /**< cut-off (-6 dB) f: 2f sinc x */
  DSP_FIR_SINH = 4,            /**< smoothing by sinh(b sqrt(1 - (2t/(N+1))^2)); b is f, 0: by length; sum 1 */
  DSP_FIR_DELAYED_LOWPASS = 5, /**< lowpass f, p samples (typically a fraction) later: 2f sinc(2 pi f (t - p)); sum 1 */
  DSP_FIR_DIFFERENTIATOR = 6,  /**< d/dt up to f: 4 pi f^2 (cos x - sinc x)/x; gain 2 pi nu, per sample */
  DSP_FIR_GAUSSIAN = 7,        /**< exp(-x^2/(2 ln 2)): half power at f; 0: a plain mean; sum 1 */
  DSP_FIR_HILBERT = 8,         /**< -2f (1 - cos x)/x: gain 1 up to f, 90 degrees */
  DSP_FIR_KAISER_SPECTRUM = 9, /**< sinh(r)/r, r^2 = b^2 - 4(b^2 + pi^2)(t/(N+1))^2; |b| is |f|, 0: by length; sum 1 */
  DSP_FIR_RAMP = 10            /**< 4f^2 (sinc x + (cos x - 1)/x^2): gain 2 |nu| up to f, as for back projection */
};

/** Sets of dspc_fir2. */
typedef int32_t dsp_fir2_type;
enum {
  DSP_FIR2_TAPS12 = 100, /**< half of the 23-tap lowpass before the fractional stage of dsph_rsmp */
  DSP_FIR2_TAPS20 = 101, /**< half of the 39-tap lowpass for halving: see docs/filters.md for its response */
  DSP_FIR2_TAPS5 = 102   /**< half of 9 taps that rise from gain 1 at frequency 0 to 1.42 at the Nyquist frequency */
};

/** Fills h, whose `length` says how many taps are wanted, with a kernel of f and p. A complex h gets imaginary parts 0.
 * dx and length stay. "Sum 1" kernels are divided by their sum (not by a sum of 0). f and p are not checked: what the
 * formula gives is what comes. Ideal kernels ripple by 9 % beside their edges; multiply a window for smoother ones.
 * Lengths of 0 or less do nothing. -1: no such kind (h is then allocated and real), an even length where an odd one is
 * needed, no memory. */
DSP_API int32_t dspc_fir(dsp_vec *h, dsp_fir_type kind, double f, double p);

/** Makes h one of the fixed halves, 12, 20 or 5 taps, the last of them the centre (odd = 1 in dspd_sfir). A complex h
 * gets imaginary parts 0. -1: no such set (h untouched), no memory. */
DSP_API int32_t dspc_fir2(dsp_vec *h, dsp_fir2_type kind);

/** out[n] = sum of h[k] in[n - k], the samples before the block coming from `state`: its M - 1 samples, M the taps, are
 * the most recent ones, oldest first. A shorter state is extended by zeros at its newest end, of a longer one the first
 * M - 1 samples count. out is complex when in or h is, and has the length and dx of in; no taps copy in to out.
 *
 * Real filters of more than 45 taps (35 on complex blocks), on blocks of at least M - 1 samples, run through the FFT;
 * all others as the sum itself, each output adding its taps from the oldest sample to the newest. Direct results are
 * the same bits however a record is divided; others agree to 1e-13 of the largest output, and a NaN or infinity spreads
 * over its block. The spectrum of the last long filter is kept for as long as the same taps (within 1.1e-15 |h[0]|)
 * and transform sizes come back: one filter used on many blocks is cheap, several long ones in turn are not. -1: no
 * memory, or a transform of 2^30 samples. */
DSP_API int32_t dspd_fir(const dsp_vec *in, dsp_vec *out, const dsp_vec *h, dsp_vec *state);

/** dspd_fir with a filter given by its first half: L samples of `half`, then their mirror image, negated when `anti`
 * is not 0. `odd` not 0: the last sample of `half` is the centre, 2L - 1 taps (an antisymmetric filter keeps its centre
 * as given); 0: 2L taps. Real halves of up to 60 taps in full add mirrored samples before the product, in half the
 * multiplications; blocks then are the whole bit for bit. */
DSP_API int32_t dspd_sfir(const dsp_vec *in, dsp_vec *out, const dsp_vec *half, int32_t odd, int32_t anti,
                          dsp_vec *state);

/** Keeps every `factor`-th sample (below 1: every one) and multiplies dx by the factor. The state's first sample is the
 * number of samples to skip before the next one kept; NaN and negative values are 0. Filter first: nothing is filtered
 * here. */
DSP_API int32_t dspd_deci(const dsp_vec *in, dsp_vec *out, int32_t factor, dsp_vec *state);

/** A fixed recursive lowpass: four times (0.25 + 0.5 z^-1 + 0.5 z^-2 + 0.25 z^-3)/(1 + 0.5 z^-2), gain 1 at frequency
 * 0, flat within 0.11 dB up to 0.18, below -61 dB from 0.3, a zero at the Nyquist frequency. The state holds 12
 * samples, three inner values of each section; with a null state one goes on that all such calls share. -1: `reserved`
 * is not null. */
DSP_API int32_t dspd_hwfilt(const dsp_vec *in, dsp_vec *out, const void *reserved, dsp_vec *state);

/** dspd_hwfilt(v, v, reserved, NULL): in place, always on the shared state. Give null. */
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
 *     dsph_rsmp_state_reset(&coef, &state);
 *     while (next_block(&in))
 *       dsph_rsmp(&in, &out, &scratch, &coef, &state);
 *     dsph_rsmp_state_destroy(&state);
 *     dsph_rsmp_coef_destroy(&coef);
 *
 * What it reaches (docs/filters.md has the figures for each ratio): flat within 0.06 dB up to 0.39 of the output rate,
 * distortion of a tone below -115 dB, and at least 78 dB (94 dB at whole powers of two) against what would fall into
 * that band. A stream in blocks is the stream at once, bit for bit. It begins where the filters have settled: outputs
 * that reach into the silence before it are dropped.
 * ========================================================================================================== */

/** What a ratio needs. Filled by the routines below; read as you like. */
typedef struct dsph_rsmp_coef {
  dsp_vec halfband;      /**< first half of the 39-tap lowpass */
  int32_t halfband_odd;  /**< 1: it ends with the centre */
  dsp_vec prefilter;     /**< first half of the 23-tap lowpass before the fractional stage */
  int32_t prefilter_odd; /**< 1 */
  dsp_vec kernel;        /**< interpolation kernel of kind 4, 13314 samples */
  int32_t interp;        /**< 1: linear between the kernel's points */
  double ratio;          /**< what is left after halving, in [1, 2) */
  int32_t halvings;      /**< stages that halve the rate */
  int32_t mode;          /**< not 0: the fractional stage runs even for a ratio of 1 */
  int32_t delay1;        /**< outputs to drop after halving: 33, or 0 without a stage */
  int32_t delay2;        /**< outputs to drop at the end: 19 + ceil(35/ratio), or 0 without a fractional stage */
} dsph_rsmp_coef;

/** What a stream carries from block to block. */
typedef struct dsph_rsmp_state {
  int32_t stages;       /**< halvings it is built for */
  dsp_vec *stage_hist;  /**< history of each stage's lowpass, 38 samples */
  dsp_vec *stage_phase; /**< decimation phase of each stage */
  int32_t delay1;       /**< samples still to drop after halving */
  dsp_vec pre_hist;     /**< history of the 23-tap lowpass */
  dsp_vec rsmp_state;   /**< state of the fractional stage, see dspd_rsmp */
  dsp_vec post_hist;    /**< history of the last lowpass */
  dsp_vec post_phase;   /**< phase of the last decimation */
  int32_t delay2;       /**< samples still to drop at the end */
} dsph_rsmp_state;

/** Builds a kernel table of v's length from a built-in list: kinds 0 and 1 in powers of a cosine (8 and 13 taps), 2, 3
 * and 4 as cosine series (8, 10 and 13 taps; 4 is the converter's and expects its lowpasses around it). -1: no such
 * kind (v untouched), or as the builders. */
DSP_API int32_t dspc_rsmp(dsp_vec *v, int32_t kind);

/** Kernel tables of any even length L: v[0] is c[0], the number of taps T, and v[L/2 + j] = v[L/2 - j] is the sum of
 * c[k] cos((k - 1) j d) over k from 1 (dspc_rsmp_cos), or of c[k] cos(j d)^(k - 1) (dspc_rsmp_pcos), d = 2 pi/(L - 2).
 * So the kernel has (L - 2)/T points per input sample, 256 to 1024 typically. A complex v gets imaginary parts 0. With
 * fewer than two samples in v or c, v becomes zeros behind c[0]. -1: odd length, complex c, c on v's buffer, no memory.
 */
DSP_API int32_t dspc_rsmp_cos(dsp_vec *v, const dsp_vec *c);
DSP_API int32_t dspc_rsmp_pcos(dsp_vec *v, const dsp_vec *c);

/** One output every `step` input samples (0 or more): the sum of T samples weighted by the kernel, whose points are
 * taken as they lie (`interp` 0) or interpolated linearly. On entry out's `length` is the most outputs wanted; those
 * left over come first in the next block, from the oldest sample held if they need older ones. out->dx is step times
 * in->dx. Nothing is filtered: frequencies above the output's Nyquist frequency alias.
 *
 * The state: T past samples, at index T the position of the next output relative to the span's grid (-1 or more), at
 * T + 1 how many samples further on its span begins; for complex streams both in the real parts. Zeros start a stream:
 * its first output has the first sample as its newest but none.
 *
 * A table shorter than 2 copies in to out. -1: step negative, infinite or NaN; no taps, or a length less 2 that is no
 * multiple of them; a complex table; a position in the state below -1 or not finite; no memory. */
DSP_API int32_t dspd_rsmp(const dsp_vec *in, dsp_vec *out, int32_t interp, const dsp_vec *table, double step,
                          dsp_vec *state);

/** dspd_rsmp with a table of a built-in kind (0: 8194, 1: 13314, 2: 2050, 3: 10242, 4: 13314 samples), made for the
 * call: some milliseconds each time. -1 also: no such kind. */
DSP_API int32_t dspd_rsmp2(const dsp_vec *in, dsp_vec *out, int32_t interp, int32_t kind, double step, dsp_vec *state);

/** Empties a coefficient record, or releases what it owns. Null is allowed. Always 0. */
DSP_API int32_t dsph_rsmp_coef_init(dsph_rsmp_coef *coef);
DSP_API int32_t dsph_rsmp_coef_destroy(dsph_rsmp_coef *coef);

/** Makes the filters and the kernel, about 110 kB. -1: `reserved` is not 0, no memory. */
DSP_API int32_t dsph_rsmp_coef_alloc(dsph_rsmp_coef *coef, int32_t reserved);

/** Sets the ratio, input rate over output rate: halvings down to [1, 2), and the delays. 0 and less are 1; a ratio
 * below 1 is kept, but a block never yields more samples than it has. `mode` not 0 sends a ratio of 1 through the
 * fractional stage, too. The second argument is ignored. -1: NaN or infinite ratio, `reserved` not 0; nothing is
 * stored. */
DSP_API int32_t dsph_rsmp_coef_setup(dsph_rsmp_coef *coef, int32_t reserved0, double ratio, int32_t mode,
                                     int32_t reserved);

/** Empties a state record, or releases what it owns. Always 0. */
DSP_API int32_t dsph_rsmp_state_init(dsph_rsmp_state *state);
DSP_API int32_t dsph_rsmp_state_destroy(dsph_rsmp_state *state);

/** Builds the state for a ratio and a representation; what it carries is kept where both stay. -1: no memory. */
DSP_API int32_t dsph_rsmp_state_alloc(const dsph_rsmp_coef *coef, dsph_rsmp_state *state, uint32_t is_complex);

/** Restarts the stream: silence before it, and the outputs to drop counted afresh. A state that is never reset drops
 * nothing. */
DSP_API int32_t dsph_rsmp_state_reset(const dsph_rsmp_coef *coef, dsph_rsmp_state *state);

/** Converts one block: out gets about in->length/ratio samples, fewer at the start of a stream, and dx times the ratio.
 * After a reset, with k halvings, r = coef->ratio and h = 2^k, output m stands for the stream's sample
 * ratio m + (k > 0 ? 14 h + 19 : 0) + (delay2 > 0 ? h (r (delay2 - 9.5) - 17.5) : 0). `scratch` is work space that is
 * worth keeping from call to call (null: allocated each time). A null `state` converts the block on its own and drops
 * nothing. in, out and scratch may be the same. -1: no memory; the state is then partly updated. */
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
 * Nodes rise strictly; queries rise too, since the search for their interval only moves forward: a query left of the
 * interval reached is evaluated on that interval. Everything is real. Reference: de Boor, A Practical Guide to Splines.
 * ========================================================================================================== */

/** Schemes of dsp_interp, and a flag. Schemes 2, 4, 6 and 7 give one constant, the ordinate of the right node of the
 * first query's interval. */
enum {
  DSP_INTERP_HOLD = 0,      /**< the previous node's ordinate; the last one's from the last node on */
  DSP_INTERP_LINEAR = 1,    /**< a line through the two nodes around */
  DSP_INTERP_QUADRATIC = 3, /**< a parabola through the nearest node and its neighbours; linear with two nodes */
  DSP_INTERP_SPLINE = 5,    /**< a cubic spline */
  DSP_INTERP_CLAMP = 16     /**< holds the first and last ordinate outside; else the end pieces go on */
};

/** Conditions at the ends of a spline. */
enum {
  DSP_SPLINE_NOT_A_KNOT = 0,        /**< the two outermost intervals are one cubic; typical */
  DSP_SPLINE_CLAMPED = 1,           /**< the first derivative is given */
  DSP_SPLINE_SECOND_DERIVATIVE = 2, /**< the second derivative is given */
  DSP_SPLINE_NATURAL = 3            /**< the second derivative is 0 */
};

/** The function through the nodes (x, y) at the abscissae xq: out becomes real, as long as xq, with its dx. d2 is read
 * by the spline only: the second derivatives from dspb_cspline_2d, or null for not-a-knot ends (they cost a solve per
 * call). No node: zeros; one: its ordinate. out may be any of the inputs. -1: complex input, lengths that differ, nodes
 * of equal abscissa in an interval met (out then holds what came before), a spline without d2 and fewer than four
 * nodes, no memory. */
DSP_API int32_t dsp_interp(const dsp_vec *x, const dsp_vec *y, const dsp_vec *d2, const dsp_vec *xq, dsp_vec *out,
                           int32_t mode);

/** dsp_interp with DSP_INTERP_SPLINE. */
DSP_API int32_t dsp_cspline(const dsp_vec *x, const dsp_vec *y, const dsp_vec *d2, const dsp_vec *xq, dsp_vec *out);

/** The second derivatives at the nodes of the cubic spline through them, with a condition and, where it takes one, a
 * value for each end. d2 becomes real, of the nodes' length, its dx the mean of theirs; it may be x or y.
 * -1: complex input, lengths that differ, fewer than four nodes, abscissae that do not rise, an unknown condition, no
 * memory. */
DSP_API int32_t dspb_cspline_2d(const dsp_vec *x, const dsp_vec *y, dsp_vec *d2, double left_value, double right_value,
                                int32_t left, int32_t right);

/** a and b sample by sample in turn: out[2i] = a[i], out[2i + 1] = b[i], dx half the mean of theirs, complex if either
 * is. out may be a or b. -1: lengths that differ (nothing touched), no memory. */
DSP_API int32_t dspb_inter(const dsp_vec *a, const dsp_vec *b, dsp_vec *out);

/** A zero after every sample, dx halved: the first step of interpolation by two, before a lowpass filter. -1: no
 * memory, `length` then doubled and `dx` halved all the same; or a length that cannot be doubled, nothing touched. */
DSP_API int32_t dspi_zinter(dsp_vec *v);

/* ============================================================================================================
 * Trace display (trace): plain arrays, no signals
 *
 * From measured reflection points to what a screen shows, range by range while a sweep is running:
 *
 *     vfpd_ExpandLinear(frequency, n, start, stop);          // the axis
 *     vfpd_FormatBuffer(4, points, trace, from, to);         // return loss in dB of the points that came in
 *     vfpd_Smooth(trace, smooth, n, from, to, 11, 0);        // needs neighbours: may write fewer than to - from
 *     best = vfpd_FindMax(smooth, 0, n);
 *     vfpdb_ScaleToInt2(smooth, n, 60.0, 0.0, pixels, 0, 479);
 *
 * A range [start, stop) is half open, and point i of the input gives element i of the output, wherever the range
 * starts. Nothing allocates, nothing fails for lack of memory, and a count of 0 or less is an empty buffer. Outputs do
 * not overlap inputs unless the routine says so. The names ending in 2 of the scaling routines give the same bits as
 * those without; they are kept for the programs that call them.
 * ========================================================================================================== */

/** buf[i] *= scale; the last one in single precision. */
DSP_API void vfpdbMul1(double scale, double *buf, int32_t n);
DSP_API void vfpdbMul2(double scale, double *buf, int32_t n);
DSP_API void vfpsbMul2(float scale, float *buf, int32_t n);

/** Maps [lo, hi] to [out_lo, out_hi] by a line, truncates towards zero and saturates at the limits of int32_t; NaN
 * gives 0. lo == hi is not refused: the slope is then infinite (or NaN), and so are the values before saturation. */
DSP_API void vfpdb_ScaleToInt(const double *in, int32_t n, double lo, double hi, int32_t *out, int32_t out_lo,
                              int32_t out_hi);
DSP_API void vfpdb_ScaleToInt2(const double *in, int32_t n, double lo, double hi, int32_t *out, int32_t out_lo,
                               int32_t out_hi);

/** Maps [lo, hi] to [out_lo, out_hi] by a line. out may be in. */
DSP_API void vfpdb_ScaleToFP(const double *in, int32_t n, double lo, double hi, double *out, double out_lo,
                             double out_hi);

/** The index of the largest value in [start, stop), of the first among equal ones; `start` when the range has fewer
 * than two points. NaN is never taken for larger, nor anything for larger than a NaN in the first place. */
DSP_API int32_t vfpd_FindMax(const double *arr, int32_t start, int32_t stop);

/** The index of the smallest value in [start + 1, stop): unlike vfpd_FindMax it never looks at arr[start], and returns
 * `start` only when no later value is below the largest double. */
DSP_API int32_t vfpd_FindMin(const double *arr, int32_t start, int32_t stop);

/** The index of the largest (smallest) value in [start, stop) outside the band [skip_lo, skip_hi), the first point
 * included in both; ties and NaN as for vfpd_FindMax. A band with skip_lo >= skip_hi leaves nothing out. -1: `start`
 * lies in the band, and the band reaches `stop`. */
DSP_API int32_t vfpd_FindMax2(const double *arr, int32_t start, int32_t stop, int32_t skip_lo, int32_t skip_hi);
DSP_API int32_t vfpd_FindMin2(const double *arr, int32_t start, int32_t stop, int32_t skip_lo, int32_t skip_hi);

/** n points from `first` to `last`, evenly spaced; both ends are exact. One point is `first`. */
DSP_API void vfpd_ExpandLinear(double *out, int32_t n, double first, double last);

/** n points from `first` to `last` in even ratios; both ends are exact. Nothing is written unless both are above 0. */
DSP_API void vfpd_ExpandLog(double *out, int32_t n, double first, double last);

/** Centred moving average over `width` points (odd, at least 3) of a trace of n points. Towards both ends of the trace
 * the window shrinks evenly about its point: in[0] and in[n - 1] stay as they are. Writes the points of [start, stop)
 * from `start` on, as far as their window ends before `stop`, and returns how many; call again from there when more
 * points have come in. Points before `start` are read. A phase trace (is_phase not 0; radians) is unwrapped within each
 * window and the mean wrapped into [-pi, pi] again, which costs a sum per point and makes pieces equal the whole bit
 * for bit; the plain trace carries a running sum, so that its pieces agree to rounding and a NaN stays in the sum until
 * the window changes its width. out may not be in. -1: a negative start, stop below start, a width that is even or
 * below 3; start == stop returns 0 whatever the width. */
DSP_API int32_t vfpd_Smooth(const double *in, double *out, int32_t n, int32_t start, int32_t stop, int32_t width,
                            int32_t is_phase);

/** The same for complex points: magnitude and phase are averaged separately, the phase without unwrapping. */
DSP_API int32_t vfpd_SmoothCpx(const dsp_complex *in, dsp_complex *out, int32_t n, int32_t start, int32_t stop,
                               int32_t width);

/** Points of [start, stop) in a display format, with p = re^2 + im^2 and r = sqrt(p):
 *
 *     0   10 log10(p)                level in dB; -inf for a zero point
 *     1   r                          magnitude
 *     2   atan2(im, re) 57.29577951307855   phase in degrees (the factor falls short of 180/pi by 7e-14 of it)
 *     3   (1 + r) / (1 - r)          standing-wave ratio; 1000000 for r above 0.999998
 *     4   -10 log10(p)               return loss in dB
 *
 * Other formats write nothing. */
DSP_API void vfpd_FormatBuffer(uint32_t format, const dsp_complex *in, double *out, int32_t start, int32_t stop);

/** The phase of points [start, stop) in radians, without jumps above pi from point to point, continuing what `out`
 * holds from 0 to start - 1. A piece starts from the whole turns between out[0] and out[start - 1] and takes at most
 * one turn per point. A NaN point leaves the count of turns as it was. */
DSP_API void vfpd_UnwrapPhase(const dsp_complex *in, int32_t start, int32_t stop, double *out);

/** The floating-point unit's modes, of the calling thread, as bits of the VFP's FPSCR: 22-23 the rounding (0 nearest,
 * 1 up, 2 down, 3 towards zero), 24 flush to zero, 25 default NaN. On ARM (FPSCR) and AArch64 (FPCR) it is the
 * register; on x86-64 a word per thread, returned as stored, whose bits 22-24 drive the unit (flush to zero: subnormal
 * results and operands alike); elsewhere a word that nothing listens to. The first two return the register and the
 * register before the change. set_runfast sets bits 24 and 25 (`on` not 0) or clears them, leaves all others alone and
 * returns what it wrote. */
DSP_API uint32_t get_fpscr(void);
DSP_API uint32_t set_fpscr(uint32_t value);
DSP_API uint32_t set_runfast(int32_t on);

/* ============================================================================================================
 * One-port calibration and complex matrices (rf): plain arrays, no signals
 *
 * A reflectometer sees the reflection coefficient a of a device through an error box,
 * g = e00 + e10e01 a / (1 - e11 a): directivity e00, reflection tracking e10e01, source match e11. Three standards of
 * known coefficients, measured, give the three terms, and these correct every later measurement:
 *
 *     Compute1PortTerms(short_g, open_g, load_g, short_a, open_a, load_a, 0, n);    // now e00, e11, e10e01
 *     a[i] = (g[i] - e00[i]) / (e10e01[i] + e11[i] (g[i] - e00[i]));                // in complex numbers
 *
 * Reference: D. Rytting, An Analysis of Vector Measurement Accuracy Enhancement Techniques. C++ programs find the
 * matrix behind it in dsp/rf/matrix.h: matrix<std::complex<double>>, or any other field. One thread at a time.
 * ========================================================================================================== */

/** Error terms from three standards at points [first, end): g1 to g3 hold the measured coefficients and become
 * directivity e00, source match e11 and reflection tracking e10e01; a1 to a3 hold the actual ones and are only read.
 * All six of a point are read before any is written, so that they may share memory point by point. Nothing happens for
 * first >= end. Standards that do not determine the terms (two alike, say) give meaningless terms at that point, and no
 * notice. When memory runs out (a few hundred bytes) std::bad_alloc is thrown: the only exception that leaves the
 * library. */
DSP_API void Compute1PortTerms(dsp_complex *g1, dsp_complex *g2, dsp_complex *g3, const dsp_complex *a1,
                               const dsp_complex *a2, const dsp_complex *a3, int32_t first, int32_t end);

/** out = a b for row-major arrays: a of m x k, b of k x p, out of m x p elements (it may be a or b). Returns the number
 * of elements written, m p. -1, and out untouched: k k > m k (for positive sizes: more columns than rows in a), a
 * negative size, no memory. */
DSP_API int32_t MatrixMult(const dsp_complex *a, const dsp_complex *b, dsp_complex *out, int32_t m, int32_t k,
                           int32_t p);

/** Inverts the row-major n x n array m in place by Gauss-Jordan elimination with row pivoting and returns 1. 0, and m
 * untouched: a pivot of modulus below 2.220446049250313e-12 (an absolute bound: scale small matrices up), n <= 0, no
 * memory. */
DSP_API int32_t invert(dsp_complex *m, int32_t n);

#ifdef __cplusplus
}
#endif

#endif
