// Hands on what comes from the microphone, 4096 samples at a time.
class Tap extends AudioWorkletProcessor {
  samples = new Float64Array(4096);
  filled = 0;
  process([[channel]]) {
    if (!channel) return true;
    this.samples.set(channel, this.filled);
    this.filled += channel.length;
    if (this.filled < this.samples.length) return true;
    this.port.postMessage(this.samples);
    this.filled = 0;
    return true;
  }
}
registerProcessor("tap", Tap);
