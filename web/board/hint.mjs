// What the engine would play at full strength.

import { find, setText } from "./dom.mjs";
import { partOf } from "./game.mjs";

// Milliseconds.
const TIME = 1000;
const MOST_MOVES = 6;

export class Hint {
  // The hint that is looked for.
  #search = null;

  constructor(app) {
    this.app = app;
  }

  get running() {
    return this.#search !== null;
  }

  async show() {
    const { app } = this;
    if (this.#search) {
      return;
    }
    app.toEnd();
    const own = { moves: [] };
    this.#search = own;
    setText(find("hint-words"), app.texts.get("hint.wait"));
    const options = { MultiPV: 1, UCI_LimitStrength: false };
    const part = partOf(app.game);
    const best = await app.searcher.search(part, options, "movetime " + TIME, (info) => {
      if (info.moves.length && info.line === 1) {
        own.moves = info.moves;
      }
    });
    if (this.#search !== own || best === null) {
      return;
    }
    const line = own.moves[0] === best ? own.moves.slice(0, MOST_MOVES) : [best];
    const sans = await app.positions.sansOf(part, line);
    if (this.#search === own) {
      app.board.point([{ from: best.slice(0, 2), to: best.slice(2, 4), kind: "best" }]);
      setText(find("hint-words"), app.texts.get("hint.words", { moves: sans.join(" ") }));
      this.#search = null;
    }
  }

  /** Another game: nothing is looked for any more. */
  forget() {
    this.#search = null;
  }

  drop() {
    if (this.#search) {
      this.#search = null;
      this.app.searcher.stop();
    }
    setText(find("hint-words"), "");
    this.app.board.point([]);
  }
}
