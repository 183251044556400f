// The constants of dsp.h by name. Where a routine takes one, its name in any case serves as well, several flags with |
// or a comma between them: "flattop", "raw, no_swap".

import * as groups from "./constants.js";

export * from "./constants.js";

const enumerations = ["Window", "Fir", "Fir2", "Spline", "Format"]; // the others are flags

/** The value of a constant of a group, or of its name; of several flags, | or a comma between them. */
export function choose(group, choice) {
  const names = groups[group];
  const values = Object.values(names);
  if (typeof choice === "number") {
    const all = values.reduce((a, b) => a | b);
    if (enumerations.includes(group) ? values.includes(choice) : (choice & ~all) === 0) return choice;
    throw new TypeError(`${group} has no value ${choice}`);
  }
  return String(choice).toUpperCase().split(/[\s,|]+/).reduce((value, word) => {
    const name = word.replaceAll("-", "_");
    if (!Object.hasOwn(names, name)) throw new TypeError(`"${choice}" is none of ${Object.keys(names).join(", ")}`);
    return value | names[name];
  }, 0); // prettier-ignore
}
