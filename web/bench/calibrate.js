// A one-port calibration from Touchstone files, or from a simulated reflectometer.

const ideals = { short: -1, open: 1, load: 0 };

function require_same_sweep(sweeps) {
  const [first, ...others] = sweeps;
  for (const { name, frequency } of others)
    if (frequency.length !== first.frequency.length || frequency.some((f, i) => Math.abs(f - first.frequency[i]) > 1e-9 * f))
      throw new Error(`${first.name} and ${name} do not have the same frequencies.`);
}

/** Three standards that are the same anywhere leave nothing to compute the terms from. */
function require_three_standards(dsp, known, frequency) {
  known.forEach(({ role, s }, k) => {
    const next = known[(k + 1) % 3];
    const distance = dsp.mag(dsp.sub(s, next.s)).samples;
    const at = distance.findIndex((d) => !(d >= 1e-6));
    if (at >= 0) throw new Error(`${role} and ${next.role} are the same standard at ${frequency[at]} Hz; three different ones are needed.`);
  });
}

/** `files`: {name, text} of short, open, load and device, and of short_actual, open_actual and load_actual where the
 * standards are not ideal; or nothing for the simulation. `ideal` leaves the actual ones aside. */
export function calibrate(dsp, programs, { files, ideal, format }) {
  const sweeps = {};
  for (const [role, file] of Object.entries(files ?? programs.simulate())) sweeps[role] = programs.touchstone(file);
  require_same_sweep(Object.values(sweeps));
  const { frequency, s: device } = sweeps.device;
  const ideal_standard = (a) => dsp.rtoc(new Float64Array(frequency.length).fill(a));
  const known = Object.entries(ideals).map(([role, a]) => {
    const actual = ideal ? undefined : sweeps[`${role}_actual`];
    return { role, is_ideal: !actual, s: actual?.s ?? ideal_standard(a) };
  });
  require_three_standards(dsp, known, frequency);
  const terms = new dsp.OnePort(known.map(({ role }) => sweeps[role].s), known.map(({ s }) => s)); // prettier-ignore
  const corrected = terms.correct(device);
  const shown = (s, how) => dsp.format_buffer(s, how).samples.slice();
  const [directivity, source_match, tracking] = [terms.directivity, terms.source_match, terms.reflection_tracking].map((s) => shown(s, "level"));
  const levels = shown(corrected, "level");
  const least = dsp.find_min(levels);
  const at_least = (how) => shown(corrected, how)[least];
  return {
    frequency,
    device: [shown(corrected, format), shown(device, format)],
    terms: [directivity, source_match, tracking],
    smith: [corrected.samples.slice(), device.samples.slice()],
    standards: known.map(({ role, is_ideal }) => `${role} ${is_ideal ? "ideal" : "as it is"}`).join(", "),
    rows: [
      ["directivity", dsp.max(directivity).toFixed(2), "dB at worst"],
      ["source match", dsp.max(source_match).toFixed(2), "dB at worst"],
      ["reflection loss", (-dsp.min(tracking)).toFixed(2), "dB at most"],
      ["least reflection at", (frequency[least] / 1e6).toPrecision(4), "MHz"],
      ["return loss", at_least("return_loss").toFixed(2), "dB"],
      ["standing-wave ratio", at_least("swr").toFixed(3), ""],
      ["phase", at_least("phase").toFixed(1), "degrees"],
    ],
  };
}
