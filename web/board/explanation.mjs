// What is known of a position without a search: its evaluation in terms, book and endgame tables;
// and the evaluation behind a line, where its score comes from.

import { drawBars } from "./bars.mjs";
import { button, find, make, on, setText } from "./dom.mjs";
import { Ending } from "./ending.mjs";
import { numbered } from "./fen.mjs";

const KINDS = ["for-white", "for-black"];

const percent = (share) => (share < 0.005 ? "<1" : Math.round(100 * share));

export class Explanation {
  /** The first move of the line that is explained, or null. */
  asked = null;
  #part = null;
  #position = null;
  // Groups of terms, and their words in the language that is chosen then.
  #chart = null;
  #book = [];

  /** @param change is called when another line, or none, is explained. */
  constructor(app, change) {
    this.app = app;
    this.change = change;
    this.ending = new Ending(app);
    on("of-position", () => this.about(this.#part, this.#position));
  }

  name() {
    this.#drawChart();
    this.#drawBook();
    this.enter();
  }

  enter() {
    this.ending.offer(this.#part, this.#position);
  }

  leave() {
    this.ending.leave();
  }

  async about(part, position) {
    this.#part = part;
    this.#position = position;
    this.#ask(null);
    this.enter();
    this.#tellBook(part);
    const { app } = this;
    const answer = await this.#core({ ask: "evaluation", ...part });
    if (this.#part === part && !this.asked) {
      this.#tellChart(answer, () => app.texts.get("evaluation.words"));
    }
  }

  /** @param label of its first move. */
  async aboutLine(line, label) {
    const { texts } = this.app;
    const part = this.#part;
    const { fen } = this.#position;
    this.#ask(line.moves[0]);
    const answer = line.mate !== undefined ? { why: "mate or draw" }
      : await this.#core({ ask: "leaf", ...part, line: line.moves, cp: line.centipawns });
    if (this.#part !== part || this.asked !== line.moves[0]) {
      return;
    }
    if (answer.leaf) {
      const moves = () => numbered(fen, texts.sans(answer.leaf.sans)).join(" ") || label;
      this.#tellChart(answer.leaf.evaluation,
        () => texts.get("evaluation.leaf", { moves: moves() }));
    } else {
      this.#tellChart({}, () => leafReason(texts, answer));
    }
  }

  #core(request) {
    return this.app.core.ask(request).catch((error) => ({ error: String(error) }));
  }

  #ask(move) {
    this.asked = move;
    find("of-position").hidden = move === null;
    this.change();
  }

  #tellChart({ groups, error }, words) {
    this.#chart = { groups, words: error ? () => error : words };
    this.#drawChart();
  }

  #drawChart() {
    if (!this.#chart) {
      return;
    }
    const { groups, words } = this.#chart;
    setText(find("chart-words"), words());
    if (groups) {
      drawBars(find("bars"), this.app.texts, groups, KINDS);
    } else {
      find("bars").replaceChildren();
    }
  }

  async #tellBook(part) {
    const { moves } = await this.app.positions.bookOf(part).catch(() => ({}));
    if (this.#part === part) {
      this.#book = moves ?? [];
      this.#drawBook();
    }
  }

  #drawBook() {
    const { texts } = this.app;
    const moves = this.#book;
    const sum = moves.reduce((total, { weight }) => total + weight, 0);
    const rows = moves.flatMap((move) => [
      button(texts.san(move.san), { class: "book-move" }, () => this.#play(move.uci)),
      make("span", { class: "faint small" }, ` ${percent(move.weight / sum)}\u00a0% `)]);
    find("book").replaceChildren(...(rows.length
      ? [make("h2", {}, texts.get("book")), make("p", {}, ...rows)] : []));
  }

  #play(uci) {
    const legal = this.#position.legal.find((move) => move.uci === uci);
    if (legal) {
      this.app.explore(legal);
    }
  }
}

/** Why the core has no position behind a line. */
export function leafReason(texts, { why, error }) {
  return texts.has("leaf." + why) ? texts.get("leaf." + why) : error ?? why;
}
