// The engine, asked for one search at a time. A new search ends the one that runs.

import Orvelin from "./engine/orvelin.mjs";
import { bestMove, positionCommand, readInfo } from "./uci.mjs";

const HASH = 32;

export class Searcher {
  #engine = null;
  #options = new Map();
  // The search that runs: who hears its lines and its answer.
  #search = null;
  #turn = Promise.resolve();
  #asked = 0;

  /** @param fail is called with a message when the engine cannot go on. */
  constructor(fail) {
    this.fail = fail;
  }

  /** Loads the engine, if it is not there yet. A page does so when it is itself there. */
  start() {
    if (!this.#engine) {
      this.#engine = new Orvelin();
      this.#engine.onmessage = ({ data }) => this.#hear(data);
      this.#engine.onerror = ({ message }) => this.fail(message);
      this.#set({ Hash: HASH, UCI_ShowWDL: true });
    }
  }

  /**
   * Searches a game's last position. The answer is the best move, or null where a later call or
   * stop() has taken the place of this one.
   * @param game start, chess960 and moves. @param options of UCI. @param go what stands behind go.
   * @param hear is called with each line that is told.
   */
  async search(game, options, go, hear = () => {}) {
    const number = ++this.#asked;
    this.#end();
    const before = this.#turn;
    let done;
    this.#turn = new Promise((resolve) => (done = resolve));
    await before;
    if (number !== this.#asked) {
      done();
      return null;
    }
    this.start();
    this.#set({ UCI_Chess960: game.chess960, ...options });
    const answer = await new Promise((resolve) => {
      this.#search = { hear, resolve };
      this.#engine.postMessage(positionCommand(game) + "\ngo " + go);
    });
    done();
    return number === this.#asked ? answer : null;
  }

  /** Ends the search that runs; it answers null. */
  stop() {
    this.#asked += 1;
    this.#end();
  }

  /** Forgets what was learnt in the game before. */
  async newGame() {
    this.stop();
    await this.#turn;
    this.start();
    this.#engine.postMessage("ucinewgame");
  }

  #end() {
    if (this.#search && !this.#search.ended) {
      this.#search.ended = true;
      this.#engine.postMessage("stop");
    }
  }

  #set(options) {
    for (const [name, value] of Object.entries(options)) {
      if (this.#options.get(name) !== value) {
        this.#options.set(name, value);
        this.#engine.postMessage(`setoption name ${name} value ${value}`);
      }
    }
  }

  #hear(line) {
    if (!this.#search) {
      return;
    }
    const best = bestMove(line);
    if (best) {
      const { resolve } = this.#search;
      this.#search = null;
      resolve(best);
    } else if (!this.#search.ended) {
      const info = readInfo(line);
      if (info) {
        this.#search.hear(info);
      }
    }
  }
}
