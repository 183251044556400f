// Writes constants.js from dsp.h, and dsp.d.ts from declarations.ts and the rows of routines.js.
// usage: node generate.js DSP_H DIRECTORY

import { readFileSync, writeFileSync } from "node:fs";
import { parameters, rows } from "./routines.js";

const [header, directory] = process.argv.slice(2);

const groups = {};
for (const [, group, name, value] of readFileSync(header, "utf8").matchAll(/^ +DSP_([A-Z0-9]+)_(\w+) = (\w+)/gm))
  if (!name.endsWith("_MASK")) (groups[group[0] + group.slice(1).toLowerCase()] ??= {})[name] = Number(value);
const constants = Object.entries(groups).map(([group, names]) => `export const ${group} = ${JSON.stringify(names)};\n`);
writeFileSync(`${directory}/constants.js`, constants.join(""));

const before = { in_place: ["x: Samples"], made: ["x: Samples"], number: ["x: Samples"], generated: [] };
before.pair = before.number_of_two = ["x: Samples", "y: Samples"];
const result = { number: "number | Complex", number_of_two: "number | Complex" };
const options = { in_place: "Out & Spacing", made: "Out", pair: "Out", generated: "Spacing" };

/** Optional parameters go by place, or by name among the options. */
function declaration(kind, name, signature) {
  const typed = parameters(signature).map(({ name, type, otherwise }) => {
    const is_choice = type !== "number" && type !== "boolean";
    return { text: `${otherwise === undefined ? name : `${name}?`}: ${is_choice ? "Choice" : type}`, otherwise };
  });
  const named = typed.filter((p) => p.otherwise !== undefined).map((p) => p.text);
  const taken = [named.length ? `{ ${named.join("; ")} }` : "", options[kind] ?? ""].filter(Boolean).join(" & ");
  const call = (places) => `  ${name}(${[...before[kind], ...places, ...(taken ? [`options?: ${taken}`] : [])].join(", ")}): ${result[kind] ?? "Signal"};\n`;
  const needed = typed.filter((p) => p.otherwise === undefined).map((p) => p.text);
  return call(typed.map((p) => p.text)) + (named.length ? call(needed) : "");
}

const declared = rows.flatMap(([kind, names, signature]) => names.split(" ").map((name) => declaration(kind, name, signature)));
const declarations = readFileSync(new URL("declarations.ts", import.meta.url), "utf8")
  .replace("  // The rows of routines.js.\n", () => declared.join(""))
  .replace("// The constants of dsp.h.\n", () => Object.keys(groups).map((group) => `export const ${group}: Names;\n`).join(""));
writeFileSync(`${directory}/dsp.d.ts`, declarations);
