// The clocks of a game, in milliseconds. The time of day is handed in, so that tests can make it.

import { otherSide } from "./fen.mjs";

export class Clock {
  #left;
  #side = null;
  #since = 0;

  constructor({ white, black, increment }) {
    this.#left = { white, black };
    this.increment = increment;
  }

  get side() {
    return this.#side;
  }

  /** What a side has left, never below 0. */
  left(side, now) {
    const gone = side === this.#side ? now - this.#since : 0;
    return Math.max(0, this.#left[side] - gone);
  }

  run(side, now) {
    this.stop(now);
    this.#side = side;
    this.#since = now;
  }

  stop(now) {
    if (this.#side) {
      this.#left[this.#side] = this.left(this.#side, now);
      this.#side = null;
    }
  }

  /** A side has moved: it gets its increment, and the other clock runs. */
  press(side, now) {
    this.stop(now);
    this.#left[side] += this.increment;
    this.run(otherSide(side), now);
  }
}

/** "1:05:09", "9:59", and with tenths below twenty seconds. */
export function clockText(milliseconds) {
  if (milliseconds < 20000) {
    const tenths = Math.ceil(milliseconds / 100);
    return `0:${String(Math.floor(tenths / 10)).padStart(2, "0")}.${tenths % 10}`;
  }
  const seconds = Math.ceil(milliseconds / 1000);
  const two = (number) => String(number).padStart(2, "0");
  const hours = Math.floor(seconds / 3600);
  const minutes = Math.floor(seconds / 60) % 60;
  return (hours ? `${hours}:${two(minutes)}` : `${minutes}`) + ":" + two(seconds % 60);
}
