// Everything that takes time, away from the page: tasks by name, each answered once; progress on the way.

import { Format } from "../names.js";
import { breath } from "./breath.js";
import { design, filtered } from "./filter_design.js";
import { Programs } from "./programs.js";
import { as_wav } from "./sound.js";
import { compare } from "./window_figures.js";

const programs = await new Programs().load();
const { dsp } = programs;
const of_spectra = ["block", "overlap", "window", "average", "exponential"];
let opened; // {name, is_table}
let latest = 0; // the measurement that was asked for last: those before it stop

/** A tone with harmonics and noise, so that the page shows something at once. */
function example() {
  const x = dsp.cos(2 ** 17, 997, 0, { dx: 1 / 48000 });
  dsp.scale(x, 0.5, { out: x });
  [[1994, 5e-4], [2991, 2e-4], [4985, 5e-5], [12000, 1e-3]].forEach(([f, amp]) => dsp.addcos(x, f, { amp, out: x }));
  let state = 1; // the same noise every time
  const noise = () => (state = (Math.imul(state, 1664525) + 1013904223) >>> 0) / 2 ** 32 - 0.5;
  return as_wav([x.samples.map((v) => v + 4e-5 * (noise() + noise()))], 48000);
}

/** The settings of these names as options, and those that say what of the file is read. */
function options_of(settings, names = []) {
  const of_source = opened.is_table ? ["column", "rate", "full-scale"] : ["channel", "full-scale"];
  const chosen = [...names, ...of_source].map((name) => [name, settings[name]]);
  return Object.fromEntries(chosen.filter(([, value]) => value !== ""));
}

const tasks = {
  /** Keeps the file that was open before when this one cannot be read. */
  async open({ name, file, is_table }) {
    const before = programs.files.get(name);
    programs.files.set(name, file ?? (await example()));
    try {
      const about = programs.run("about", is_table ? { column: "" } : {}, [name]);
      ++latest; // what reads the file before stops, and its samples can be forgotten
      if (opened && opened.name !== name) programs.files.delete(opened.name);
      opened = { name, is_table };
      return about;
    } catch (error) {
      programs.files.set(name, before);
      throw error;
    }
  },

  async spectrum(settings, report) {
    const mine = ++latest;
    const { name } = opened;
    programs.run("start", options_of(settings, of_spectra), [name]);
    for (let progress = 0; progress < 1; await breath()) {
      if (mine !== latest) return undefined;
      ({ progress } = programs.run("step", {}, [name]));
      report(progress);
    }
    return programs.run("spectrum");
  },
  tone: (settings) => programs.run("tone", options_of(settings), [opened.name]),

  start_live({ settings, rate }) {
    ++latest;
    const options = of_spectra.map((name) => [name, settings[name]]).filter(([, value]) => value !== "");
    programs.run("start", { ...Object.fromEntries(options), rate });
  },
  add_live({ pieces }) {
    const { blocks } = pieces.map((samples) => programs.run("add_input", {}, [], samples)).at(-1);
    return blocks ? programs.run("spectrum") : undefined;
  },

  windows: (settings) => compare(dsp, settings),
  filter: (settings) => design(dsp, settings),
  listen({ source, ...settings }) {
    const { columns, rate } = programs.run("samples", options_of(source), [opened.name]);
    return filtered(dsp, dsp.signal(columns[0], { dx: 1 / rate }), settings);
  },

  /** Files by their roles; none for the simulation. */
  calibrate({ files, ideal, format }) {
    const named = (role) => {
      const name = `${role.replace("_actual", " as it is")}: ${files[role].name}`;
      programs.files.set(name, files[role]);
      return name;
    };
    const standard = (role) => [named(role), files[`${role}_actual`] && !ideal ? named(`${role}_actual`) : role];
    const names = files.device ? [...["short", "open", "load"].flatMap(standard), named("device")] : [];
    return programs.run("one_port", { format: Format[format.toUpperCase()] }, names);
  },
};

onmessage = async ({ data: { id, task, input } }) => {
  const report = (progress) => postMessage({ id, progress });
  try {
    const result = await tasks[task](input, report);
    postMessage({ id, result }, result?.columns?.map((column) => column.buffer) ?? []);
  } catch (error) {
    postMessage({ id, error: error.message });
  }
};
postMessage({ id: 0, result: dsp.version() });
