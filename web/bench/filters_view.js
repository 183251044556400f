// A filter: its response and step response, its coefficients, and the recording heard through it.

import { ask } from "./client.js";
import { attempt, element, quantity, settings_of, tell } from "./page.js";
import { Plot } from "./plot.js";

const response = new Plot({ id: "response-plot", x: "frequency / Hz", y: "gain / dB", traces: ["gain"] });
const step = new Plot({ id: "step-plot", x: "sample", y: "step response", traces: ["step"], height: 220 });
let sound;

export const update = () =>
  attempt(async () => {
    const settings = settings_of("filters");
    if (!settings) return;
    document.querySelector(".band").hidden = !settings.kind.startsWith("band");
    const result = await ask("filter", settings);
    response.show([result.frequency, result.response], { y_range: [-140, 10] });
    step.show([Float64Array.from(result.step, (_, i) => i), result.step]);
    element("coefficients").value = Array.from(result.taps, (tap) => tap.toExponential()).join("\n");
    tell(`${settings.kind} of ${settings.taps} taps, delay ${(settings.taps - 1) / 2} samples`);
  });

async function hear() {
  if (sound) {
    sound.close();
    sound = undefined;
    return;
  }
  const settings = settings_of("filters");
  const { samples, rate } = await ask("listen", { ...settings, source: settings_of("spectrum") });
  sound = new AudioContext();
  const buffer = sound.createBuffer(1, Math.max(samples.length, 1), rate);
  buffer.copyToChannel(samples, 0);
  const source = new AudioBufferSourceNode(sound, { buffer });
  source.connect(sound.destination);
  source.onended = () => (sound?.close(), (sound = undefined));
  source.start();
  tell(`Playing ${quantity(samples.length / rate, "s", 2)} at ${quantity(rate, "Hz")}`);
}

export function start() {
  element("listen").onclick = () => attempt(hear);
  element("copy").onclick = () =>
    attempt(async () => {
      element("coefficients").select();
      await navigator.clipboard.writeText(element("coefficients").value);
      tell("Copied the coefficients");
    });
}
