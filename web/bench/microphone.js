// The microphone, in pieces of samples; microphone_tap.js runs where the sound is.

export async function listen(on_samples) {
  const stream = await navigator.mediaDevices.getUserMedia({
    audio: { echoCancellation: false, noiseSuppression: false, autoGainControl: false },
  });
  const context = new AudioContext();
  await context.audioWorklet.addModule(new URL("microphone_tap.js", import.meta.url));
  const tap = new AudioWorkletNode(context, "tap", { numberOfOutputs: 0 });
  tap.port.onmessage = ({ data }) => on_samples(data);
  context.createMediaStreamSource(stream).connect(tap);
  const stop = () => {
    for (const track of stream.getTracks()) track.stop();
    context.close();
  };
  return { rate: context.sampleRate, stop };
}
