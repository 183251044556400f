// The microphone, in pieces of samples; microphone_tap.js runs where the sound is.

const reasons = {
  NotAllowedError: "this page is not allowed to hear it; the browser's settings can change that",
  NotFoundError: "there is none",
  NotReadableError: "another program uses it",
};

/** `on_end` is called when it is unplugged. */
export async function listen(on_samples, on_end) {
  const plain = { echoCancellation: false, noiseSuppression: false, autoGainControl: false };
  const stream = await navigator.mediaDevices?.getUserMedia({ audio: plain }).catch(({ name, message }) => {
    throw new Error(`No microphone: ${reasons[name] ?? message}`);
  });
  if (!stream) throw new Error("No microphone: browsers lend it to pages on this computer or by https only");
  const context = new AudioContext();
  await context.audioWorklet.addModule(new URL("microphone_tap.js", import.meta.url));
  const tap = new AudioWorkletNode(context, "tap", { numberOfOutputs: 0 });
  tap.port.onmessage = ({ data }) => on_samples(data);
  context.createMediaStreamSource(stream).connect(tap);
  for (const track of stream.getTracks()) track.onended = on_end;
  const stop = () => {
    for (const track of stream.getTracks()) track.stop();
    context.close();
  };
  return { rate: context.sampleRate, stop };
}
