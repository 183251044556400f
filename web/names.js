// The constants of dsp.h. Where a routine takes one, its name in any case serves as well, several flags with | or a comma
// between them: "flattop", "raw, no_swap".

export const Window = {
  UNIFORM: 0, RECTANGULAR: 0, NONE: 0, P000: 0, BARTLETT: 1, TRIANGULAR: 1, HANN: 2, P110: 2, HAMMING: 3, P100: 3,
  BLACKMAN: 4, BLACKMAN_HARRIS3: 5, P200: 5, BLACKMAN_HARRIS4: 6, P310: 6, LOWLEAK: 6, GAUSSTOP: 7, P400: 7, FLAT4: 8,
  P301: 8, FLATTOP: 9, FLAT5: 9, P401: 9, FLAT6: 10, P511: 10, FLAT7: 11, P611: 11, P501: 12, P601: 13, KAISER70: 14,
  KAISER80: 15, KAISER90: 16, KAISER100: 17, KAISER110: 18, KAISER120: 19, GAUSS60: 20, GAUSS70: 21, GAUSS80: 22,
  RIEMANN: 23, SINC_LOBE: 23,
};
export const Wnd = { AMPLITUDE: 0, POWER: 1, RAW: 2, SYMMETRIC: 4, ACTIVE: 8, SWAP_UNIFORM: 16, NO_SWAP: 32 };
export const Pad = { SCALED: 0, ROOT_SCALED: 1, UNSCALED: 2, FRONT: 0, CENTRE: 0x100, BACK: 0x200, SPLIT: 0x300 };
export const Spectrum = {
  INVERSE: 1, TWO_SIDED: 2, SUM: 4, UNWINDOWED: 8, CENTRED: 16, FROM_TWO_SIDED: 32, ODD: 64, RAW: 128,
};
export const Avg = {
  REPLACE: 0, MEAN: 1, MAX_HOLD: 2, MIN_HOLD: 3, HARMONIC: 4, GEOMETRIC: 5, PERIODIC: 6, LIMIT: 16, POWER: 32,
};
export const Peak = { NO_INTERP: 0, PARABOLIC: 0x100, GAUSS: 0x200, GAUSS_CORR: 0x300, AT_INDEX: 0x1000, MIN: 0x2000 };
export const Fir = {
  BANDPASS: 0, BANDSTOP: 1, HIGHPASS: 2, LOWPASS: 3, SINH: 4, DELAYED_LOWPASS: 5, DIFFERENTIATOR: 6, GAUSSIAN: 7,
  HILBERT: 8, KAISER_SPECTRUM: 9, RAMP: 10,
};
export const Fir2 = { TAPS12: 100, TAPS20: 101, TAPS5: 102 };
export const Interp = { HOLD: 0, LINEAR: 1, QUADRATIC: 3, SPLINE: 5, CLAMP: 16 };
export const Spline = { NOT_A_KNOT: 0, CLAMPED: 1, SECOND_DERIVATIVE: 2, NATURAL: 3 };
export const Format = { LEVEL: 0, MAGNITUDE: 1, PHASE: 2, SWR: 3, RETURN_LOSS: 4 };

/** The value of a constant of `names`, or of its name; of several flags, | or a comma between them. */
export function choose(names, choice) {
  if (typeof choice === "number") return choice;
  let value = 0;
  for (const word of String(choice).toUpperCase().split(/[\s,|]+/)) {
    const name = word.replaceAll("-", "_");
    if (!Object.hasOwn(names, name)) throw new TypeError(`"${choice}" is none of ${Object.keys(names).join(", ")}`);
    value |= names[name];
  }
  return value;
}
