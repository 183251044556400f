// The constants of dsp.h by name. Where a routine takes one, its name in any case serves as well, several flags with |
// or a comma between them: "flattop", "raw, no_swap".

import * as groups from "./constants.js";

export * from "./constants.js";

const enumerations = ["Window", "Fir", "Fir2", "Spline", "Format"]; // the others are flags

/** The value of a constant of a group, or of its name; of several flags, | or a comma between them. */
export function choose(group, choice) {
  const names = groups[group];
  const values = Object.values(names);
  const is_flags = !enumerations.includes(group);
  if (typeof choice === "number") {
    const all = values.reduce((a, b) => a | b);
    if (is_flags ? (choice & all) === choice : values.includes(choice)) return choice;
    throw new TypeError(`${group} has no value ${choice}`);
  }
  const text = String(choice).toUpperCase().replaceAll("-", "_").trim();
  const words = is_flags ? text.split(/[\s,|]+/) : [text];
  for (const word of words)
    if (!Object.hasOwn(names, word)) throw new TypeError(`"${choice}" is none of ${Object.keys(names).join(", ")}`);
  return words.reduce((value, word) => value | names[word], 0);
}
