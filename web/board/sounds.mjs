// Short sounds of a game, made here: a few tones each. Off unless they are chosen.

// Hertz and seconds: what is heard one after the other.
const SOUNDS = {
  move: [[190, 0.06]],
  capture: [[150, 0.05], [110, 0.07]],
  check: [[520, 0.08], [660, 0.1]],
  over: [[440, 0.14], [350, 0.14], [260, 0.3]],
};
const LOUDNESS = 0.22;

export class Sounds {
  on = false;
  #context = null;
  // When the last sound is over: the next one comes behind it.
  #until = 0;

  /** What a move sounds like. The move is one of the core's legal moves. */
  move({ san, capture }) {
    this.play(/[+#]/.test(san) ? "check" : capture ? "capture" : "move");
  }

  play(name) {
    if (!this.on || !globalThis.AudioContext) {
      return;
    }
    this.#context ??= new AudioContext();
    this.#context.resume();
    let time = Math.max(this.#context.currentTime, this.#until);
    for (const [pitch, length] of SOUNDS[name]) {
      this.#tone(pitch, time, length);
      time += length;
    }
    this.#until = time;
  }

  #tone(pitch, time, length) {
    const tone = this.#context.createOscillator();
    const volume = this.#context.createGain();
    tone.type = "triangle";
    tone.frequency.value = pitch;
    volume.gain.setValueAtTime(LOUDNESS, time);
    volume.gain.exponentialRampToValueAtTime(0.001, time + length);
    tone.connect(volume).connect(this.#context.destination);
    tone.start(time);
    tone.stop(time + length);
  }
}
