// What the endgame tables know of a position with three or four pieces. A table is built while it is
// asked for, which takes a while: in a core of its own, and only where somebody wants it.

import { BoardCore } from "./core.mjs";
import { button, find, make } from "./dom.mjs";
import { boardOf } from "./fen.mjs";

const MOST_PIECES = 4;

export class Ending {
  #core = null;
  #run = 0;

  constructor(app) {
    this.app = app;
  }

  /** Offers to ask about a position; what was asked about another one is given up. */
  offer(part, position) {
    this.#run += 1;
    const place = find("ending");
    const count = boardOf(position.fen).filter((piece) => piece !== ".").length;
    if (count < 3 || count > MOST_PIECES || position.end) {
      place.replaceChildren();
      return;
    }
    const { texts } = this.app;
    place.replaceChildren(make("p", { class: "buttons" }, button(texts.get("ending.ask"), { id: "ask-ending" },
      () => this.#ask(part, position))));
  }

  /** What was built stays; nothing more is built. */
  leave() {
    this.#run += 1;
  }

  async #ask(part, position) {
    const run = ++this.#run;
    const { texts } = this.app;
    this.#core ??= new BoardCore();
    const words = make("p", { class: "ending", role: "status" }, texts.get("ending.wait", { share: 0 }));
    find("ending").replaceChildren(words);
    const tell = (text) => words.replaceChildren(text);
    try {
      for (;;) {
        const { ending, error } = await this.#core.ask({ ask: "ending", ...part });
        if (run !== this.#run) {
          return;
        }
        if (error || !ending) {
          tell(error ?? texts.get("ending.none"));
          return;
        }
        if (ending.result !== null) {
          this.#show(ending, position, words);
          return;
        }
        tell(texts.get("ending.wait", { share: Math.floor(100 * ending.progress) }));
      }
    } catch (error) {
      tell(String(error.message ?? error));
    }
  }

  #words({ result, plies }) {
    const { texts } = this.app;
    return result === "1/2-1/2" ? texts.get("ending.draw")
      : texts.get(result === "1-0" ? "ending.white" : "ending.black", { moves: Math.ceil(plies / 2) });
  }

  #show(ending, position, words) {
    words.textContent = `${ending.name}: ${this.#words(ending)}`;
    const rows = ending.moves.map((move) => {
      const legal = position.legal.find(({ uci }) => uci === move.uci);
      return make("li", {}, button(legal?.san ?? move.uci, { class: "book-move" },
        () => legal && this.app.explore(legal)), make("span", { class: "faint small" }, " " + this.#words(move)));
    });
    find("ending").append(make("ol", { class: "ending-moves" }, ...rows));
  }
}
