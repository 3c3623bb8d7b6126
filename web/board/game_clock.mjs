// The clock of the game that is played, if it has one. What is left is kept with the game.

import { Clock } from "./clock.mjs";
import { drawClocks } from "./players.mjs";

const TICK = 100;
const SIDES = ["white", "black"];

export class GameClock {
  #clock = null;

  /** @param over is called with the side whose time is over. */
  constructor(app, over) {
    this.app = app;
    setInterval(() => {
      const { side } = this;
      if (side && !this.#play.over) {
        this.draw();
        if (this.#clock.left(side, performance.now()) === 0) {
          over(side);
        }
      }
    }, TICK);
  }

  get #play() {
    return this.app.game.play;
  }
  get side() {
    return this.#clock?.side ?? null;
  }

  /** Begins with what is kept of the game, standing; there is none where the game is over. */
  renew() {
    const play = this.#play;
    this.#clock = play?.clock && !play.over ? new Clock(play.clock) : null;
  }

  /** Where there is none yet. */
  enter() {
    if (!this.#clock) {
      this.renew();
    }
  }

  run(side) {
    if (this.#clock && !this.side) {
      this.#clock.run(side, performance.now());
    }
  }

  /** A side has moved. The first move of a game costs no time: its clocks begin with it. */
  press(side) {
    if (this.#clock) {
      this.run(side);
      this.#clock.press(side, performance.now());
      this.keep();
    }
  }

  stop() {
    if (this.#clock) {
      this.#clock.stop(performance.now());
      this.keep();
    }
  }

  /** What is left goes into what is kept of the game. */
  keep() {
    const kept = this.#play?.clock;
    if (kept && this.#clock) {
      const now = performance.now();
      SIDES.forEach((side) => (kept[side] = this.#clock.left(side, now)));
    }
  }

  /** For `go` of UCI; null without a clock. */
  limits() {
    if (!this.#clock) {
      return null;
    }
    const now = performance.now();
    const [white, black] = SIDES.map((side) =>
      Math.max(1, Math.round(this.#clock.left(side, now))));
    const { increment } = this.#clock;
    return `wtime ${white} btime ${black} winc ${increment} binc ${increment}`;
  }

  draw() {
    drawClocks(this.#play?.clock ?? null, this.#clock);
  }
}
