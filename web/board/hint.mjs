// What the engine would play at full strength, and why.

import { changes, drawBars } from "./bars.mjs";
import { find, on, setText } from "./dom.mjs";
import { leafReason } from "./explanation.mjs";
import { numbered, sideToMove } from "./fen.mjs";
import { partOf } from "./game.mjs";

// Milliseconds.
const TIME = 1000;
const MOST_MOVES = 6;

export class Hint {
  // The hint that is looked for or shown: the position, the line in UCI and in SAN when it is
  // found, and the reason when it was asked for.
  #hint = null;

  constructor(app) {
    this.app = app;
    on("hint-why", () => this.#why());
  }

  get running() {
    return this.#hint !== null && !this.#hint.sans;
  }

  async show() {
    const { app } = this;
    if (this.#hint) {
      return;
    }
    app.toEnd();
    const part = partOf(app.game);
    const own = { part, fen: app.last.fen, best: null, sans: null, reason: null };
    this.#hint = own;
    this.draw();
    const options = { MultiPV: 1, UCI_LimitStrength: false };
    let line = { moves: [] };
    const best = await app.searcher.search(part, options, "movetime " + TIME, (info) => {
      if (info.moves.length && info.line === 1 && !info.bound) {
        line = info;
      }
    });
    if (this.#hint !== own || best === null) {
      return;
    }
    own.best = line.moves[0] === best ? line : { moves: [best] };
    const sans = await app.positions.sansOf(part, own.best.moves.slice(0, MOST_MOVES));
    if (this.#hint === own) {
      own.sans = sans;
      this.draw();
    }
  }

  // What the game comes to by the moves of the hint, in terms.
  async #why() {
    const own = this.#hint;
    const { core } = this.app;
    if (!own?.sans) {
      return;
    }
    const { part, best } = own;
    const leafOf = () => (best.mate === undefined && best.centipawns !== undefined
      ? core.ask({ ask: "leaf", ...part, line: best.moves, cp: best.centipawns })
      : { why: "mate or draw" });
    try {
      const [root, answer] =
        await Promise.all([core.ask({ ask: "evaluation", ...part }), leafOf()]);
      // The position itself may be the one that the score is of.
      const far = answer.leaf?.sans.length > 0;
      own.reason = { answer, groups: far ? changes(root, root, answer.leaf.evaluation) : null };
    } catch (error) {
      own.reason = { answer: { error: String(error.message ?? error) } };
    }
    if (this.#hint === own) {
      this.draw();
    }
  }

  /** Writes what there is of it, in the language that is chosen. */
  draw() {
    const { app } = this;
    const { texts } = app;
    const own = this.#hint;
    const moves = own?.sans && numbered(own.fen, texts.sans(own.sans)).join(" ");
    setText(find("hint-words"), !own ? "" : moves ? texts.get("hint.words", { moves })
      : texts.get("hint.wait"));
    find("hint-why").hidden = !moves || own.reason !== null;
    setText(find("hint-reason"), own?.reason ? this.#reason(own) : "");
    find("hint-bars").hidden = !own?.reason?.groups;
    if (own?.reason?.groups) {
      drawBars(find("hint-bars"), texts, own.reason.groups, ["gain", "losing"]);
    }
    if (app.mode === "play") {
      const [move] = moves && app.atEnd && !app.view.line.length ? own.best.moves : [];
      app.board.point(move
        ? [{ from: move.slice(0, 2), to: move.slice(2, 4), kind: "best" }] : []);
    }
  }

  #reason({ fen, best, reason: { answer } }) {
    const { texts } = this.app;
    if (best.mate > 0) {
      return texts.get("hint.mate", { moves: best.mate });
    }
    if (!answer.leaf) {
      return leafReason(texts, answer);
    }
    const moves = numbered(fen, texts.sans(answer.leaf.sans)).join(" ");
    return texts.get(moves ? "hint.reason" : "hint.now",
      { moves, side: texts.get(sideToMove(fen)) });
  }

  /** Another game: nothing is looked for any more. */
  forget() {
    this.#hint = null;
    this.draw();
  }

  drop() {
    if (this.running) {
      this.app.searcher.stop();
    }
    this.forget();
  }
}
