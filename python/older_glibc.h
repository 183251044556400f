/* Binds the mathematical functions that glibc has given new versions to their first ones, so that a wheel runs on older
 * systems. Those differ in how they report errors (errno), which the library does not look at; results are the same.
 * Included before every source when the library is built for a wheel. */
#if defined(__x86_64__) && !defined(__ILP32__)
#define DSP_FIRST_GLIBC "GLIBC_2.2.5"
#elif defined(__aarch64__)
#define DSP_FIRST_GLIBC "GLIBC_2.17"
#elif defined(__arm__)
#define DSP_FIRST_GLIBC "GLIBC_2.4"
#endif

#if defined(__linux__) && defined(DSP_FIRST_GLIBC)
__asm__(".symver exp, exp@" DSP_FIRST_GLIBC);     /* 2.29 */
__asm__(".symver exp2, exp2@" DSP_FIRST_GLIBC);   /* 2.29 */
__asm__(".symver log, log@" DSP_FIRST_GLIBC);     /* 2.29 */
__asm__(".symver log2, log2@" DSP_FIRST_GLIBC);   /* 2.29 */
__asm__(".symver pow, pow@" DSP_FIRST_GLIBC);     /* 2.29 */
__asm__(".symver hypot, hypot@" DSP_FIRST_GLIBC); /* 2.35 */
__asm__(".symver fmod, fmod@" DSP_FIRST_GLIBC);   /* 2.38 */
#endif
